#include <gtest/gtest.h>

#include "SlotTableModel.h"

namespace kelvo {
namespace {

/// Two rows that may be edited, of which the second one has a status.
class TwoRows : public SlotTableDataSource {
public:
    int numberOfRowsInTableView(int) const override { return 2; }
    QString tableView_objectValueForTableColumn_row(int, int, int row) const override { return QString::number(row); }
    bool tableView_shouldEditTableColumn_row(int, int, int) const override { return true; }
    void tableViewSelectionDidChange(int) override {}
    RowStatus rowStatus(int, int row) const override { return row == 1 ? status : RowStatus(); }

    RowStatus status;
};

class TwoRowModel : public testing::Test {
protected:
    QVariant data(int row, int role) const { return model.index(row, 0).data(role); }
    QString spoken(const RowStatus& status) {
        source.status = status;
        return data(1, Qt::AccessibleDescriptionRole).toString();
    }

    TwoRows source;
    SlotTableModel model{source, 1};
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

TEST_F(TwoRowModel, givesTheStatusAsItIsNow) {
    source.status = {SlotState::Running, 0.25, "a.wav"};
    EXPECT_EQ(data(1, SlotTableModel::kStateRole).value<SlotState>(), SlotState::Running);
    EXPECT_EQ(data(1, SlotTableModel::kShareRole), 0.25);
    EXPECT_EQ(data(1, Qt::ToolTipRole), "<qt>a.wav</qt>");
    EXPECT_EQ(data(0, SlotTableModel::kStateRole).value<SlotState>(), SlotState::Idle);
    EXPECT_EQ(data(0, Qt::ToolTipRole), "");
}

TEST_F(TwoRowModel, saysTheStatusToAScreenReader) {
    EXPECT_EQ(spoken({}), "");
    EXPECT_EQ(spoken({.file = "a.wav, 9 of 16"}), "a.wav, 9 of 16");
    EXPECT_EQ(spoken({SlotState::Waiting}), "waiting");
    EXPECT_EQ(spoken({SlotState::Running, 0.75, "a.wav"}), "75 % sent: a.wav");
    EXPECT_EQ(spoken({SlotState::NotAnswering, 0.0, "a.wav"}), "0 % sent, no answer: a.wav");
    EXPECT_EQ(spoken({SlotState::Sent, 0.0, "a.wav, 9 of 16"}), "sent: a.wav, 9 of 16");
    EXPECT_EQ(spoken({SlotState::CutOff, 0.0, "a.wav"}), "cut off: a.wav");
}

}  // namespace
}  // namespace kelvo
