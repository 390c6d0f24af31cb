// The slot tables' models, the controller as their source, and the deletion of a CAB slot.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "AppHarness.h"
#include "Driver.h"
#include "LoadDataWindowController.h"
#include "LogListener.h"
#include "SampleFiles.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two rows that may be edited, of which the second one has a status.
class TwoRows : public testing::Test, public SlotTableDataSource {
protected:
    int numberOfRowsInTableView(int) const override { return 2; }
    QString tableView_objectValueForTableColumn_row(int, int, int row) const override { return QString::number(row); }
    bool tableView_shouldEditTableColumn_row(int, int, int) const override { return true; }
    void tableViewSelectionDidChange(int) override {}
    RowStatus rowStatus(int, int row) const override { return row == 1 ? status_ : RowStatus(); }

    QVariant data(int row, int role) const { return model_.index(row, 0).data(role); }

    RowStatus status_;
    SlotTableModel model_{*this, 1};
};

TEST_F(TwoRows, haveAWordForTheirColumn_canBeEditedIfTheirSourceSaysSo) {
    EXPECT_EQ(model_.headerData(0, Qt::Horizontal), "Slot");
    EXPECT_EQ(model_.headerData(0, Qt::Vertical), "");
    EXPECT_EQ(model_.headerData(0, Qt::Horizontal, Qt::ToolTipRole), "");
    EXPECT_EQ(model_.flags(model_.index(1, 0)),
              Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren);
    EXPECT_FALSE(model_.data({}).isValid());
    EXPECT_EQ(model_.rowCount(model_.index(0, 0)), 0);
    EXPECT_EQ(model_.columnCount(model_.index(0, 0)), 0);
}

TEST_F(TwoRows, areAllReportedAtAReload) {
    const QSignalSpy reported(&model_, &QAbstractItemModel::dataChanged);
    model_.reloadData();
    ASSERT_EQ(reported.size(), 1);
    EXPECT_EQ(reported[0][0].toModelIndex(), model_.index(0, 0));
    EXPECT_EQ(reported[0][1].toModelIndex(), model_.index(1, 0));
}

TEST_F(TwoRows, giveTheStatusAsItIsNow) {
    status_ = {SlotState::Running, 0.25, "a.wav"};
    EXPECT_EQ(data(1, SlotTableModel::kStateRole).value<SlotState>(), SlotState::Running);
    EXPECT_EQ(data(1, SlotTableModel::kShareRole), 0.25);
    EXPECT_EQ(data(1, Qt::ToolTipRole), "<qt>a.wav</qt>");
    EXPECT_EQ(data(0, SlotTableModel::kStateRole).value<SlotState>(), SlotState::Idle);
    EXPECT_EQ(data(0, Qt::ToolTipRole), "");
    for (const auto& [status, text] : {std::pair(RowStatus(), ""),
                                       {{.file = "a.wav, 9 of 16"}, "a.wav, 9 of 16"},
                                       {{SlotState::Waiting}, "waiting"},
                                       {{SlotState::Running, 0.75, "a.wav"}, "75 % sent: a.wav"},
                                       {{SlotState::NotAnswering, 0.0, "a.wav"}, "0 % sent, no answer: a.wav"},
                                       {{SlotState::Sent, 0.0, "a.wav, 9 of 16"}, "sent: a.wav, 9 of 16"},
                                       {{SlotState::CutOff, 0.0, "a.wav"}, "cut off: a.wav"}}) {
        status_ = status;
        EXPECT_EQ(data(1, Qt::AccessibleDescriptionRole), text);
    }
}

class SlotTables : public testing::Test {
protected:
    SlotTables() { app_.start(); }

    void deleteRow(int row, int answer = kAlertFirstButtonReturn) {
        cab_.selectRow(row);
        click(controller_.deleteIR());
        app_.services.alerts.back().answer(answer);
    }
    std::vector<Report> lastReports(std::size_t count) const {
        const auto reports = app_.manager.activity().outputReports;
        return {reports.end() - static_cast<std::ptrdiff_t>(count), reports.end()};
    }
    /// The nine reports of a deletion of row 3.
    static std::vector<Report> deletion() {
        std::vector<Report> reports(9, Report{63});
        reports[0] = {63, 0xAA, 0x55, 0x03, 0x02, 0xE4, 3};
        // 15 zeros, the CRC 0xB5F5, and after it the zeros of the report before.
        reports[8] = {17};
        reports[8][16] = 0xB5;
        reports[8][17] = 0xF5;
        return reports;
    }

    RunningApp app_;
    KelvoAppDelegate& controller_ = app_.controller;
    SlotTableView& cab_ = controller_.ImportIRTableV();
};

TEST_F(SlotTables, areDistinguishedByTheirTags) {
    EXPECT_EQ(cab_.tag(), 1);
    EXPECT_EQ(controller_.ImportCabTableV().tag(), 2);
    const auto label = [this](int tag, int column, int row) {
        return controller_.tableView_objectValueForTableColumn_row(tag, column, row);
    };
    EXPECT_EQ(label(1, 0, 0), "27.OPEN 1X12");
    EXPECT_EQ(label(1, 5, 9), "36.");
    EXPECT_EQ(label(2, 1, 2), "58.LEAD      ");
    EXPECT_TRUE(label(0, 0, 0).isNull());
    EXPECT_EQ(controller_.numberOfRowsInTableView(3), 10);
    SlotTableModel other(controller_, 3);
    other.reloadData();
    EXPECT_EQ(other.index(9, 0).data(), "");
    EXPECT_EQ(other.index(9, 0).data(SlotTableModel::kStateRole).value<SlotState>(), SlotState::Idle);
}

TEST_F(SlotTables, neverStartEditing) {
    const QModelIndex index = cab_.model()->index(2, 0);
    QTest::mouseDClick(cab_.viewport(), Qt::LeftButton, {}, cab_.visualRect(index).center());
    QTest::keyClick(&cab_, Qt::Key_F2);
    EXPECT_EQ(cab_.findChild<QWidget*>(QStringLiteral("qt_editor")), nullptr);
    EXPECT_FALSE(cab_.model()->flags(index) & Qt::ItemIsEditable);
    EXPECT_FALSE(controller_.tableView_shouldEditTableColumn_row(1, 0, 2));
}

TEST_F(SlotTables, giveThePropertiesThatWereSet) {
    EXPECT_EQ(controller_.IRNameValue() + controller_.AMPNameValue(), 0);
    controller_.setPRESET_PARAValue(200);
    controller_.setIRNameValue(7);
    controller_.setAMPNameValue(255);
    controller_.setIRNameArr({"a", "b"});
    controller_.setAMPNameArr({"c"});
    EXPECT_EQ(controller_.PRESET_PARAValue(), 200);
    EXPECT_EQ(controller_.IRNameValue(), 7);
    EXPECT_EQ(controller_.AMPNameValue(), 255);
    EXPECT_EQ(controller_.IRNameArr(), (QStringList{"a", "b"}));
    EXPECT_EQ(controller_.AMPNameArr(), QStringList{"c"});
    EXPECT_EQ(cab_.model()->index(0, 0).data(), "27.OPEN 1X12");
    auto loading = std::make_unique<LoadDataWindowController>();
    const auto* const loadWindow = loading.get();
    controller_.setLoadWindow(std::move(loading));
    EXPECT_EQ(&controller_.loadWindow(), loadWindow);
}

TEST_F(SlotTables, deletionOfRowThree_asksAndShows30EmptyAtOnce) {
    deleteRow(3);
    const Alert& alert = app_.services.alerts[0].alert;
    EXPECT_EQ(alert.messageText, "Do you confirm deletion?");
    EXPECT_EQ(alert.buttons, (QStringList{"delete", "cancel"}));
    EXPECT_EQ(alert.style, AlertStyle::Warning);
    EXPECT_EQ(cab_.model()->index(3, 0).data(), "30EMPTY");
    EXPECT_EQ(cab_.selectedRow(), 3);
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes[0], "CAB 30 cleared");
    EXPECT_EQ(app_.manager.activity().outputReports.size(), 1 + 9U);
    EXPECT_EQ(lastReports(9), deletion());
}

TEST_F(SlotTables, deletionDuringATransfer_usesNeitherItsBytesNorItsSlot) {
    const SampleDir files;
    app_.pedal.setFaults({.silentFromPhase = 1});
    app_.importIR(5, files.write("a.wav", WaveFile{.data = FileBytes(1024, 0x55)}.bytes()));
    app_.importAMP(5, files.write("b.amp", ampFile(std::array<std::uint32_t, 1>{0x01020304})));
    deleteRow(3);
    EXPECT_EQ(controller_.transferState().selectRow, 5);
    EXPECT_EQ(lastReports(9), deletion());
}

TEST_F(SlotTables, deletionWithAnyOtherAnswer_sendsNothingAndLogsTheSecondOnly) {
    const QStringList before = controller_.IRNameArr();
    std::vector<std::string> lines;
    const LogListener listener([&](std::string_view line) { lines.emplace_back(line); });
    for (const int answer : {1001, 1002, 0}) {
        deleteRow(3, answer);
    }
    EXPECT_THAT(lines, ElementsAre("2"));
    EXPECT_EQ(app_.manager.activity().outputReports.size(), 1U);
    EXPECT_EQ(controller_.IRNameArr(), before);
}

TEST_F(SlotTables, deletionWithoutASelectedRow_sendsSlot255AndChangesNoLabel) {
    const QStringList before = controller_.IRNameArr();
    cab_.clearSelection();
    deleteRow(-1);
    EXPECT_EQ(lastReports(9)[0][6], 0xFF);
    EXPECT_EQ(controller_.IRNameArr(), before);
    EXPECT_THAT(app_.manager.activity().changes, IsEmpty());
}

}  // namespace
}  // namespace kelvo::test
