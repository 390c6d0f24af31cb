#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <array>

#include "AppHarness.h"
#include "Driver.h"
#include "SampleFiles.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FileBytes smallWave() {
    return WaveFile{.data = {0, 1, 0, 2}}.bytes();
}

FileBytes smallAmp() {
    return ampFile(std::array<std::uint32_t, 2>{1, 2});
}

class KeysAndDrops : public testing::Test {
protected:
    void SetUp() override {
        app_.start();
        window_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
        cab_.setFocus();
    }

    /// What a file manager does that lets go of the files above the row; whether it hears that they were taken.
    static bool drop(SlotTableView& table, int row, const QList<QUrl>& urls) {
        QMimeData files;
        files.setUrls(urls);
        const QPointF place = table.visualRect(table.model()->index(row, 0)).center();
        QDragEnterEvent enter(place.toPoint(), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(table.viewport(), &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDragMoveEvent move(place.toPoint(), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(table.viewport(), &move);
        QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(table.viewport(), &event);
        // A move would make the file manager delete the file.
        EXPECT_TRUE(!event.isAccepted() || event.dropAction() == Qt::CopyAction);
        QCoreApplication::sendPostedEvents(&table);
        return event.isAccepted() && move.isAccepted();
    }
    QList<QUrl> file(const QString& name, const FileBytes& bytes) const {
        return {QUrl::fromLocalFile(files_.write(name, bytes))};
    }

    SampleDir files_;
    RunningApp app_;
    QWidget& window_ = app_.controller.window();
    SlotTableView& cab_ = app_.controller.ImportIRTableV();
    SlotTableView& amp_ = app_.controller.ImportCabTableV();
};

TEST_F(KeysAndDrops, returnAndEnterOpenTheImportOfTheFocusedTable) {
    QTest::keyClick(&cab_, Qt::Key_Return);
    QTest::keyClick(&cab_, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(app_.services.openPanels, (std::vector<QString>{"wav", "wav"}));
    amp_.setFocus();
    QTest::keyClick(&amp_, Qt::Key_Return);
    EXPECT_EQ(app_.services.openPanels, (std::vector<QString>{"wav", "wav", "amp"}));
}

TEST_F(KeysAndDrops, deleteAsksToClearTheSelectedCabAndNothingElse) {
    clickRow(cab_, 6);
    QTest::keyClick(&cab_, Qt::Key_Delete);
    ASSERT_EQ(app_.services.alerts.size(), 1U);
    EXPECT_EQ(app_.services.alerts[0].alert.messageText, "Do you confirm deletion?");
    app_.services.alerts[0].answer(1000);
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes[0], "CAB 33 cleared");
    clickRow(amp_, 6);
    QTest::keyClick(&amp_, Qt::Key_Delete);
    EXPECT_EQ(app_.services.alerts.size(), 1U);
}

TEST_F(KeysAndDrops, mnemonicsReachEveryTableAndButton) {
    QTest::keyClick(&window_, Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(amp_.hasFocus());
    QTest::keyClick(&window_, Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(cab_.hasFocus());
    QTest::keyClick(&window_, Qt::Key_I, Qt::AltModifier);
    QTest::keyClick(&window_, Qt::Key_M, Qt::AltModifier);
    EXPECT_TRUE(serveUntil([this] { return app_.services.openPanels == std::vector<QString>{"wav", "amp"}; }));
    QTest::keyClick(&window_, Qt::Key_D, Qt::AltModifier);
    EXPECT_TRUE(serveUntil([this] { return app_.services.alerts.size() == 1; }));
}

TEST_F(KeysAndDrops, tabGoesFromTableToItsButtonsAndOn) {
    std::vector<QString> order;
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(window_.focusWidget(), Qt::Key_Tab);
        order.push_back(window_.focusWidget()->objectName());
    }
    EXPECT_THAT(order, ElementsAre("addIR", "deleteIR", "ImportCabTableV", "addAMP", "ImportIRTableV"));
}

TEST_F(KeysAndDrops, aTableReachedByTheKeyboardKeepsItsRow) {
    QTest::keyClick(&window_, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(amp_.selectedRow(), 0);
    QTest::keyClick(&amp_, Qt::Key_Down);
    EXPECT_EQ(amp_.selectedRow(), 1);
    QTest::keyClick(&window_, Qt::Key_C, Qt::AltModifier);
    QTest::keyClick(&window_, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(amp_.selectedRow(), 1);
}

TEST_F(KeysAndDrops, aWaveDroppedOnACabRowIsImportedThere) {
    EXPECT_TRUE(drop(cab_, 7, file("My Cab.WAV.wav", smallWave())));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.cabLabel(7), "34.MY CAB.WAV");
    EXPECT_EQ(cab_.selectedRow(), 7);
    EXPECT_EQ(app_.pedal.memory().cab[7].words[0], 0x010000U);
    EXPECT_EQ(app_.pedal.memory().cab[7].name, "MY CAB.WAV");
}

TEST_F(KeysAndDrops, aModelDroppedOnAnAmpRowIsImportedThere) {
    EXPECT_TRUE(drop(amp_, 9, file("Lead.amp", smallAmp())));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.ampLabel(9), "65.LEAD");
    EXPECT_EQ(app_.pedal.memory().amp[9].words[1], 2U);
}

TEST_F(KeysAndDrops, aRefusedFileChangesNothingAfterItsDrop) {
    EXPECT_TRUE(drop(cab_, 2, file("noise.wav", {1, 2, 3})));
    // As by its button: an escape in a model's path names no file.
    EXPECT_TRUE(drop(amp_, 2, file("My Amp.amp", smallAmp())));
    EXPECT_TRUE(drop(cab_, 3, file("good.wav", smallWave())));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes.size(), 1U);
    EXPECT_EQ(app_.cabLabel(2), "29.VINTAGE412");
    EXPECT_EQ(app_.ampLabel(2), "58.LEAD      ");
}

TEST_F(KeysAndDrops, onlyOneLocalFileOfTheTablesTypeIsWelcome) {
    const QList<QUrl> wave = file("a.wav", smallWave());
    const QList<QUrl> amp = file("a.amp", smallAmp());
    EXPECT_FALSE(drop(cab_, 1, amp));
    EXPECT_FALSE(drop(amp_, 1, wave));
    EXPECT_FALSE(drop(cab_, 1, wave + wave));
    EXPECT_FALSE(drop(cab_, 1, {}));
    EXPECT_FALSE(drop(cab_, 1, {QUrl("http://localhost/a.wav")}));
    EXPECT_FALSE(drop(cab_, 1, file("wav", smallWave())));
    EXPECT_EQ(cab_.selectedRow(), 0);
    EXPECT_TRUE(drop(cab_, 1, file("UPPER.WAV", smallWave())));
}

TEST_F(KeysAndDrops, nothingIsWelcomeWhileAnAlertIsOpen) {
    const QList<QUrl> wave = file("a.wav", smallWave());
    QWidget alert(&window_, Qt::Dialog);
    alert.setWindowModality(Qt::ApplicationModal);
    alert.show();
    EXPECT_FALSE(drop(cab_, 1, wave));
    alert.hide();
    EXPECT_TRUE(drop(cab_, 1, wave));
}

TEST_F(KeysAndDrops, aDragMarksTheRowBelowItUntilItLeaves) {
    QMimeData files;
    files.setUrls(file("a.wav", smallWave()));
    const QImage before = cab_.viewport()->grab().toImage();
    const QPoint place = cab_.visualRect(cab_.model()->index(4, 0)).center();
    QDragEnterEvent enter(place, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(cab_.viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(cab_.viewport(), &move);
    EXPECT_NE(cab_.viewport()->grab().toImage(), before);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(cab_.viewport(), &leave);
    EXPECT_EQ(cab_.viewport()->grab().toImage(), before);
    EXPECT_EQ(cab_.selectedRow(), 0);
}

}  // namespace
}  // namespace kelvo::test
