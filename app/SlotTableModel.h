#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>

namespace kelvo {

/// The state of a slot in this run.
enum class SlotState {
    Idle,          ///< nothing
    Waiting,       ///< an import is pending
    Running,       ///< a transfer is running
    NotAnswering,  ///< a transfer is running, but the device has not answered for a while
    Sent,          ///< the last transfer was completely acknowledged
    CutOff,        ///< the last transfer was not
};

/// What a row shows beside its label.
struct RowStatus {
    SlotState state = SlotState::Idle;
    double share = 0.0;  ///< acknowledged, of a running transfer: from 0 to 1
    QString file = {};   ///< the name of the slot's file, and its place in its folder; empty for none
};

/// The source of the slot tables' rows. A tag identifies a table. Main thread.
class SlotTableDataSource {
public:
    virtual ~SlotTableDataSource() = default;

    virtual int numberOfRowsInTableView(int tag) const = 0;
    /// The text of a cell; null where the table's tag is unknown.
    virtual QString tableView_objectValueForTableColumn_row(int tag, int column, int row) const = 0;
    virtual bool tableView_shouldEditTableColumn_row(int tag, int column, int row) const = 0;
    virtual void tableViewSelectionDidChange(int tag) = 0;
    virtual RowStatus rowStatus(int tag, int row) const = 0;
};

/// The rows of one slot table. Labels are those of the last reload; the status is the source's present one.
class SlotTableModel : public QAbstractTableModel {
public:
    /// The row's SlotState, and the share of its running transfer that is acknowledged, a double from 0 to 1.
    static constexpr int kStateRole = Qt::UserRole;
    static constexpr int kShareRole = Qt::UserRole + 1;

    SlotTableModel(SlotTableDataSource& source, int tag);

    /// Asks the data source for every label again. The selection stays.
    void reloadData();
    /// The status of rows has changed.
    void statusChanged();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    SlotTableDataSource& source_;
    int tag_;
    QStringList rows_;
};

}  // namespace kelvo
