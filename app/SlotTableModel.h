#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>

namespace kelvo {

/// What has become of a slot in this run.
enum class SlotState {
    Idle,          ///< nothing
    Waiting,       ///< a file waits for its transfer
    Running,       ///< a transfer is running
    NotAnswering,  ///< a transfer is running, but the device has not answered for a while
    Sent,          ///< the last transfer was acknowledged to its end
    CutOff,        ///< the last transfer was not
};

/// What a row shows beside its label.
struct RowStatus {
    SlotState state = SlotState::Idle;
    double share = 0.0;  ///< of a running transfer, acknowledged: from 0 to 1
    QString file = {};   ///< the name of the slot's file, and its place in its folder; empty for none
};

/// Whoever knows the rows of the slot tables. Tables are told apart by their tag. Main thread.
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

/// One slot table's rows. The labels are those that the data source gave at the last reload: a repaint never shows what
/// no reload has fetched. The status is what the source says now.
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
