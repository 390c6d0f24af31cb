// Several files dropped together fill the row under the drop and the rows below it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "Driver.h"
#include "FileDrag.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class FileSet : public FileImports {
protected:
    using FileImports::FileImports;

    /// The rows that a frame in the colour of a selection goes along on the left.
    static std::vector<int> markedRows(const SlotTableView& table) {
        const QImage picture = table.viewport()->grab().toImage();
        std::vector<int> rows;
        for (int row = 0; row < 10; ++row) {
            const int middle = table.visualRect(table.model()->index(row, 0)).center().y();
            if (picture.pixelColor(0, middle) == table.palette().color(QPalette::Highlight)) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    std::vector<std::string> changes() const { return app_.manager.activity().changes; }
};

TEST_F(FileSet, files_fillTheRowsFromTheDropInNaturalOrder) {
    EXPECT_TRUE(drop(cab_, 4, waves({"IR 10", "ir 9", "IR 2"})));
    ASSERT_TRUE(changed(3));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 31 <- \"IR 2\""), StartsWith("CAB 32 <- \"IR 9\""),
                                       StartsWith("CAB 33 <- \"IR 10\"")));
    EXPECT_EQ(app_.cabLabel(4), "31.IR 2");
    EXPECT_EQ(cab_.model()->index(6, 0).data().toString(), "33.IR 10");
    EXPECT_EQ(cab_.selectedRow(), 4);
    EXPECT_THAT(waitingRows(cab_), IsEmpty());
}

TEST_F(FileSet, severalFolders_areImportedInSequence) {
    ASSERT_TRUE(QDir(files_.path("")).mkdir("b"));
    ASSERT_TRUE(QDir(files_.path("")).mkdir("a"));
    EXPECT_TRUE(drop(cab_, 0, waves({"b/1", "a/2", "b/3"})));
    ASSERT_TRUE(changed(3));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 27 <- \"2\""), StartsWith("CAB 28 <- \"1\""),
                                       StartsWith("CAB 29 <- \"3\"")));
}

/// Every report of a drop of ten files is that of ten imports by button.
template <typename Import>
void expectTheReportsOfSingleImports(const RunningApp& app, std::size_t reportsOfOne, const Import& import) {
    const std::size_t before = app.manager.activity().outputReports.size();
    ASSERT_EQ(before, 1 + 10 * reportsOfOne);
    for (std::size_t i = 0; i < 10; ++i) {
        import(static_cast<int>(i));
        ASSERT_TRUE(app.waitForChanges(11 + i));
    }
    const auto reports = app.manager.activity().outputReports;
    ASSERT_EQ(reports.size(), 1 + 20 * reportsOfOne);
    for (std::size_t i = 1; i < before; ++i) {
        EXPECT_EQ(reports[i], reports[i + 10 * reportsOfOne]) << i;
    }
}

TEST_F(FileSet, ofTenWavesSendsEveryReportThatTenSingleImportsSend) {
    QStringList paths;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        WaveFile wave{.sampleRate = i % 2 == 0 ? 48000U : 44100U, .bitsPerSample = 24};
        for (std::uint32_t frame = 0; frame < 700; ++frame) {
            append(wave.data, i * 0x010203U + frame * 0x011D3BU, 3);
        }
        paths.append(files_.write(QString("Wave %1.wav").arg(i), wave.bytes()));
    }
    EXPECT_TRUE(drop(cab_, 0, urls(paths)));
    ASSERT_TRUE(changed(10));
    expectTheReportsOfSingleImports(app_, 28, [&](int row) { app_.importIR(row, paths[row]); });
    EXPECT_EQ(app_.pedal.memory().cab[0].name, "WAVE 1");
    EXPECT_EQ(app_.pedal.memory().cab[9].name, "WAVE 10");
}

TEST_F(FileSet, ofTenModelsSendsEveryReportThatTenSingleImportsSend) {
    QStringList paths;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        std::array<std::uint32_t, 512> words{};
        for (std::uint32_t word = 0; word < 512; ++word) {
            words[word] = i * 0x01020304U + word * 0x00110305U;
        }
        paths.append(files_.write(QString("Amp%1.amp").arg(i), ampFile(words)));
    }
    EXPECT_TRUE(drop(amp_, 0, urls(paths)));
    ASSERT_TRUE(changed(10));
    expectTheReportsOfSingleImports(app_, 37, [&](int row) { app_.importAMP(row, paths[row]); });
    EXPECT_EQ(app_.pedal.memory().amp[0].name, "Amp1");
    EXPECT_EQ(app_.pedal.memory().amp[9].name, "Amp10");
    EXPECT_EQ(app_.pedal.memory().amp[9].words[1], 0x0A25212DU);
}

TEST_F(FileSet, refusedFiles_useNoRow) {
    ASSERT_TRUE(QDir(files_.path("")).mkdir("0.wav"));
    QList<QUrl> files = waves({"1", "4"}) + urls({bad("2.wav"), amp("3.amp"), bad("5.wav"), files_.path("gone.wav"),
                                                  files_.path("0.wav"), files_.path("")});
    files.append(QUrl("http://localhost/0.wav"));
    EXPECT_TRUE(drop(cab_, 2, files));
    ASSERT_TRUE(changed(2));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 29 <- \"1\""), StartsWith("CAB 30 <- \"4\"")));
    EXPECT_EQ(app_.cabLabel(4), "31.TWEED 1X8");
}

TEST_F(FileSet, setOfModels_skipsAWave) {
    EXPECT_TRUE(drop(amp_, 8, urls({amp("a.amp"), wave("b.wav"), amp("c.amp")})));
    ASSERT_TRUE(changed(2));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("AMP 64 <- \"a\""), StartsWith("AMP 65 <- \"c\"")));
    EXPECT_EQ(app_.ampLabel(9), "65.C");
}

TEST_F(FileSet, refusedFilesOnly_cannotBeDroppedAfterTheirVerdict) {
    // One that is whole and of a depth that is not converted.
    const QString strange = files_.write("3.wav", WaveFile{.bitsPerSample = 12, .data = FileBytes(8)}.bytes());
    const auto isRefused = [](SlotTableView& table, const QList<QUrl>& files) {
        FileDrag drag(table, files);
        EXPECT_TRUE(drag.enter(2));
        return serveUntil([&] { return !drag.moveTo(2); }) && drag.drop(2) == Qt::IgnoreAction;
    };
    EXPECT_TRUE(isRefused(cab_, urls({bad("1.wav"), bad("2.wav"), strange})));
    EXPECT_TRUE(isRefused(amp_, urls({bad("1.amp"), files_.path("gone.amp")})));
}

TEST_F(FileSet, refusedFilesDroppedBeforeTheirVerdict_changeNothing) {
    EXPECT_TRUE(drop(cab_, 2, urls({bad("1.wav"), bad("2.wav")})));
    EXPECT_EQ(app_.cabLabel(2), "29.VINTAGE412");
    EXPECT_EQ(transfer(), 0U);
    EXPECT_THAT(waitingRows(cab_), IsEmpty());
}

TEST_F(FileSet, fileNamedTwice_isImportedOnce) {
    const QList<QUrl> two = waves({"1", "2"});
    ASSERT_TRUE(QFile::link(files_.path(""), files_.path("again")));
    EXPECT_TRUE(drop(
        cab_, 0,
        {two[1], two[0], QUrl(two[0].toString() + "?again"), two[1], QUrl::fromLocalFile(files_.path("again/1.wav"))}));
    ASSERT_TRUE(changed(2));
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 27 <- \"1\""), StartsWith("CAB 28 <- \"2\"")));
    EXPECT_EQ(app_.cabLabel(2), "29.VINTAGE412");
}

TEST_F(FileSet, marksAsManyRowsAsWillBeWritten) {
    FileDrag drag(cab_, waves({"1", "2", "3"}) + urls({bad("4.wav"), amp("5.amp")}));
    EXPECT_TRUE(drag.enter(1));
    EXPECT_TRUE(drag.moveTo(1));
    EXPECT_THAT(markedRows(cab_), ElementsAre(1, 2, 3, 4));
    ASSERT_TRUE(serveUntil([&] { return markedRows(cab_) == std::vector{1, 2, 3}; }));
    EXPECT_TRUE(drag.moveTo(0));
    EXPECT_THAT(markedRows(cab_), ElementsAre(0, 1, 2));
    EXPECT_TRUE(drag.moveTo(6));
    EXPECT_THAT(markedRows(cab_), ElementsAre(6, 7, 8));
    EXPECT_TRUE(drag.moveTo(8));
    EXPECT_THAT(markedRows(cab_), ElementsAre(8, 9));
    drag.leave();
    EXPECT_THAT(markedRows(cab_), IsEmpty());
    EXPECT_TRUE(drop(cab_, 3, waves({"1", "2"})));
    EXPECT_THAT(markedRows(cab_), IsEmpty());
}

TEST_F(FileSet, isMarkedByAFrameOfTwoPixelsAroundTheRowsThatWillBeWritten) {
    const auto picture = [this] { return cab_.viewport()->grab().toImage(); };
    const QImage before = picture();
    FileDrag drag(cab_, waves({"1", "2"}));
    drag.enter(4);
    drag.moveTo(4);
    const QImage marked = picture();
    const QRect rows(0, cab_.rowViewportPosition(4), marked.width(), 2 * cab_.rowHeight(4));
    for (int y = 0; y < marked.height(); ++y) {
        for (int x = 0; x < marked.width(); ++x) {
            const bool isFrame = rows.contains(x, y) && !rows.adjusted(2, 2, -2, -2).contains(x, y);
            ASSERT_EQ(marked.pixel(x, y) != before.pixel(x, y), isFrame) << x << ", " << y;
        }
    }
}

TEST_F(FileSet, saysHowManyOfTheDraggedFilesWillBeWritten) {
    const auto corner = [this](int row) {
        const QRect rect = cab_.visualRect(cab_.model()->index(row, 0)).adjusted(4, 4, -4, -4);
        return cab_.viewport()->grab(rect).toImage().copy(rect.width() - 60, 0, 60, rect.height());
    };
    FileDrag all(cab_, waves({"1", "2"}));
    all.enter(1);
    all.moveTo(1);
    const QImage plain = corner(2);
    all.leave();
    FileDrag some(cab_, waves({"1", "2"}) + urls({amp("3.amp")}));
    some.enter(1);
    some.moveTo(1);
    EXPECT_NE(corner(2), plain);
}

TEST_F(FileSet, isJudgedOncePerDragAndStoppedWhenItLeaves) {
    QList<QUrl> judged;
    std::stop_source stop;
    cab_.setFileJudge([&](const QList<QUrl>& files, const SlotTableView::Verdict&) {
        judged += files;
        return stop;
    });
    const QList<QUrl> files = waves({"1", "2"});
    FileDrag drag(cab_, files);
    drag.enter(0);
    for (int row = 0; row < 10; ++row) {
        EXPECT_TRUE(drag.moveTo(row));
    }
    EXPECT_EQ(judged, files);
    EXPECT_FALSE(stop.stop_requested());
    drag.leave();
    EXPECT_TRUE(stop.stop_requested());
}

TEST_F(FileSet, eachRow_stepsFromItsOwnFile) {
    waves({"1", "2", "3", "4", "5"});
    EXPECT_TRUE(drop(cab_, 3, urls({files_.path("2.wav"), files_.path("4.wav")})));
    ASSERT_TRUE(changed(2));
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }) && willBring("3.wav"));
    clickRow(cab_, 4);
    EXPECT_TRUE(willBring("5.wav"));
    press(Qt::Key_Up);
    EXPECT_TRUE(holds(4, "3"));
    clickRow(cab_, 5);
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(FileSet, hungSet_isReplacedByASingleImport) {
    // The pedal keeps the end of the first to itself, so that it can be made to hang in the second.
    app_.pedal.setFaults({.silentFromPhase = 4});
    EXPECT_TRUE(drop(cab_, 0, waves({"1", "2", "3"})));
    ASSERT_TRUE(changed(1));
    app_.pedal.setFaults({.silentFromPhase = 3});
    acknowledge({4});
    ASSERT_TRUE(
        app_.manager.waitFor([](const auto& activity) { return activity.outputReports.size() == 1 + 28 + 27; }));
    QCoreApplication::processEvents();
    EXPECT_THAT(waitingRows(cab_), ElementsAre(2));
    EXPECT_THAT(app_.services.alerts, IsEmpty());
    app_.pedal.setFaults({});
    app_.importIR(9, wave("9.wav"));
    ASSERT_TRUE(changed(2));
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    EXPECT_THAT(waitingRows(cab_), IsEmpty());
    EXPECT_THAT(changes(), ElementsAre(StartsWith("CAB 27 <- \"1\""), StartsWith("CAB 36 <- \"9\"")));
    EXPECT_EQ(transfer(), 3U);
    EXPECT_EQ(app_.manager.activity().outputReports.size(), 1 + 28 + 27 + 28U);
}

/// The test gives the pedal's answers.
class FileSetOfASilentPedal : public FileSet {
protected:
    FileSetOfASilentPedal() : FileSet({.silentFromPhase = 1}) {}

    /// The first of three transfers has begun, two rows wait.
    void begin(int row = 4) {
        ASSERT_TRUE(drop(cab_, row, waves({"1", "2", "3"})));
        ASSERT_EQ(transfer(), 1U);
        ASSERT_THAT(waitingRows(cab_), ElementsAre(row + 1, row + 2));
    }
    /// Nothing but this transfer has begun, although it and all before it have ended.
    void expectTheEndAfter(std::uint64_t last) {
        acknowledge({1, 2, 3, 4});
        acknowledge({1, 2, 3, 4, 5}, 0xE2);
        EXPECT_EQ(transfer(), last);
        EXPECT_THAT(waitingRows(cab_), IsEmpty());
        EXPECT_THAT(waitingRows(amp_), IsEmpty());
    }
};

TEST_F(FileSetOfASilentPedal, continuesAfterTheLastAcknowledgement) {
    begin();
    EXPECT_EQ(app_.cabLabel(5), "32.");
    acknowledge({1, 2, 3});
    EXPECT_EQ(transfer(), 1U);
    acknowledge({4});
    EXPECT_EQ(transfer(), 2U);
    EXPECT_EQ(sending(), "2");
    EXPECT_EQ(app_.controller.transferState().selectRow, 5);
    EXPECT_EQ(app_.cabLabel(5), "32.2");
    EXPECT_THAT(waitingRows(cab_), ElementsAre(6));
    // What an earlier transfer left on its way ends nothing.
    acknowledge({4, 3, 4});
    EXPECT_EQ(transfer(), 2U);
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "3");
    EXPECT_THAT(waitingRows(cab_), IsEmpty());
    expectTheEndAfter(3);
}

TEST_F(FileSetOfASilentPedal, endsWithTheLastRow) {
    ASSERT_TRUE(drop(cab_, 8, waves({"1", "2", "3", "4"})));
    EXPECT_THAT(waitingRows(cab_), ElementsAre(9));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "2");
    EXPECT_EQ(app_.controller.transferState().selectRow, 9);
    expectTheEndAfter(2);
}

TEST_F(FileSetOfASilentPedal, setOfModels_continuesWhenTheNameIsAcknowledged) {
    ASSERT_TRUE(drop(amp_, 0, urls({amp("1.amp"), amp("2.amp")})));
    EXPECT_THAT(waitingRows(amp_), ElementsAre(1));
    acknowledge({1, 2, 3, 4}, 0xE2);
    EXPECT_STREQ(app_.controller.transferState().SendAMPFileName.data(), "1");
    acknowledge({5}, 0xE2);
    EXPECT_STREQ(app_.controller.transferState().SendAMPFileName.data(), "2");
}

TEST_F(FileSetOfASilentPedal, waitsForTheEndOfATransferOfEitherKind) {
    app_.importAMP(0, amp("0.amp"));
    acknowledge({1, 2}, 0xE2);
    ASSERT_TRUE(drop(cab_, 4, waves({"1", "2"})));
    EXPECT_EQ(transfer(), 0U);
    EXPECT_THAT(waitingRows(cab_), ElementsAre(4, 5));
    acknowledge({3, 4, 5}, 0xE2);
    EXPECT_EQ(sending(), "1");
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5));
}

TEST_F(FileSetOfASilentPedal, removedFile_leavesItsRowToTheNext) {
    begin();
    ASSERT_TRUE(QFile::remove(files_.path("2.wav")));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "3");
    EXPECT_EQ(app_.controller.transferState().selectRow, 5);
    EXPECT_THAT(waitingRows(cab_), IsEmpty());
    expectTheEndAfter(2);
    EXPECT_EQ(app_.cabLabel(6), "33.BASS 4X10");
}

TEST_F(FileSetOfASilentPedal, survivesACancelledChooser_isDiscardedByAChosenFile) {
    begin();
    app_.services.choice.clear();
    click(app_.controller.addAMP());
    QTest::keyClick(&cab_, Qt::Key_Return);
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5, 6));
    app_.importIR(9, wave("9.wav"));
    EXPECT_EQ(sending(), "9");
    expectTheEndAfter(2);
}

TEST_F(FileSetOfASilentPedal, isFollowedByARequestedStep) {
    begin();
    ASSERT_TRUE(willBring("2.wav"));
    press(Qt::Key_Down);
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5, 6));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "2");
    EXPECT_EQ(app_.controller.transferState().selectRow, 5);
    acknowledge({1, 2, 3, 4});
    acknowledge({1, 2, 3, 4});
    EXPECT_TRUE(serveUntil([&] { return transfer() == 4; }));
    EXPECT_EQ(sending(), "2");
    EXPECT_EQ(app_.controller.transferState().selectRow, 4);
    expectTheEndAfter(4);
}

TEST_F(FileSetOfASilentPedal, stepWithoutAFile_discardsNothing) {
    begin();
    clickRow(cab_, 9);
    press(Qt::Key_Down);
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5, 6));
}

TEST_F(FileSetOfASilentPedal, anotherSet_replacesItInTheSameRows) {
    begin();
    ASSERT_TRUE(drop(amp_, 5, urls({amp("a.amp")})));
    ASSERT_TRUE(drop(cab_, 6, waves({"7", "8"})));
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5, 6, 7));
    EXPECT_THAT(waitingRows(amp_), ElementsAre(5));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "2");
    acknowledge({1, 2, 3, 4});
    EXPECT_THAT(waitingRows(amp_), IsEmpty());
    acknowledge({1, 2, 3, 4, 5}, 0xE2);
    EXPECT_EQ(sending(), "7");
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "8");
    expectTheEndAfter(5);
}

TEST_F(FileSetOfASilentPedal, pausesWhileAQuestionIsOpen) {
    begin();
    clickRow(cab_, 5);
    app_.controller.deleteCAB();
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(transfer(), 1U);
    EXPECT_EQ(app_.cabLabel(5), "32.");
    app_.services.alerts.back().answer(kAlertSecondButtonReturn);
    EXPECT_EQ(sending(), "2");
}

TEST_F(FileSetOfASilentPedal, deletedPendingRow_isLeftOut) {
    begin();
    clickRow(cab_, 5);
    app_.controller.deleteCAB();
    EXPECT_THAT(waitingRows(cab_), ElementsAre(5, 6));
    app_.services.alerts.back().answer(kAlertFirstButtonReturn);
    EXPECT_THAT(waitingRows(cab_), ElementsAre(6));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "3");
    EXPECT_EQ(app_.controller.transferState().selectRow, 6);
    EXPECT_EQ(app_.cabLabel(5), "32EMPTY");
    expectTheEndAfter(2);
}

TEST_F(FileSetOfASilentPedal, deletionOfAnotherRow_discardsNothing) {
    ASSERT_TRUE(drop(amp_, 2, urls({amp("a.amp"), amp("b.amp")})));
    clickRow(cab_, 3);
    app_.controller.deleteCAB();
    app_.services.alerts.back().answer(kAlertFirstButtonReturn);
    EXPECT_THAT(waitingRows(amp_), ElementsAre(3));
}

/// Another transfer after the pedal has not answered for three seconds.
class FileSetOfAHungPedal : public FileSetOfASilentPedal {
protected:
    void hang() {
        begin();
        acknowledge({1, 2, 3, 4});
        acknowledge({1, 2});
        ASSERT_TRUE(serveUntil([&] { return state(cab_, 5) == SlotState::NotAnswering; }));
        EXPECT_THAT(waitingRows(cab_), ElementsAre(6));
        EXPECT_EQ(transfer(), 2U);
        EXPECT_THAT(app_.services.alerts, IsEmpty());
    }
};

TEST_F(FileSetOfAHungPedal, isReplacedByASingleImport) {
    hang();
    app_.importIR(9, wave("9.wav"));
    EXPECT_EQ(sending(), "9");
    EXPECT_THAT(rowsThatAre(SlotState::CutOff, cab_), ElementsAre(5));
    expectTheEndAfter(3);
}

TEST_F(FileSetOfAHungPedal, isReplacedByADrop) {
    hang();
    ASSERT_TRUE(drop(cab_, 8, waves({"7", "8"})));
    EXPECT_EQ(sending(), "7");
    EXPECT_THAT(waitingRows(cab_), ElementsAre(9));
    EXPECT_THAT(rowsThatAre(SlotState::CutOff, cab_), ElementsAre(5));
    acknowledge({1, 2, 3, 4});
    EXPECT_EQ(sending(), "8");
    expectTheEndAfter(4);
}

TEST_F(FileSetOfAHungPedal, isReplacedByASetOfTheOtherKind) {
    hang();
    ASSERT_TRUE(drop(amp_, 0, urls({amp("a.amp"), amp("b.amp")})));
    EXPECT_THAT(rowsThatAre(SlotState::CutOff, cab_), ElementsAre(5));
    acknowledge({1, 2, 3, 4, 5}, 0xE2);
    acknowledge({1, 2, 3, 4, 5}, 0xE2);
    EXPECT_THAT(rowsThatAre(SlotState::Sent, amp_), ElementsAre(0, 1));
}

TEST_F(FileSetOfAHungPedal, isReplacedByAStep) {
    hang();
    clickRow(cab_, 4);
    press(Qt::Key_Down, 2);
    EXPECT_TRUE(serveUntil([&] { return transfer() == 3; }));
    EXPECT_EQ(sending(), "3");
    EXPECT_EQ(app_.controller.transferState().selectRow, 4);
    expectTheEndAfter(3);
}

TEST_F(FileSetOfAHungPedal, continuesWhenThePedalAnswers) {
    hang();
    acknowledge({3, 4});
    EXPECT_EQ(sending(), "3");
    EXPECT_THAT(rowsThatAre(SlotState::Sent, cab_), ElementsAre(4, 5));
    expectTheEndAfter(3);
}

}  // namespace
}  // namespace kelvo::test
