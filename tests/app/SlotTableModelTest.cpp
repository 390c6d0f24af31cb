#include <gtest/gtest.h>

#include <QSignalSpy>

#include "SlotTableModel.h"

namespace kelvo {
namespace {

/// Two rows that may be edited.
class TwoRows : public SlotTableDataSource {
public:
    int numberOfRowsInTableView(int) const override { return 2; }
    QString tableView_objectValueForTableColumn_row(int, int, int row) const override { return QString::number(row); }
    bool tableView_shouldEditTableColumn_row(int, int, int) const override { return true; }
    void tableViewSelectionDidChange(int) override {}
};

class TwoRowModel : public testing::Test {
protected:
    QVariant share(int row) const { return model.index(row, 0).data(SlotTableModel::kTransferRole); }
    QVariant spoken(int row) const { return model.index(row, 0).data(Qt::AccessibleDescriptionRole); }

    TwoRows source;
    SlotTableModel model{source, 1, 4};
};

TEST_F(TwoRowModel, hasAWordForItsOneColumnAndNoneForItsRows) {
    EXPECT_EQ(model.headerData(0, Qt::Horizontal), "Slot");
    EXPECT_EQ(model.headerData(0, Qt::Vertical), "");
    EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::ToolTipRole), "");
}

TEST_F(TwoRowModel, letsACellBeEditedThatItsSourceLetsBeEdited) {
    EXPECT_EQ(model.flags(model.index(1, 0)),
              Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren);
}

TEST_F(TwoRowModel, tellsOfARowThatBeginsOrEndsToWaitAndOfNoOther) {
    const QSignalSpy told(&model, &QAbstractItemModel::dataChanged);
    model.showWaiting({0});
    EXPECT_EQ(share(0), 0.0);
    EXPECT_EQ(spoken(0), "waiting");
    EXPECT_FALSE(share(1).isValid());
    EXPECT_FALSE(spoken(1).isValid());
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0][0].toModelIndex(), model.index(0, 0));
    model.showWaiting({1});
    ASSERT_EQ(told.size(), 3);
    EXPECT_EQ(told[1][0].toModelIndex(), model.index(0, 0));
    EXPECT_EQ(told[2][0].toModelIndex(), model.index(1, 0));
}

TEST_F(TwoRowModel, leavesNoRowWithATransferThatIsOver) {
    model.showTransfer(1, 0);
    for (const int acknowledged : {1, 2, 3}) {
        model.showTransfer(1, acknowledged);
        EXPECT_EQ(share(1), acknowledged / 4.0);
        EXPECT_EQ(spoken(1), QString("%1 % sent").arg(25 * acknowledged));
    }
    model.showTransfer(1, 4);
    for (const int row : {0, 1}) {
        EXPECT_FALSE(share(row).isValid()) << row;
        EXPECT_FALSE(spoken(row).isValid()) << row;
    }
}

}  // namespace
}  // namespace kelvo
