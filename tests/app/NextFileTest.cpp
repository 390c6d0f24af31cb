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

class HeldKey : public NextFile, public testing::WithParamInterface<int> {
protected:
    HeldKey() : NextFile({.answerDelay = std::chrono::milliseconds(GetParam())}) {}
};

TEST_P(HeldKey, lastFileFillsTheSlot_noTransferIsCutOff) {
    for (int i = 1; i <= 20; ++i) {
        wave(QString("%1.wav").arg(i), static_cast<std::uint8_t>(i));
    }
    importFirst(2, files_.path("1.wav"));
    int pressed = 0;
    QTimer keys;
    QObject::connect(&keys, &QTimer::timeout, &keys, [&] {
        press(Qt::Key_Down);
        if (++pressed == 15) {
            keys.stop();
        }
    });
    keys.start(std::chrono::milliseconds(33));
    EXPECT_TRUE(holds(2, "16"));
    EXPECT_EQ(app_.pedal.memory().cab[2].words[0], 0x100000U);
    ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    EXPECT_EQ(pressed, 15);
    // Each transfer that began has changed the memory once: 28 reports each, after the one to connect.
    const auto activity = app_.manager.activity();
    EXPECT_EQ(activity.changes.size(), app_.controller.transferState().IRProgress.number);
    EXPECT_EQ(activity.outputReports.size(), 1 + 28 * activity.changes.size());
}

INSTANTIATE_TEST_SUITE_P(AtAPedalThatAnswersIn, HeldKey, testing::Values(0, 50),
                         [](const auto& delay) { return std::to_string(delay.param) + "ms"; });

}  // namespace
}  // namespace kelvo::test
