// The files of a folder into the same row, in sequence, by keys and buttons.

#include <gtest/gtest.h>

#include <QDir>
#include <QLabel>

#include "Driver.h"
#include "FileImports.h"

namespace kelvo::test {
namespace {

class NextFile : public FileImports {
protected:
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

TEST_F(NextFile, comesIntoTheSameRowByKeysAndButtons) {
    wave("b.wav");
    importFirst(4, wave("a.wav"));
    const auto expectFile = [this](const char* name) {
        EXPECT_TRUE(holds(4, name));
        ASSERT_TRUE(serveUntil([&] { return isIdle(); }));
    };
    ASSERT_TRUE(app_.controller.addIR().hasFocus());
    QTest::keyClick(&app_.controller.addIR(), Qt::Key_Down, Qt::ControlModifier);
    expectFile("B");
    click(button("previousIR"));
    expectFile("A");
    // A button that leads nowhere gives the focus to its table.
    EXPECT_FALSE(button("previousIR").isEnabled());
    EXPECT_TRUE(cab_.hasFocus());
    click(button("nextIR"));
    expectFile("B");
    EXPECT_EQ(app_.cabLabel(4), "31.B");
    EXPECT_EQ(cab_.model()->index(4, 0).data().toString(), "31.B");
    QTest::keyClick(&button("previousIR"), Qt::Key_PageUp);
    expectFile("A");
    press(Qt::Key_Down);
    expectFile("B");
    EXPECT_EQ(cab_.selectedRow(), 4);
    EXPECT_EQ(app_.services.openPanels.size(), 1U);
}

TEST_F(NextFile, ofAnAmpIsTheNextModel) {
    amp("b.amp", 2);
    wave("aa.wav");
    app_.importAMP(3, amp("a.amp"));
    ASSERT_TRUE(changed(1));
    amp_.setFocus();
    QTest::keyClick(&amp_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_TRUE(serveUntil([&] { return app_.pedal.memory().amp[3].name == "b"; }));
    EXPECT_EQ(app_.pedal.memory().amp[3].words[0], 2U);
    EXPECT_TRUE(says("previousAMP", "Imports a.amp (Ctrl+Up, Page Up)"));
    EXPECT_FALSE(button("nextIR").isEnabled());
}

TEST_F(NextFile, isOfferedAndNamedForARowWithAnAcceptedFile) {
    const QString none = "Once this row has a file, imports the next one from its folder (Ctrl+Down, Page Down)";
    const auto expectNone = [&] {
        EXPECT_EQ(button("nextIR").accessibleDescription(), none);
        EXPECT_FALSE(button("nextIR").isEnabled());
        EXPECT_FALSE(button("previousIR").isEnabled());
    };
    expectNone();
    wave("c&lt;b>.wav");
    importFirst(2, wave("a.wav"));
    EXPECT_EQ(button("nextIR").accessibleDescription(), "Imports c&lt;b>.wav (Ctrl+Down, Page Down)");
    EXPECT_EQ(button("nextIR").toolTip(), "<qt>Imports c&amp;lt;b&gt;.wav (Ctrl+Down, Page Down)</qt>");
    EXPECT_EQ(button("previousIR").accessibleDescription(), "There is no previous file in the folder");
    EXPECT_TRUE(button("nextIR").isEnabled());
    EXPECT_FALSE(button("previousIR").isEnabled());
    clickRow(cab_, 3);
    expectNone();
    press(Qt::Key_Down);
    app_.importIR(3, bad("bad.wav"));
    expectNone();
    EXPECT_EQ(transfer(), 1U);
    clickRow(cab_, 2);
    EXPECT_TRUE(button("nextIR").isEnabled());
    cab_.clearSelection();
    expectNone();
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
    EXPECT_EQ(line.foregroundRole(), QPalette::PlaceholderText);
    bad("pos 2.wav");
    wave("pos 10.wav");
    importFirst(3, wave("pos 1.wav"));
    EXPECT_TRUE(shows("pos 1.wav, 1 of 3"));
    press(Qt::Key_PageDown, Qt::NoModifier);
    EXPECT_TRUE(shows("pos 10.wav, 3 of 3"));
    ASSERT_TRUE(changed(2) && serveUntil([&] { return isIdle(); }));
    EXPECT_TRUE(says("nextIR", "There is no next file in the folder"));
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::AccessibleDescriptionRole), "sent: pos 10.wav, 3 of 3");
    EXPECT_EQ(cab_.model()->index(3, 0).data(Qt::ToolTipRole), "<qt>pos 10.wav, 3 of 3</qt>");
    clickRow(cab_, 4);
    EXPECT_EQ(line.text(), "");
    const QString longName = QString(120, 'n') + ".wav";
    app_.importIR(4, wave(longName));
    EXPECT_TRUE(line.text().contains(QChar(0x2026)));
    EXPECT_LE(line.fontMetrics().horizontalAdvance(line.text()), cab_.width());
    EXPECT_EQ(line.accessibleName().left(124), longName);
}

TEST_F(NextFile, lastFileOfAHeldKeyFillsTheSlotAndNoTransferIsCutOff) {
    for (int i = 1; i <= 20; ++i) {
        wave(QString("%1.wav").arg(i), static_cast<std::uint8_t>(i));
    }
    importFirst(2, files_.path("1.wav"));
    app_.pedal.setFaults({.answerDelay = std::chrono::milliseconds(5)});
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

}  // namespace
}  // namespace kelvo::test
