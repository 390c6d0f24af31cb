// What a row shows of the transfers into it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QVariantAnimation>

#include "Driver.h"
#include "FileDrag.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The test gives the pedal's answers.
class RowTransfer : public FileImports {
protected:
    RowTransfer() : FileImports({.silentFromPhase = 1}) {}

    static QString spoken(const SlotTableView& table, int row) {
        const QModelIndex index = table.model()->index(row, 0);
        return index.data(Qt::AccessibleDescriptionRole).toString().section(':', 0, 0);
    }
    void expectIdle(const SlotTableView& table) const { EXPECT_EQ(rowsThatAre(SlotState::Idle, table).size(), 10U); }
    void deleteRow(int row) {
        cab_.selectRow(row);
        app_.controller.deleteCAB();
        app_.services.alerts.back().answer(kAlertFirstButtonReturn);
    }
};

TEST_F(RowTransfer, growsWithEachAcknowledgementAndEndsWithAFullLine) {
    app_.importIR(3, wave("a.wav"));
    EXPECT_EQ(spoken(cab_, 3), "0 % sent");
    for (const auto& [phase, shown] : {std::pair<std::uint8_t, const char*>(0, "0 % sent"),
                                       {1, "25 % sent"},
                                       {1, "25 % sent"},
                                       {2, "50 % sent"},
                                       {3, "75 % sent"}}) {
        acknowledge({phase});
        EXPECT_EQ(spoken(cab_, 3), shown);
    }
    EXPECT_EQ(cab_.findChild<QVariantAnimation*>(), nullptr);
    acknowledge({4});
    EXPECT_EQ(spoken(cab_, 3), "sent");
    EXPECT_NE(cab_.findChild<QVariantAnimation*>(), nullptr);
    EXPECT_THAT(rowsThatAre(SlotState::Idle, cab_), ElementsAre(0, 1, 2, 4, 5, 6, 7, 8, 9));
    app_.importAMP(8, amp("b.amp"));
    acknowledge({1, 2}, 0xE2);
    EXPECT_EQ(spoken(amp_, 8), "40 % sent");
    acknowledge({3, 4, 5}, 0xE2);
    EXPECT_EQ(spoken(amp_, 8), "sent");
}

TEST_F(RowTransfer, isNoRowsWithoutAnAcceptedFileOrASelection) {
    acknowledge({0, 1, 2, 3, 4, 5});
    acknowledge({0, 1, 2, 3, 4, 5}, 0xE2);
    app_.importIR(4, bad("bad.wav"));
    app_.importAMP(4, bad("bad.amp"));
    app_.services.choice = QUrl::fromLocalFile(wave("a.wav"));
    cab_.clearSelection();
    app_.controller.importIrButtonClick();
    acknowledge({1});
    expectIdle(cab_);
    expectIdle(amp_);
}

TEST_F(RowTransfer, whoseEndTheWindowHasNotHandled_isNotShownAsTheOneBefore) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1, 2, 3, 4});
    app_.importIR(3, wave("b.wav"));
    receive({3, 1, 2, 3, 4});
    EXPECT_EQ(spoken(cab_, 3), "cut off");
    app_.importIR(3, wave("c.wav"));
    receive({1, 2, 3, 4});
    EXPECT_EQ(spoken(cab_, 3), "sent");
}

TEST_F(RowTransfer, whoseRestGoesToAnotherSlot_isCutOffUnlessItsLastPacketWasSent) {
    app_.importIR(4, wave("a.wav"));
    acknowledge({1, 2, 3});
    app_.importAMP(8, amp("b.amp"));
    acknowledge({4});
    EXPECT_EQ(spoken(cab_, 4), "sent");
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    app_.importAMP(7, bad("b.amp"));
    EXPECT_EQ(spoken(cab_, 3), "25 % sent");
    acknowledge({2, 3, 4});
    EXPECT_EQ(spoken(cab_, 3), "cut off");
}

TEST_F(RowTransfer, withoutAnAnswerForThreeSeconds_saysSoUntilTheAnswerComes) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    ASSERT_TRUE(serveUntil([&] { return spoken(cab_, 3) != "25 % sent"; }));
    EXPECT_EQ(spoken(cab_, 3), "25 % sent, no answer");
    EXPECT_THAT(app_.services.alerts, IsEmpty());
    acknowledge({2});
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
}

TEST_F(RowTransfer, intoADeletedRow_bringsItsLabelBackWithTheNamePacketOnly) {
    app_.importIR(3, wave("a.wav"));
    acknowledge({1});
    deleteRow(3);
    acknowledge({2});
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    EXPECT_EQ(state(cab_, 3), SlotState::Running);
    acknowledge({3});
    EXPECT_EQ(cab_.model()->index(3, 0).data(), "30.A");
    deleteRow(3);
    acknowledge({4});
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    expectIdle(cab_);
    EXPECT_EQ(spoken(cab_, 3), "");
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(RowTransfer, ofASet_waitsForTheAnswerToAQuestion) {
    ASSERT_TRUE(drop(cab_, 4, waves({"a", "b"})));
    ASSERT_TRUE(serveUntil([this] { return transfer() == 1; }));
    app_.controller.deleteCAB();
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(transfer(), 1U);
    app_.services.alerts.back().answer(kAlertSecondButtonReturn);
    EXPECT_EQ(transfer(), 2U);
}

}  // namespace
}  // namespace kelvo::test
