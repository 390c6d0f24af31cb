// Imports from the button to the pedal's memory.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

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
    QString amp(const QString& name) { return files_.write(name, ampFile(std::array<std::uint32_t, 3>{1, 2, 3})); }
    /// Command, slot and phase of each packet since the connect frame.
    std::vector<std::vector<int>> packets() const {
        std::vector<std::vector<int>> result;
        for (const Report& report : app_.manager.activity().outputReports) {
            if (report[1] == 0xAA && report[2] == 0x55 && report[5] != 0xE0) {
                result.push_back({report[5], report[6], report[7]});
            }
        }
        return result;
    }
    bool sent(std::size_t count) const {
        return serveUntil([this, count] { return packets().size() == count; });
    }
    /// The reports after the connect frame are those of the reviewed file, a line of hex each.
    void expectReports(const char* name) const {
        std::vector<std::string> lines;
        for (const Report& report : app_.manager.activity().outputReports) {
            lines.push_back(QByteArray::fromStdString({report.begin(), report.end()}).toHex().toStdString());
        }
        std::ifstream file(std::string(KELVO_GOLDEN) + "/" + name);
        const std::vector<std::string> golden(std::istream_iterator<std::string>(file), {});
        ASSERT_FALSE(golden.empty());
        EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()), golden);
    }

    SampleDir files_;
    RunningApp app_;
};

TEST_F(Import, ofAnIR_sendsFourPacketsAndChangesTheLabelAtOnce) {
    WaveFile file{.bitsPerSample = 24};
    for (std::uint32_t i = 0; i < 512; ++i) {
        append(file.data, i * 0x010203U, 3);
    }
    app_.importIR(4, files_.write("mycab.wav", file.bytes()));
    EXPECT_EQ(app_.cabLabel(4), "31.MYCAB");
    EXPECT_EQ(app_.controller.ImportIRTableV().model()->index(4, 0).data().toString(), "31.MYCAB");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.pedal.memory().cab[4].name, "MYCAB");
    expectReports("ir-import.hex");
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2, 1, 0));
    EXPECT_TRUE(serveUntil([&] { return app_.controller.transferState().IRTick == 0; }));
    EXPECT_TRUE(app_.controller.transferState().isInportIR);
    EXPECT_FALSE(app_.controller.transferState().isInportAMP);
}

TEST_F(Import, ofAnAmp_sendsFivePacketsAndStaysInItsLastPhase) {
    std::array<std::uint32_t, 512> words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * 0x01020304U;
    }
    app_.importAMP(2, files_.write("clean.amp", ampFile(words)));
    EXPECT_EQ(app_.ampLabel(2), "58.CLEAN");
    EXPECT_EQ(app_.controller.ImportCabTableV().model()->index(2, 0).data().toString(), "58.CLEAN");
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_EQ(app_.pedal.memory().amp[2].words, words);
    expectReports("amp-import.hex");
    EXPECT_THAT(app_.services.sleeps, ElementsAre(2, 1, 0));
    EXPECT_EQ(app_.controller.transferState().AMPTick, 5);
    EXPECT_TRUE(app_.controller.transferState().isInportAMP);
}

// The checksums come from a separate calculation with single-precision arithmetic.
TEST_F(Import, ofAFileThatWeDidNotMake_reachesThePedal) {
    std::size_t count = 0;
    for (const auto& [file, change] : {std::pair("Front_Center", "CAB 27 <- \"FRONT_CENT\" 512 points, crc32 f11609d3"),
                                       {"Noise", "CAB 27 <- \"NOISE\" 512 points, crc32 2362b1e0"},
                                       {"Rear_Left", "CAB 27 <- \"REAR_LEFT\" 512 points, crc32 da1920f5"},
                                       {"Side_Right", "CAB 27 <- \"SIDE_RIGHT\" 512 points, crc32 3a64137b"}}) {
        app_.importIR(0, QStringLiteral("/usr/share/sounds/alsa/%1.wav").arg(QLatin1String(file)));
        ASSERT_TRUE(app_.waitForChanges(++count)) << "is the package alsa-utils installed?";
        EXPECT_EQ(app_.manager.activity().changes.back(), change);
    }
}

TEST_F(Import, withoutASelectedRow_goesToSlot255AndChangesNoLabel) {
    const QStringList before = app_.controller.IRNameArr() + app_.controller.AMPNameArr();
    app_.controller.ImportIRTableV().clearSelection();
    app_.controller.ImportCabTableV().clearSelection();
    app_.services.choice = QUrl::fromLocalFile(wave("x.wav"));
    app_.controller.importIrButtonClick();
    ASSERT_TRUE(sent(4));
    app_.services.choice = QUrl::fromLocalFile(amp("x.amp"));
    app_.controller.importAMPButtonClick();
    ASSERT_TRUE(sent(9));
    EXPECT_EQ(packets()[3], (std::vector<int>{0xE1, 0xFF, 4}));
    EXPECT_EQ(packets()[8], (std::vector<int>{0xE2, 0xFF, 5}));
    EXPECT_EQ(app_.controller.IRNameArr() + app_.controller.AMPNameArr(), before);
    EXPECT_THAT(app_.manager.activity().changes, IsEmpty());
}

TEST_F(Import, ofARefusedFile_sendsNothingButStoresTheRow) {
    const QString bad = files_.write("bad.wav", FileBytes(100, 'x'));
    app_.importIR(4, bad);
    EXPECT_EQ(app_.controller.transferState().selectRow, 4);
    app_.importAMP(6, files_.write("bad.amp", FileBytes(100, 'x')));
    EXPECT_EQ(app_.controller.transferState().selectRow, 6);
    app_.importIR(7, files_.write("rate.wav", WaveFile{.sampleRate = 22050, .data = FileBytes(64, 1)}.bytes()));
    EXPECT_EQ(app_.controller.transferState().selectRow, 7);
    // Percent escapes in a model's path are not decoded.
    app_.importAMP(1, amp("My Amp.amp"));
    EXPECT_EQ(app_.controller.transferState().selectRow, 1);
    app_.importIR(3, {});
    EXPECT_EQ(app_.controller.transferState().selectRow, 1);
    EXPECT_THAT(packets(), IsEmpty());
    EXPECT_FALSE(app_.controller.transferState().isInportIR);
    EXPECT_FALSE(app_.controller.transferState().isInportAMP);
    EXPECT_FALSE(app_.cabLabel(4).contains("BAD"));
}

TEST_F(Import, sendsTenBytesOfTheNameAndShowsAllOfIt) {
    FileNameBuff[3] = "abcdefghijklmno";
    FileNameBuff[4] = "GREENBACK 4X12A";
    const FileBytes ownFormat{'T', 'a', 'v', 'i', 'k', 'I', 'R', 3};
    const QString internal = files_.write("x.wav", withTextAt(0, "TavikIR\x04", FileBytes(2048)));
    std::size_t count = 0;
    for (const auto& [path, name, label] :
         {// Six letters are counted and six bytes are copied, of which the umlaut takes two.
          std::tuple(wave("my cäb.wav"), "MY C\xC3\x84", "32.MY CÄ"),
          {wave("Vintage 4x12 cabinet.wav"), "VINTAGE 4X", "32.VINTAGE 4X"},
          // What follows the fifteen bytes are the spaces of a name that was never set.
          {files_.write("own.wav", ownFormat), "abcdefghij", "32.ABCDEFGHIJKLMNO    "},
          {internal, "GREENBACK ", "32.GREENBACK 4X12A    "}}) {
        app_.importIR(5, path);
        ASSERT_TRUE(app_.waitForChanges(++count));
        EXPECT_EQ(app_.pedal.memory().cab[5].name, name);
        EXPECT_EQ(app_.cabLabel(5).toStdString(), label);
    }
    FileNameBuff = {};
}

TEST_F(Import, ofAnAmpDuringAnIR_redirectsTheRestOfTheIR) {
    app_.pedal.setFaults({.silentFromPhase = 1});
    app_.importIR(3, wave("a.wav"));
    app_.importAMP(8, amp("b.amp"));
    app_.pedal.setFaults({});
    app_.controller.CMD_CallBack(std::array<std::uint8_t, kFrameBufferSize>{0xAA, 0x55, 2, 0, 0xE1, 1});
    ASSERT_TRUE(sent(5));
    EXPECT_THAT(packets(), ElementsAre(ElementsAre(0xE1, 3, 1), ElementsAre(0xE2, 8, 1), ElementsAre(0xE1, 8, 2),
                                       ElementsAre(0xE1, 8, 3), ElementsAre(0xE1, 8, 4)));
}

TEST_F(Import, afterTheCableWasPulled_sendsNothing) {
    app_.manager.unplug();
    ASSERT_TRUE(serveUntil([&] { return !app_.services.alerts.empty(); }));
    app_.importIR(3, wave("a.wav"));
    EXPECT_THAT(packets(), IsEmpty());
    EXPECT_EQ(app_.controller.transferState().IRTick, 1);
}

TEST(WatchedImport, sendsThePacketBeforeItChangesTheLabel) {
    const SampleDir files;
    ScriptedLink link;
    ScriptedServices services;
    KelvoAppDelegate controller(link.manager, services.functions());
    QStringList labels;
    link.manager.attach(std::make_shared<WatchedDevice>(
        [&] { labels.append(controller.IRNameArr().first() + controller.AMPNameArr().first()); }));
    ASSERT_TRUE(link.manager.settle());
    controller.ImportIRTableV().selectRow(0);
    controller.ImportCabTableV().selectRow(0);
    services.choice = QUrl::fromLocalFile(files.write("a.wav", WaveFile{.data = FileBytes(8, 1)}.bytes()));
    controller.importIrButtonClick();
    EXPECT_EQ(labels, QStringList(9, ""));
    services.choice = QUrl::fromLocalFile(files.write("b.amp", ampFile(std::array<std::uint32_t, 1>{7})));
    controller.importAMPButtonClick();
    EXPECT_EQ(labels, QStringList(9, "") + QStringList(9, "27.A"));
    EXPECT_EQ(controller.AMPNameArr().first(), "56.B");
}

}  // namespace
}  // namespace kelvo::test
