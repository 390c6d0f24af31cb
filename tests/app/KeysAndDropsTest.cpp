#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "AMPFile.h"
#include "Driver.h"
#include "FileDrag.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KeysAndDrops : public FileImports {
protected:
    QWidget& window_ = app_.controller.window();
};

TEST_F(KeysAndDrops, returnAndEnterOpenTheImportOfTheFocusedTable) {
    QTest::keyClick(&cab_, Qt::Key_Return);
    QTest::keyClick(&cab_, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(app_.services.openPanels, (std::vector<QString>{"wav", "wav"}));
    amp_.setFocus();
    QTest::keyClick(&amp_, Qt::Key_Return);
    EXPECT_EQ(app_.services.openPanels, (std::vector<QString>{"wav", "wav", "amp"}));
}

TEST_F(KeysAndDrops, theChooser_saysWhichSlotItIsFor) {
    clickRow(cab_, 7);
    QTest::keyClick(&cab_, Qt::Key_Return);
    clickRow(amp_, 2);
    QTest::keyClick(&amp_, Qt::Key_Return);
    EXPECT_THAT(app_.services.openPanelTitles,
                ElementsAre("Choose a .wav file for CAB 34", "Choose a .amp file for AMP 58"));
}

TEST_F(KeysAndDrops, deleteAsksToClearTheSelectedCabAndNothingElse) {
    clickRow(cab_, 2);
    QTest::keyClick(&cab_, Qt::Key_Delete);
    ASSERT_EQ(app_.services.alerts.size(), 1U);
    const Alert& alert = app_.services.alerts[0].alert;
    EXPECT_EQ(alert.messageText, "Do you confirm deletion?");
    EXPECT_EQ(alert.informativeText, "29. VINTAGE412");
    EXPECT_EQ(alert.subject, &cab_);
    app_.services.alerts[0].answer(1000);
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes[0], "CAB 29 cleared");
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

TEST_F(KeysAndDrops, aFileDroppedOnARow_isImportedThere) {
    EXPECT_TRUE(drop(cab_, 7, urls({wave("My Cab.WAV.wav")})));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.cabLabel(7), "34.MY CAB.WAV");
    EXPECT_EQ(cab_.selectedRow(), 7);
    EXPECT_EQ(app_.pedal.memory().cab[7].words[0], 0x010000U);
    EXPECT_EQ(app_.pedal.memory().cab[7].name, "MY CAB.WAV");
    ASSERT_TRUE(serveUntil([this] { return isIdle(); }));
    EXPECT_TRUE(drop(amp_, 9, urls({amp("Lead.amp", 2)})));
    ASSERT_TRUE(app_.waitForChanges(2));
    EXPECT_EQ(app_.ampLabel(9), "65.LEAD");
    EXPECT_EQ(app_.pedal.memory().amp[9].words[0], 2U);
}

TEST_F(KeysAndDrops, aDroppedFileThatItsReaderRefusesChangesNothing) {
    const QString rate = files_.write("rate.wav", WaveFile{.sampleRate = 22050, .data = {0, 1, 0, 2}}.bytes());
    EXPECT_TRUE(drop(cab_, 2, urls({bad("noise.wav")})));
    EXPECT_TRUE(drop(cab_, 2, urls({rate})));
    EXPECT_TRUE(drop(amp_, 2, urls({bad("noise.amp")})));
    // As by its button: an escape in a model's path names no file.
    EXPECT_TRUE(drop(amp_, 2, urls({amp("My Amp.amp")})));
    EXPECT_TRUE(drop(cab_, 3, urls({wave("good.wav")})));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.manager.activity().changes.size(), 1U);
    EXPECT_EQ(app_.cabLabel(2), "29.VINTAGE412");
    EXPECT_EQ(app_.ampLabel(2), "58.LEAD      ");
}

TEST_F(KeysAndDrops, draggedFile_changesNoTransfer) {
    app_.importIR(4, wave("a.wav"));
    ASSERT_TRUE(app_.waitForChanges(1));
    app_.importAMP(5, amp("a.amp"));
    ASSERT_TRUE(app_.waitForChanges(2));
    const auto hang = [](SlotTableView& table, const QList<QUrl>& urls) { return FileDrag(table, urls).enter(0); };
    EXPECT_TRUE(hang(cab_, urls({wave("b.wav", 7)})));
    EXPECT_TRUE(hang(amp_, urls({amp("b.amp", 8)})));
    EXPECT_EQ(app_.controller.transferState().selectRow, 5);
    EXPECT_EQ(app_.controller.transferState().irdatabuff[0], 0x010000U);
    EXPECT_EQ(AmpPiontBuff[0], 1U);
}

TEST_F(KeysAndDrops, aDoubleClickOnARowImports) {
    const QPoint row = cab_.visualRect(cab_.model()->index(3, 0)).center();
    QTest::mouseClick(cab_.viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(cab_.viewport(), Qt::LeftButton, {}, row);
    EXPECT_THAT(app_.services.openPanelTitles, ElementsAre("Choose a .wav file for CAB 30"));
}

TEST_F(KeysAndDrops, copy_listsSentRows_pasteImportsThem) {
    const QString first = wave("One two.wav");
    const QString second = wave("b.wav");
    app_.importIR(7, first);
    ASSERT_TRUE(serveUntil([this] { return isIdle(); }));
    app_.importIR(2, second);
    ASSERT_TRUE(serveUntil([this] { return isIdle(); }));
    QCoreApplication::processEvents();
    app_.importIR(4, bad("refused.wav"));
    cab_.setFocus();
    QTest::keyClick(&cab_, Qt::Key_C, Qt::ControlModifier);
    const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), "29\tB\t" + second + "\n34\tONE TWO\t" + first);
    EXPECT_THAT(copied->urls(), ElementsAre(QUrl::fromLocalFile(second), QUrl::fromLocalFile(first)));
    cab_.selectRow(8);
    QTest::keyClick(&cab_, Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(serveUntil([&] { return app_.manager.activity().changes.size() == 4; }));
    EXPECT_EQ(app_.cabLabel(8), "35.B");
    EXPECT_EQ(app_.cabLabel(9), "36.ONE TWO");
}

TEST_F(KeysAndDrops, copyWithoutASentRowLeavesTheClipboard) {
    QGuiApplication::clipboard()->setText("kept");
    QTest::keyClick(&cab_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "kept");
    QTest::keyClick(&cab_, Qt::Key_V, Qt::ControlModifier);
    EXPECT_FALSE(app_.controller.transferState().isInportIR);
}

TEST_F(KeysAndDrops, aUrlWithThisHostAQueryOrAFragmentIsOpenedByItsPath) {
    const QString path = urls({wave("My Cab.wav")}).first().path();
    std::size_t changes = 0;
    for (const char* const form : {"file://localhost%1", "file://%1?version=2", "file://%1#middle"}) {
        EXPECT_TRUE(drop(cab_, 7, {QUrl(QString(form).arg(path))})) << form;
        ++changes;
        EXPECT_TRUE(serveUntil([&] { return app_.manager.activity().changes.size() == changes; })) << form;
    }
    EXPECT_EQ(app_.cabLabel(7), "34.MY CAB");
    EXPECT_FALSE(drop(cab_, 7, {QUrl(QString("file://elsewhere%1").arg(path))}));
}

TEST_F(KeysAndDrops, aDrop_isAcceptedOnlyOfLocalFilesOfTheTablesTypeAndWithoutAnAlert) {
    EXPECT_FALSE(drop(cab_, 1, urls({amp("a.amp")})));
    EXPECT_FALSE(drop(amp_, 1, urls({wave("a.wav")})));
    EXPECT_FALSE(drop(cab_, 1, {}));
    EXPECT_FALSE(drop(cab_, 1, {QUrl("http://localhost/a.wav")}));
    EXPECT_FALSE(drop(cab_, 1, urls({wave("wav")})));
    EXPECT_EQ(cab_.selectedRow(), 0);
    EXPECT_TRUE(drop(cab_, 1, urls({wave("UPPER.WAV")})));
    QWidget alert(&window_, Qt::Dialog);
    alert.setWindowModality(Qt::ApplicationModal);
    alert.show();
    EXPECT_FALSE(drop(cab_, 1, urls({wave("a.wav")})));
    alert.hide();
    EXPECT_TRUE(drop(cab_, 1, urls({wave("a.wav")})));
}

TEST_F(KeysAndDrops, aDragMarksTheRowBelowItUntilItLeaves) {
    const QImage before = cab_.viewport()->grab().toImage();
    FileDrag drag(cab_, urls({wave("a.wav")}));
    drag.enter(4);
    drag.moveTo(4);
    EXPECT_NE(cab_.viewport()->grab().toImage(), before);
    drag.leave();
    EXPECT_EQ(cab_.viewport()->grab().toImage(), before);
    EXPECT_EQ(cab_.selectedRow(), 0);
}

}  // namespace
}  // namespace kelvo::test
