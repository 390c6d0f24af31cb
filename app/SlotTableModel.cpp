#include "SlotTableModel.h"

#include "SlotLabel.h"

namespace kelvo {

SlotTableModel::SlotTableModel(SlotTableDataSource& source, int tag, QObject* parent)
    : QAbstractTableModel(parent), source_(source), tag_(tag) {
    rows_.resize(source_.numberOfRowsInTableView(tag_));
}

void SlotTableModel::reloadData() {
    for (int row = 0; row < rows_.size(); ++row) {
        rows_[row] = source_.tableView_objectValueForTableColumn_row(tag_, 0, row);
    }
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
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
    switch (role) {
        case Qt::DisplayRole:
            return rows_.at(index.row());
        case Qt::AccessibleTextRole:
            return spokenLabel(rows_.at(index.row()));
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
