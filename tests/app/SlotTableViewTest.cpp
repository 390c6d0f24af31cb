#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>

#include "AppHarness.h"
#include "Driver.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

class FilledTable : public testing::Test {
protected:
    void SetUp() override {
        app_.start();
        window_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
        cab_.setFocus();
    }

    RunningApp app_;
    QWidget& window_ = app_.controller.window();
    SlotTableView& cab_ = app_.controller.ImportIRTableV();
    SlotTableView& amp_ = app_.controller.ImportCabTableV();
};

TEST_F(FilledTable, homeAndEndGoToTheFirstAndTheLastSlot) {
    clickRow(cab_, 4);
    QTest::keyClick(&cab_, Qt::Key_End);
    EXPECT_EQ(cab_.selectedRow(), 9);
    QTest::keyClick(&cab_, Qt::Key_Home);
    EXPECT_EQ(cab_.selectedRow(), 0);
    QTest::keyClick(&cab_, Qt::Key_PageDown);
    EXPECT_EQ(cab_.selectedRow(), 9);
}

TEST_F(FilledTable, aClickBesideTheRowsLeavesTheSelection) {
    clickRow(cab_, 4);
    // All rows are in sight, so there is room beside them only in a window that somebody forced to be larger.
    cab_.setMinimumHeight(cab_.height() + 100);
    ASSERT_TRUE(serveUntil(
        [this] { return cab_.viewport()->height() > cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 50; }));
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, {}, {20, cab_.viewport()->height() - 10});
    EXPECT_EQ(cab_.selectedRow(), 4);
}

TEST_F(FilledTable, controlDoesNotTakeTheSelectionAway) {
    clickRow(cab_, 4);
    const QPoint sameRow = cab_.visualRect(cab_.model()->index(4, 0)).center();
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, Qt::ControlModifier, sameRow);
    EXPECT_EQ(cab_.selectedRow(), 4);
    QTest::keyClick(&cab_, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(cab_.selectedRow(), 4);
    QTest::keyClick(&cab_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(cab_.selectedRow(), 5);
}

TEST_F(FilledTable, theWindowHasTheOneSizeOfItsContent) {
    EXPECT_EQ(window_.minimumSize(), window_.size());
    EXPECT_EQ(window_.maximumSize(), window_.size());
    EXPECT_EQ(cab_.viewport()->height(), cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 1);
    window_.resize(900, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(cab_.viewport()->height(), cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 1);
}

TEST_F(FilledTable, aLargerFontMakesRowsAndWindowLarger) {
    const QSize before = window_.size();
    QFont font = window_.font();
    font.setPixelSize(2 * QFontInfo(font).pixelSize());
    window_.setFont(font);
    ASSERT_TRUE(serveUntil([&] { return window_.height() > before.height() * 3 / 2; }));
    EXPECT_EQ(cab_.rowHeight(0), cab_.fontMetrics().height() + 10);
    EXPECT_EQ(cab_.viewport()->height(), cab_.visualRect(cab_.model()->index(9, 0)).bottom() + 1);
    EXPECT_EQ(window_.minimumSize(), window_.size());
    EXPECT_EQ(window_.maximumSize(), window_.size());
}

}  // namespace
}  // namespace kelvo::test
