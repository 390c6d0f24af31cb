#pragma once

#include <QAbstractTableModel>
#include <QStringList>

namespace kelvo {

/// Whoever knows the rows of the slot tables. Tables are told apart by their tag. Main thread.
class SlotTableDataSource {
public:
    virtual ~SlotTableDataSource() = default;

    virtual int numberOfRowsInTableView(int tag) const = 0;
    /// The text of a cell; null where the table's tag is unknown.
    virtual QString tableView_objectValueForTableColumn_row(int tag, int column, int row) const = 0;
    virtual bool tableView_shouldEditTableColumn_row(int tag, int column, int row) const = 0;
    virtual void tableViewSelectionDidChange(int tag) = 0;
};

/// One slot table's rows as the data source last told them: a repaint never shows what no reload has fetched. And the
/// transfer into one of them, as far as the device has acknowledged it.
class SlotTableModel : public QAbstractTableModel {
public:
    /// The share of a row's transfer that is acknowledged, a double from 0 to 1, or 0 where a row waits for its
    /// transfer; no value without one. The 1 is there during one dataChanged only. A transfer that stops half-way keeps
    /// its share until the next one begins.
    static constexpr int kTransferRole = Qt::UserRole;

    /// `packets` make one transfer.
    SlotTableModel(SlotTableDataSource& source, int tag, int packets);

    /// Asks the data source for every row again. The selection stays.
    void reloadData();

    /// So many packets of the transfer into `row` are acknowledged; with 0 it begins, and ends any other. What comes
    /// out of turn, or for another row than it began with, is no progress: the slot will not hold that file.
    void showTransfer(int row, int acknowledged);

    /// The rows that wait for their transfers now.
    void showWaiting(const QList<int>& rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void tellTransfer(int row);

    SlotTableDataSource& source_;
    int tag_;
    int packets_;
    QStringList rows_;
    QList<int> waiting_;
    int transferRow_ = -1;
    int acknowledged_ = 0;
};

}  // namespace kelvo
