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

/// One slot table's rows as the data source last told them: a repaint never shows what no reload has fetched.
class SlotTableModel : public QAbstractTableModel {
public:
    SlotTableModel(SlotTableDataSource& source, int tag, QObject* parent = nullptr);

    /// Asks the data source for every row again. The selection stays.
    void reloadData();

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
