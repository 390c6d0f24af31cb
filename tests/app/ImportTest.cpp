// The imports as the controller runs them, with a pedal that answers at once.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AppHarness.h"
#include "IRLayout.h"
#include "SampleFiles.h"
#include "ScriptedLink.h"
#include "SlotTableView.h"
#include "WatchedDevice.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Import : public testing::Test {
protected:
    Import() { app_.start(); }

    QString wave(const QString& name) { return files_.write(name, WaveFile{.data = FileBytes(64, 0x40)}.bytes()); }
    QString amp(const QString& name) {
        const std::array<std::uint32_t, 3> words{1, 2, 3};
        return files_.write(name, ampFile(words));
    }
    /// Slot and phase bytes of the first report of each packet since the connect frame.
    std::vector<std::vector<int>> packets() const {
        std::vector<std::vector<int>> result;
        for (const Report& report : app_.manager.activity().outputReports) {
            if (report[1] == 0xAA && report[2] == 0x55 && report[5] != 0xE0) {
                result.push_back({report[5], report[6], report[7]});
            }
        }
        return result;
    }
    std::string name(std::size_t cabSlot) const { return app_.pedal.memory().cab[cabSlot].name; }

    SampleDir files_;
    RunningApp app_;
};

TEST_F(Import, anIR_isSentInFourPacketsAndItsLabelChangesAtOnce) {
    app_.importIR(0, wave("mycab.wav"));
    EXPECT_EQ(app_.cabLabel(0), "27.MYCAB");
    EXPECT_EQ(app_.controller.ImportIRTableV().model()->index(0, 0).data().toString(), "27.MYCAB");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_THAT(packets(), ElementsAre(ElementsAre(0xE1, 0, 1), ElementsAre(0xE1, 0, 2), ElementsAre(0xE1, 0, 3),
                                       ElementsAre(0xE1, 0, 4)));
    EXPECT_EQ(name(0), "MYCAB");
    EXPECT_THAT(app_.services.openPanels, ElementsAre("wav"));
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2, 1, 0));
    EXPECT_TRUE(serveUntil([&] { return app_.controller.transferState().IRTick == 0; }));
    EXPECT_TRUE(app_.controller.transferState().isInportIR);
}

TEST_F(Import, anAmp_isSentInFivePacketsAndItsPhaseStaysFive) {
    app_.importAMP(2, amp("clean.amp"));
    EXPECT_EQ(app_.ampLabel(2), "58.CLEAN");
    EXPECT_EQ(app_.controller.ImportCabTableV().model()->index(2, 0).data().toString(), "58.CLEAN");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_THAT(packets(), ElementsAre(ElementsAre(0xE2, 2, 1), ElementsAre(0xE2, 2, 2), ElementsAre(0xE2, 2, 3),
                                       ElementsAre(0xE2, 2, 4), ElementsAre(0xE2, 2, 5)));
    EXPECT_EQ(app_.pedal.memory().amp[2].name, "clean");
    EXPECT_THAT(app_.services.openPanels, ElementsAre("amp"));
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2, 1, 0));
    EXPECT_EQ(app_.controller.transferState().AMPTick, 5);
    EXPECT_TRUE(app_.controller.transferState().isInportAMP);
}

TEST_F(Import, twiceOfAKind_staysAnImportOfThatKind) {
    app_.importIR(0, wave("one.wav"));
    app_.importAMP(0, amp("one.amp"));
    app_.importIR(1, wave("two.wav"));
    app_.importAMP(1, amp("two.amp"));
    EXPECT_TRUE(app_.controller.transferState().isInportIR);
    EXPECT_TRUE(app_.controller.transferState().isInportAMP);
}

TEST_F(Import, aCancelledChooser_changesNothing) {
    app_.controller.importIrButtonClick();
    app_.controller.importAMPButtonClick();
    EXPECT_THAT(packets(), IsEmpty());
    EXPECT_EQ(app_.controller.transferState().selectRow, 0);
    EXPECT_FALSE(app_.controller.transferState().isInportIR);
    EXPECT_FALSE(app_.controller.transferState().isInportAMP);
}

TEST_F(Import, withoutASelectedCabRow_goesToSlot255AndChangesNoLabel) {
    const QStringList before = app_.controller.IRNameArr();
    app_.services.choice = QUrl::fromLocalFile(wave("x.wav"));
    app_.controller.ImportIRTableV().clearSelection();
    app_.controller.importIrButtonClick();
    ASSERT_TRUE(app_.manager.waitFor([](const auto& activity) { return activity.outputReports.size() == 29; }));
    EXPECT_TRUE(serveUntil([&] { return app_.controller.transferState().IRTick == 0; }));
    EXPECT_THAT(packets(), ElementsAre(ElementsAre(0xE1, 0xFF, 1), ElementsAre(0xE1, 0xFF, 2),
                                       ElementsAre(0xE1, 0xFF, 3), ElementsAre(0xE1, 0xFF, 4)));
    EXPECT_EQ(app_.controller.IRNameArr(), before);
    EXPECT_THAT(app_.manager.activity().changes, IsEmpty());
}

TEST_F(Import, withoutASelectedAmpRow_goesToSlot255AndChangesNoLabel) {
    const QStringList before = app_.controller.AMPNameArr();
    app_.services.choice = QUrl::fromLocalFile(amp("x.amp"));
    app_.controller.ImportCabTableV().clearSelection();
    app_.controller.importAMPButtonClick();
    ASSERT_TRUE(app_.manager.waitFor([](const auto& activity) { return activity.outputReports.size() == 38; }));
    EXPECT_THAT(packets(), testing::Contains(testing::ElementsAre(0xE2, 0xFF, 5)));
    EXPECT_EQ(app_.controller.AMPNameArr(), before);
    EXPECT_THAT(app_.manager.activity().changes, IsEmpty());
}

TEST_F(Import, aRefusedFile_sendsNothingButStoresTheRow) {
    app_.importIR(4, files_.write("bad.wav", FileBytes(100, 'x')));
    EXPECT_EQ(app_.controller.transferState().selectRow, 4);
    app_.importAMP(6, files_.write("bad.amp", FileBytes(100, 'x')));
    EXPECT_EQ(app_.controller.transferState().selectRow, 6);
    app_.importIR(7, files_.write("rate.wav", WaveFile{.sampleRate = 22050, .data = FileBytes(64, 1)}.bytes()));
    EXPECT_EQ(app_.controller.transferState().selectRow, 7);
    EXPECT_THAT(packets(), IsEmpty());
    EXPECT_EQ(app_.controller.transferState().IRTick, 0);
    EXPECT_EQ(app_.controller.transferState().AMPTick, 0);
    EXPECT_FALSE(app_.cabLabel(4).contains("BAD"));
}

TEST_F(Import, ofAWavePathWithSpacesAndUmlauts_opens) {
    app_.importIR(1, wave("my cäb.wav"));
    ASSERT_TRUE(app_.waitForChanges(1));
    // Six letters are counted and six bytes are copied, of which the umlaut takes two.
    EXPECT_EQ(name(1), "MY C\xC3\x84");
    EXPECT_EQ(app_.cabLabel(1), QStringLiteral("28.MY CÄ"));
}

TEST_F(Import, ofAnAmpPathWithASpace_neverOpens) {
    app_.importAMP(1, amp("My Amp.amp"));
    EXPECT_THAT(packets(), IsEmpty());
    EXPECT_EQ(app_.controller.transferState().selectRow, 1);
    app_.importAMP(1, amp("My%20Amp.amp"));
    EXPECT_THAT(packets(), IsEmpty());
}

TEST_F(Import, ofALongName_sendsTenBytesAndShowsTheSame) {
    app_.importIR(5, wave("Vintage 4x12 cabinet.wav"));
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(name(5), "VINTAGE 4X");
    EXPECT_EQ(app_.cabLabel(5), "32.VINTAGE 4X");
}

TEST_F(Import, ofThePedalsOwnFormat_endsANameWithoutAnEndWhereTheLabelsRoomEnds) {
    FileNameBuff[3] = "abcdefghijklmno";
    app_.importIR(5, files_.write("own.wav", FileBytes{'T', 'a', 'v', 'i', 'k', 'I', 'R', 3}));
    FileNameBuff = {};
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(name(5), "abcdefghij");
    EXPECT_EQ(app_.cabLabel(5), "32.ABCDEFGHIJKLMNO    ");
}

TEST_F(Import, ofAnInternalIR_showsItsWholeNameAndSendsTenBytesOfIt) {
    FileNameBuff[4] = "GREENBACK 4X12A";
    FileBytes bytes(2048);
    std::ranges::copy(std::string_view("TavikIR\x04"), bytes.begin());
    app_.importIR(6, files_.write("x.wav", bytes));
    FileNameBuff = {};
    // What follows the fifteen bytes are the spaces of a name that was never set.
    EXPECT_EQ(app_.cabLabel(6).trimmed(), "33.GREENBACK 4X12A");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(name(6), "GREENBACK ");
}

/// The controller on a device that notes the labels at each report.
class WatchedImport : public testing::Test {
protected:
    WatchedImport() {
        link_.manager.attach(device_);
        EXPECT_TRUE(link_.manager.settle());
        controller_.ImportIRTableV().selectRow(0);
        controller_.ImportCabTableV().selectRow(0);
    }
    void choose(const QString& path) { services_.choice = QUrl::fromLocalFile(path); }

    SampleDir files_;
    ScriptedLink link_;
    ScriptedServices services_;
    KelvoAppDelegate controller_{link_.manager, services_.functions()};
    std::vector<QString> cabLabels_;
    std::vector<QString> ampLabels_;
    const std::shared_ptr<WatchedDevice> device_ = std::make_shared<WatchedDevice>([this] {
        cabLabels_.push_back(controller_.IRNameArr().first());
        ampLabels_.push_back(controller_.AMPNameArr().first());
    });
};

TEST_F(WatchedImport, ofAnIR_sendsThePacketBeforeItChangesTheLabel) {
    choose(files_.write("a.wav", WaveFile{.data = FileBytes(8, 1)}.bytes()));
    controller_.importIrButtonClick();
    EXPECT_EQ(cabLabels_, std::vector<QString>(9, ""));
    EXPECT_EQ(controller_.IRNameArr().first(), "27.A");
}

TEST_F(WatchedImport, ofAnAmp_sendsThePacketBeforeItChangesTheLabel) {
    const std::array<std::uint32_t, 1> words{7};
    choose(files_.write("b.amp", ampFile(words)));
    controller_.importAMPButtonClick();
    EXPECT_EQ(ampLabels_, std::vector<QString>(9, ""));
    EXPECT_EQ(controller_.AMPNameArr().first(), "56.B");
}

class SlowImport : public testing::Test {
protected:
    SampleDir files_;
};

TEST_F(SlowImport, anAmpStartedDuringAnIRRedirectsTheRestOfTheIR) {
    RunningApp app({.silentFromPhase = 1});
    app.start();
    app.importIR(3, files_.write("a.wav", WaveFile{.data = FileBytes(8, 1)}.bytes()));
    const std::array<std::uint32_t, 1> words{7};
    app.importAMP(8, files_.write("b.amp", ampFile(words)));
    app.pedal.setFaults({});
    for (const std::uint8_t command : {0xE1, 0xE2}) {
        app.controller.CMD_CallBack(std::array<std::uint8_t, kFrameBufferSize>{0xAA, 0x55, 2, 0, command, 1});
    }
    ASSERT_TRUE(app.waitForChanges(1));
    EXPECT_EQ(app.pedal.memory().amp[8].name, "b");
    const auto irRows = [&app] {
        std::vector<int> rows;
        for (const Report& report : app.manager.activity().outputReports) {
            if (report[1] == 0xAA && report[5] == 0xE1) {
                rows.push_back(report[6]);
            }
        }
        return rows;
    };
    ASSERT_TRUE(serveUntil([&] { return irRows().size() >= 4; }));
    EXPECT_THAT(irRows(), ElementsAre(3, 8, 8, 8));
}

TEST_F(SlowImport, aNewImportDuringATransferRestartsAtTheFirstPhaseWithItsOwnData) {
    RunningApp app({.silentFromPhase = 1});
    app.start();
    app.importIR(3, files_.write("a.wav", WaveFile{.data = FileBytes(8, 1)}.bytes()));
    EXPECT_EQ(app.controller.transferState().IRTick, 1);
    app.pedal.setFaults({});
    app.importIR(5, files_.write("b.wav", WaveFile{.data = FileBytes(8, 2)}.bytes()));
    ASSERT_TRUE(app.waitForChanges(1));
    EXPECT_EQ(app.pedal.memory().cab[5].name, "B");
    EXPECT_EQ(app.pedal.memory().cab[5].words[0], 0x020200U);
    EXPECT_NE(app.pedal.memory().cab[3].name, "A");
}

TEST_F(SlowImport, afterTheCableWasPulledAnImportSendsNothing) {
    RunningApp app;
    app.start();
    app.manager.unplug();
    ASSERT_TRUE(serveUntil([&] { return !app.services.alerts.empty(); }));
    app.importIR(3, files_.write("a.wav", WaveFile{.data = FileBytes(8, 1)}.bytes()));
    EXPECT_EQ(app.manager.activity().outputReports.size(), 1U);
    EXPECT_EQ(app.controller.transferState().IRTick, 1);
}

}  // namespace
}  // namespace kelvo::test
