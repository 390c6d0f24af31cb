#include "SlotTableModel.h"

#include <utility>

#include "SlotLabel.h"

namespace kelvo {

SlotTableModel::SlotTableModel(SlotTableDataSource& source, int tag, int packets)
    : source_(source), tag_(tag), packets_(packets) {
    rows_.resize(source_.numberOfRowsInTableView(tag_));
}

void SlotTableModel::reloadData() {
    for (int row = 0; row < rows_.size(); ++row) {
        rows_[row] = source_.tableView_objectValueForTableColumn_row(tag_, 0, row);
    }
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void SlotTableModel::showTransfer(int row, int acknowledged) {
    if (acknowledged == 0) {
        tellTransfer(std::exchange(transferRow_, row));
    } else if (row != transferRow_ || acknowledged != acknowledged_ + 1) {
        return;
    }
    acknowledged_ = acknowledged;
    tellTransfer(row);
    if (acknowledged_ == packets_) {
        transferRow_ = -1;
    }
}

void SlotTableModel::showWaiting(const QList<int>& rows) {
    const QList<int> before = std::exchange(waiting_, rows);
    for (int row = 0; row < rowCount(); ++row) {
        if (before.contains(row) != waiting_.contains(row)) {
            tellTransfer(row);
        }
    }
}

void SlotTableModel::tellTransfer(int row) {
    if (const QModelIndex cell = index(row, 0); cell.isValid()) {
        emit dataChanged(cell, cell, {kTransferRole, Qt::AccessibleDescriptionRole});
    }
}

int SlotTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SlotTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 1;
}

QVariant SlotTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const bool travels = index.row() == transferRow_;
    const bool waits = waiting_.contains(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return rows_.at(index.row());
        case Qt::AccessibleTextRole:
            return spokenLabel(rows_.at(index.row()));
        case Qt::AccessibleDescriptionRole:
            return travels ? QStringLiteral("%1 % sent").arg(100 * acknowledged_ / packets_)
                   : waits ? QStringLiteral("waiting")
                           : QVariant();
        case kTransferRole:
            return travels ? static_cast<double>(acknowledged_) / packets_ : waits ? 0.0 : QVariant();
        default:
            return {};
    }
}

QVariant SlotTableModel::headerData(int, Qt::Orientation orientation, int role) const {
    // Nobody sees the headers, but a screen reader would read numbers of its own where they have no text.
    return role == Qt::DisplayRole && orientation == Qt::Horizontal ? QStringLiteral("Slot") : QString();
}

Qt::ItemFlags SlotTableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags plain = QAbstractTableModel::flags(index);
    const bool editable =
        index.isValid() && source_.tableView_shouldEditTableColumn_row(tag_, index.column(), index.row());
    return editable ? plain | Qt::ItemIsEditable : plain;
}

}  // namespace kelvo
