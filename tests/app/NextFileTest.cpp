// The files of a folder into the same row, in sequence, by keys and buttons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QLabel>

#include "Driver.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

class NextFile : public FileImports {
protected:
    using FileImports::FileImports;

    /// The import of a file that is there already, until the pedal holds it and the neighbours are known.
    void importFirst(int row, const QString& path) {
        app_.importIR(row, path);
        ASSERT_TRUE(changed(1));
        ASSERT_TRUE(serveUntil([&] { return isIdle() && knowsNeighbours(); }));
    }
    bool knowsNeighbours() const {
        return !button("nextIR").accessibleDescription().startsWith("Imports the next") &&
               !button("nextIR").accessibleDescription().startsWith("Once");
    }
};

TEST_F(NextFile, comesByCtrlDownAndTheOneBeforeByCtrlUpIntoTheSameRow) {
    wave("ir 10.wav");
    wave("ir 9.wav");
    importFirst(4, wave("ir 2.wav"));
    press(Qt::Key_Down);
    EXPECT_TRUE(holds(4, "IR 9"));
    EXPECT_EQ(app_.cabLabel(4), "31.IR 9");
    EXPECT_EQ(cab_.model()->index(4, 0).data().toString(), "31.IR 9");
    EXPECT_EQ(cab_.selectedRow(), 4);
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    press(Qt::Key_Down);
    EXPECT_TRUE(holds(4, "IR 10"));
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    press(Qt::Key_Up);
    EXPECT_TRUE(holds(4, "IR 9"));
    EXPECT_EQ(app_.services.openPanels.size(), 1U);
}

TEST_F(NextFile, comesByTheButtonsAndByTheKeysOnThem) {
    wave("b.wav");
    wave("c.wav");
    importFirst(0, wave("a.wav"));
    ASSERT_TRUE(app_.controller.addIR().hasFocus());
    QTest::keyClick(&app_.controller.addIR(), Qt::Key_Down, Qt::ControlModifier);
    EXPECT_TRUE(holds(0, "B"));
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    click(button("previousIR"));
    EXPECT_TRUE(holds(0, "A"));
    // A button that leads nowhere gives the focus to its table.
    EXPECT_FALSE(button("previousIR").isEnabled());
    EXPECT_TRUE(cab_.hasFocus());
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    click(button("nextIR"));
    EXPECT_TRUE(holds(0, "B"));
    EXPECT_TRUE(button("nextIR").hasFocus());
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    QTest::keyClick(&button("nextIR"), Qt::Key_Up, Qt::ControlModifier);
    EXPECT_TRUE(holds(0, "A"));
    EXPECT_EQ(cab_.selectedRow(), 0);
}

TEST_F(NextFile, ofAnAmpIsTheNextModel) {
    const std::array<std::uint32_t, 1> one{1};
    const std::array<std::uint32_t, 1> two{2};
    files_.write("b.amp", ampFile(two));
    files_.write("aa.wav", FileBytes(9, 1));
    app_.importAMP(3, files_.write("a.amp", ampFile(one)));
    ASSERT_TRUE(changed(1));
    amp_.setFocus();
    QTest::keyClick(&amp_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_TRUE(serveUntil([&] { return app_.pedal.memory().amp[3].name == "b"; }));
    EXPECT_EQ(app_.pedal.memory().amp[3].words[0], 2U);
    EXPECT_TRUE(says("previousAMP", "Imports a.amp (Ctrl+Up, Page Up)"));
}

TEST_F(NextFile, isOfferedOnlyForARowWithAnAcceptedFile) {
    EXPECT_FALSE(button("nextIR").isEnabled());
    EXPECT_FALSE(button("previousIR").isEnabled());
    wave("b.wav");
    importFirst(2, wave("a.wav"));
    EXPECT_TRUE(button("nextIR").isEnabled());
    EXPECT_FALSE(button("previousIR").isEnabled());
    EXPECT_FALSE(button("nextAMP").isEnabled());
    clickRow(cab_, 3);
    EXPECT_FALSE(button("nextIR").isEnabled());
    press(Qt::Key_Down);
    EXPECT_EQ(app_.controller.transferState().IRProgress.number, 1U);
    clickRow(cab_, 2);
    EXPECT_TRUE(button("nextIR").isEnabled());
    app_.importIR(3, bad("bad.wav"));
    app_.importAMP(3, bad("bad.amp"));
    EXPECT_FALSE(button("nextIR").isEnabled());
    EXPECT_FALSE(button("nextAMP").isEnabled());
    clickRow(cab_, 2);
    cab_.clearSelection();
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(NextFile, isNamedByTheTooltipAndToAScreenReader) {
    const QString none = "Once this row has a file, imports the next one from its folder (Ctrl+Down, Page Down)";
    EXPECT_EQ(button("nextIR").accessibleDescription(), none);
    wave("c&lt;b>.wav");
    importFirst(0, wave("a.wav"));
    EXPECT_EQ(button("nextIR").accessibleDescription(), "Imports c&lt;b>.wav (Ctrl+Down, Page Down)");
    EXPECT_EQ(button("nextIR").toolTip(), "<qt>Imports c&amp;lt;b&gt;.wav (Ctrl+Down, Page Down)</qt>");
    EXPECT_EQ(button("previousIR").accessibleDescription(), "There is no previous file in the folder");
    EXPECT_FALSE(button("previousIR").isEnabled());
    clickRow(cab_, 1);
    EXPECT_EQ(button("nextIR").accessibleDescription(), none);
    clickRow(cab_, 0);
    press(Qt::Key_Down);
    EXPECT_TRUE(says("previousIR", "Imports a.wav (Ctrl+Up, Page Up)"));
}

TEST_F(NextFile, ofAFolderThatIsGoneIsSaidToBeGone) {
    const SampleDir other;
    ASSERT_TRUE(QDir(other.path("")).mkdir("pack"));
    importFirst(0, other.write("pack/a.wav", WaveFile{.data = {0, 1}}.bytes()));
    other.write("pack/b.wav", WaveFile{.data = {0, 1}}.bytes());
    clickRow(cab_, 0);
    ASSERT_TRUE(QDir(other.path("pack")).removeRecursively());
    app_.importIR(1, wave("z.wav"));
    ASSERT_TRUE(changed(2));
    clickRow(cab_, 0);
    // The buttons do not know yet, unless they led nowhere before.
    press(Qt::Key_Down);
    EXPECT_TRUE(says("nextIR", "The folder of this row's file is gone"));
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(NextFile, isNamedWithItsPlaceInTheLineBelowTheTableAtEveryStep) {
    QLabel& line = *app_.controller.window().findChild<QLabel*>("fileIR");
    const auto shows = [&](const QString& text) { return serveUntil([&] { return line.text() == text; }); };
    EXPECT_EQ(line.text(), "");
    wave("pos 2.wav");
    bad("pos 10.wav");
    wave("pos 11.wav");
    importFirst(3, wave("pos 1.wav"));
    EXPECT_TRUE(shows("pos 1.wav, 1 of 4"));
    press(Qt::Key_PageDown, 1, Qt::NoModifier);
    EXPECT_TRUE(shows("pos 2.wav, 2 of 4"));
    ASSERT_TRUE(changed(2) && serveUntil([&] { return isIdle(); }));
    press(Qt::Key_PageDown, 1, Qt::NoModifier);
    EXPECT_TRUE(shows("pos 11.wav, 4 of 4"));  // past a file that is refused
    ASSERT_TRUE(changed(3) && serveUntil([&] { return isIdle(); }));
    EXPECT_TRUE(says("nextIR", "There is no next file in the folder"));
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::AccessibleDescriptionRole), "sent: pos 11.wav, 4 of 4");
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::ToolTipRole), "<qt>pos 11.wav, 4 of 4</qt>");
    clickRow(cab_, 4);
    EXPECT_EQ(line.text(), "");
    const QString longName = QString(120, 'n') + ".wav";
    app_.importIR(4, wave(longName));
    EXPECT_TRUE(line.text().contains(QChar(0x2026)));
    EXPECT_LE(line.fontMetrics().horizontalAdvance(line.text()), cab_.width());
    EXPECT_EQ(line.accessibleName().left(124), longName);
}

TEST_F(NextFile, comesForEachRowFromItsFolderAsItIsNow) {
    importFirst(0, wave("only.wav"));
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    // An import drops the steps that are still pending.
    const SampleDir other;
    app_.importIR(5, other.write("x.wav", WaveFile{.data = {0, 1}}.bytes()));
    ASSERT_TRUE(changed(2));
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    wave("z.wav");
    clickRow(cab_, 0);
    press(Qt::Key_Down);
    EXPECT_TRUE(holds(0, "Z"));
    EXPECT_THAT(
        app_.manager.activity().changes,
        ElementsAre(StartsWith("CAB 27 <- \"ONLY\""), StartsWith("CAB 32 <- \"X\""), StartsWith("CAB 27 <- \"Z\"")));
}

/// The test gives the pedal's answers.
class NextFileOfASilentPedal : public NextFile {
protected:
    NextFileOfASilentPedal() : NextFile({.silentFromPhase = 1}) {
        for (int i = 1; i <= 9; ++i) {
            wave(QString("%1.wav").arg(i));
        }
    }
    void begin(int row, const QString& name) {
        app_.importIR(row, files_.path(name));
        ASSERT_TRUE(serveUntil([&] { return knowsNeighbours(); }));
    }
};

TEST_F(NextFileOfASilentPedal, waitsForTheEndOfTheRunningTransferAndTheLatestWins) {
    begin(0, "2.wav");
    press(Qt::Key_Down, 3);
    press(Qt::Key_Up);
    acknowledge({1, 2, 3});
    EXPECT_EQ(sending(), "2");
    EXPECT_TRUE(willBring("3.wav"));
    acknowledge({4});
    EXPECT_TRUE(serveUntil([&] { return transfer() == 2; }));
    EXPECT_EQ(sending(), "4");
    EXPECT_TRUE(willBring("5.wav"));
}

TEST_F(NextFileOfASilentPedal, lateEndOfAReplacedTransfer_isIgnored) {
    begin(0, "2.wav");
    acknowledge({1, 2, 3});
    app_.importIR(0, files_.path("5.wav"));
    press(Qt::Key_Down);
    acknowledge({4});
    EXPECT_TRUE(willBring("6.wav"));
    EXPECT_EQ(transfer(), 2U);
    acknowledge({1, 2, 3});
    EXPECT_EQ(transfer(), 2U);
    acknowledge({4});
    EXPECT_TRUE(serveUntil([&] { return transfer() == 3; }));
    EXPECT_EQ(sending(), "6");
}

TEST_F(NextFileOfASilentPedal, isDiscardedByAnImport) {
    begin(0, "2.wav");
    press(Qt::Key_Down);
    app_.importIR(0, files_.path("8.wav"));
    acknowledge({1, 2, 3, 4});
    EXPECT_TRUE(willBring("9.wav"));
    EXPECT_EQ(transfer(), 2U);
    EXPECT_EQ(sending(), "8");
}

TEST_F(NextFileOfASilentPedal, isDiscardedWithItsRowOnly) {
    begin(0, "2.wav");
    press(Qt::Key_Down);
    clickRow(cab_, 1);
    app_.controller.deleteCAB();
    app_.services.alerts.back().answer(1000);
    acknowledge({1, 2, 3, 4});
    ASSERT_TRUE(serveUntil([&] { return transfer() == 2; }));
    EXPECT_EQ(sending(), "3");
    clickRow(cab_, 0);
    press(Qt::Key_Down);
    app_.controller.deleteCAB();
    app_.services.alerts.back().answer(1000);
    acknowledge({1, 2, 3, 4});
    begin(5, "8.wav");
    EXPECT_EQ(transfer(), 3U);
}

TEST_F(NextFileOfASilentPedal, waitsForAnAmpsTransferToo) {
    begin(0, "2.wav");
    acknowledge({1, 2, 3, 4});
    app_.importAMP(1, files_.write("a.amp", ampFile(std::array<std::uint32_t, 1>{7})));
    press(Qt::Key_Down);
    acknowledge({1, 2, 3, 4}, 0xE2);
    ASSERT_TRUE(says("nextAMP", "There is no next file in the folder"));
    EXPECT_EQ(transfer(), 1U);
    acknowledge({5}, 0xE2);
    EXPECT_TRUE(serveUntil([&] { return sending() == "3"; }));
}

class HeldKey : public NextFile, public testing::WithParamInterface<int> {
protected:
    HeldKey() : NextFile({.answerDelay = std::chrono::milliseconds(GetParam())}) {}
};

TEST_P(HeldKey, lastFileFillsTheSlot_noTransferIsCutOff) {
    for (int i = 1; i <= 60; ++i) {
        wave(QString("%1.wav").arg(i), static_cast<std::uint8_t>(i));
    }
    importFirst(2, files_.path("1.wav"));
    int pressed = 0;
    QTimer keys;
    QObject::connect(&keys, &QTimer::timeout, &keys, [&] {
        press(Qt::Key_Down);
        if (++pressed == 40) {
            keys.stop();
        }
    });
    keys.start(std::chrono::milliseconds(33));
    EXPECT_TRUE(holds(2, "41"));
    EXPECT_EQ(app_.pedal.memory().cab[2].words[0], 0x290000U);
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    EXPECT_EQ(pressed, 40);
    // Each transfer that began has changed the memory once: 28 reports each, after the one to connect.
    const auto activity = app_.manager.activity();
    EXPECT_EQ(activity.changes.size(), app_.controller.transferState().IRProgress.number);
    EXPECT_EQ(activity.outputReports.size(), 1 + 28 * activity.changes.size());
}

INSTANTIATE_TEST_SUITE_P(AtAPedalThatAnswersIn, HeldKey, testing::Values(0, 5, 50),
                         [](const auto& delay) { return std::to_string(delay.param) + "ms"; });

}  // namespace
}  // namespace kelvo::test
