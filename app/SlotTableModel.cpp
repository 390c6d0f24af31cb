#include "SlotTableModel.h"

#include "SlotLabels.h"

namespace kelvo {
namespace {

/// The status for a screen reader.
QString spokenStatus(const RowStatus& status) {
    QString state;
    switch (status.state) {
        case SlotState::Idle:
            break;
        case SlotState::Waiting:
            state = QObject::tr("waiting");
            break;
        case SlotState::Running:
            state = QObject::tr("%1 % sent").arg(qRound(100 * status.share));
            break;
        case SlotState::NotAnswering:
            state = QObject::tr("%1 % sent, no answer").arg(qRound(100 * status.share));
            break;
        case SlotState::Sent:
            state = QObject::tr("sent");
            break;
        case SlotState::CutOff:
            state = QObject::tr("cut off");
            break;
    }
    return state + (state.isEmpty() || status.file.isEmpty() ? QString() : QStringLiteral(": ")) + status.file;
}

}  // namespace

SlotTableModel::SlotTableModel(SlotTableDataSource& source, int tag) : source_(source), tag_(tag) {
    rows_.resize(source_.numberOfRowsInTableView(tag_));
}

void SlotTableModel::reloadData() {
    for (int row = 0; row < rows_.size(); ++row) {
        rows_[row] = source_.tableView_objectValueForTableColumn_row(tag_, 0, row);
    }
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void SlotTableModel::statusChanged() {
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1),
                     {kStateRole, kShareRole, Qt::ToolTipRole, Qt::AccessibleDescriptionRole});
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
        case Qt::AccessibleDescriptionRole:
            return spokenStatus(source_.rowStatus(tag_, index.row()));
        case Qt::ToolTipRole:
            return plainToolTip(source_.rowStatus(tag_, index.row()).file);
        case kStateRole:
            return QVariant::fromValue(source_.rowStatus(tag_, index.row()).state);
        case kShareRole:
            return source_.rowStatus(tag_, index.row()).share;
        default:
            return {};
    }
}

QVariant SlotTableModel::headerData(int, Qt::Orientation orientation, int role) const {
    // The headers are hidden, but a screen reader would read numbers if they had no text.
    return role == Qt::DisplayRole && orientation == Qt::Horizontal ? QStringLiteral("Slot") : QString();
}

Qt::ItemFlags SlotTableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags plain = QAbstractTableModel::flags(index);
    const bool editable =
        index.isValid() && source_.tableView_shouldEditTableColumn_row(tag_, index.column(), index.row());
    return editable ? plain | Qt::ItemIsEditable : plain;
}

}  // namespace kelvo
