#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "AppHarness.h"
#include "Driver.h"
#include "LogListener.h"
#include "SampleFiles.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

QStringList cells(const QAbstractItemModel& model) {
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
        result += model.index(row, 0).data().toString();
    }
    return result;
}

class SlotTables : public testing::Test {
protected:
    RunningApp app_;
    KelvoAppDelegate& controller_ = app_.controller;
};

TEST_F(SlotTables, areDistinguishedByTheirTags) {
    EXPECT_EQ(controller_.ImportIRTableV().tag(), 1);
    EXPECT_EQ(controller_.ImportCabTableV().tag(), 2);
    app_.start();
    EXPECT_TRUE(controller_.tableView_objectValueForTableColumn_row(1, 0, 0).startsWith("27."));
    EXPECT_TRUE(controller_.tableView_objectValueForTableColumn_row(1, 5, 9).startsWith("36."));
    EXPECT_TRUE(controller_.tableView_objectValueForTableColumn_row(2, 0, 0).startsWith("56."));
    EXPECT_TRUE(controller_.tableView_objectValueForTableColumn_row(2, 1, 9).startsWith("65."));
}

TEST_F(SlotTables, ofAnotherTag_haveTenEmptyCells) {
    app_.start();
    SlotTableModel other(controller_, 3);
    other.reloadData();
    EXPECT_EQ(cells(other), QStringList(10, QString()));
    EXPECT_EQ(controller_.numberOfRowsInTableView(3), 10);
    EXPECT_TRUE(controller_.tableView_objectValueForTableColumn_row(0, 0, 0).isNull());
}

TEST_F(SlotTables, neverStartEditing) {
    app_.start();
    SlotTableView& table = controller_.ImportIRTableV();
    const QModelIndex index = table.model()->index(2, 0);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(index).center());
    QTest::keyClick(&table, Qt::Key_F2);
    EXPECT_FALSE(table.isPersistentEditorOpen(index));
    EXPECT_EQ(table.findChild<QWidget*>(QStringLiteral("qt_editor")), nullptr);
    EXPECT_FALSE(table.model()->flags(index) & Qt::ItemIsEditable);
    EXPECT_FALSE(controller_.tableView_shouldEditTableColumn_row(1, 0, 2));
}

TEST_F(SlotTables, keepTheSelectionOverAReload) {
    app_.start();
    clickRow(controller_.ImportIRTableV(), 4);
    EXPECT_EQ(controller_.ImportIRTableV().selectedRow(), 4);
    controller_.deleteCAB();
    app_.services.alerts[0].answer(1000);
    EXPECT_EQ(controller_.ImportIRTableV().selectedRow(), 4);
}

TEST_F(SlotTables, reportAllTheirRowsAtAReload) {
    app_.start();
    SlotTableModel model(controller_, 1);
    const QSignalSpy reported(&model, &QAbstractItemModel::dataChanged);
    model.reloadData();
    ASSERT_EQ(reported.size(), 1);
    EXPECT_EQ(reported[0][0].toModelIndex(), model.index(0, 0));
    EXPECT_EQ(reported[0][1].toModelIndex(), model.index(9, 0));
}

TEST_F(SlotTables, giveNoDataForAnInvalidIndex) {
    const QAbstractItemModel& model = *controller_.ImportIRTableV().model();
    EXPECT_FALSE(model.data({}).isValid());
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
    EXPECT_EQ(model.columnCount(model.index(0, 0)), 0);
}

class Deletion : public SlotTables {
protected:
    Deletion() { app_.start(); }

    std::vector<Report> reportsAfterConnect() const {
        auto reports = app_.manager.activity().outputReports;
        reports.erase(reports.begin());
        return reports;
    }
};

TEST_F(Deletion, asksWithDeleteFirstAndCancelSecond) {
    click(controller_.deleteIR());
    ASSERT_EQ(app_.services.alerts.size(), 1U);
    EXPECT_EQ(app_.services.alerts[0].alert.messageText, "Do you confirm deletion?");
    EXPECT_EQ(app_.services.alerts[0].alert.buttons, (QStringList{"delete", "cancel"}));
    EXPECT_EQ(app_.services.alerts[0].alert.style, AlertStyle::Warning);
    EXPECT_THAT(reportsAfterConnect(), IsEmpty());
}

TEST_F(Deletion, ofRowThree_sendsSlotThreeAndShows30EmptyAtOnce) {
    clickRow(controller_.ImportIRTableV(), 3);
    click(controller_.deleteIR());
    app_.services.alerts[0].answer(1000);
    EXPECT_EQ(app_.cabLabel(3), "30EMPTY");
    EXPECT_EQ(cells(*controller_.ImportIRTableV().model())[3], "30EMPTY");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes[0], "CAB 30 cleared");
    const auto reports = reportsAfterConnect();
    ASSERT_EQ(reports.size(), 9U);
    EXPECT_THAT(std::vector<int>(reports[0].begin(), reports[0].begin() + 7),
                ElementsAre(63, 0xAA, 0x55, 0x03, 0x02, 0xE4, 3));
    EXPECT_THAT(std::vector<int>(reports[0].begin() + 7, reports[0].end()), Each(0));
    for (std::size_t i = 1; i < 8; ++i) {
        EXPECT_EQ(reports[i][0], 63);
        EXPECT_THAT(std::vector<int>(reports[i].begin() + 1, reports[i].end()), Each(0));
    }
    // 15 zeros, the CRC 0xB5F5, and after it the zeros of the report before.
    EXPECT_EQ(reports[8][0], 17);
    EXPECT_THAT(std::vector<int>(reports[8].begin() + 1, reports[8].begin() + 16), Each(0));
    EXPECT_EQ(reports[8][16], 0xB5);
    EXPECT_EQ(reports[8][17], 0xF5);
    EXPECT_THAT(std::vector<int>(reports[8].begin() + 18, reports[8].end()), Each(0));
}

TEST_F(Deletion, duringATransfer_usesNeitherItsBytesNorItsSlot) {
    const SampleDir files;
    app_.pedal.setFaults({.silentFromPhase = 1});
    app_.importIR(3, files.write("a.wav", WaveFile{.data = FileBytes(1024, 0x55)}.bytes()));
    const std::array<std::uint32_t, 1> words{0x01020304};
    app_.importAMP(3, files.write("b.amp", ampFile(words)));
    clickRow(controller_.ImportIRTableV(), 7);
    click(controller_.deleteIR());
    app_.services.alerts[0].answer(1000);
    EXPECT_EQ(controller_.transferState().selectRow, 3);
    const auto reports = reportsAfterConnect();
    ASSERT_EQ(reports.size(), 27U);
    EXPECT_EQ(reports[18][6], 7);
    EXPECT_THAT(std::vector<int>(reports[18].begin() + 7, reports[18].end()), Each(0));
    for (std::size_t i = 19; i < 26; ++i) {
        EXPECT_THAT(std::vector<int>(reports[i].begin() + 1, reports[i].end()), Each(0));
    }
    EXPECT_THAT(std::vector<int>(reports[26].begin() + 1, reports[26].begin() + 16), Each(0));
}

TEST_F(Deletion, withAnyOtherAnswer_sendsNothingAndLogsTheSecondOnly) {
    const QStringList before = controller_.IRNameArr();
    std::vector<std::string> lines;
    const LogListener listener([&](std::string_view line) { lines.emplace_back(line); });
    for (const int answer : {1001, 1002, 0}) {
        click(controller_.deleteIR());
        app_.services.alerts.back().answer(answer);
    }
    EXPECT_THAT(lines, ElementsAre("2"));
    EXPECT_THAT(reportsAfterConnect(), IsEmpty());
    EXPECT_EQ(controller_.IRNameArr(), before);
}

TEST_F(Deletion, withoutASelectedRow_sendsSlot255AndChangesNoLabel) {
    const QStringList before = controller_.IRNameArr();
    controller_.ImportIRTableV().clearSelection();
    click(controller_.deleteIR());
    app_.services.alerts[0].answer(1000);
    ASSERT_EQ(reportsAfterConnect().size(), 9U);
    EXPECT_EQ(reportsAfterConnect()[0][6], 0xFF);
    EXPECT_EQ(controller_.IRNameArr(), before);
    EXPECT_THAT(app_.manager.activity().changes, IsEmpty());
}

}  // namespace
}  // namespace kelvo::test
