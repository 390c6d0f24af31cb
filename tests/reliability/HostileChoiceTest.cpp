// Choices that are no sound files, through the complete program: nothing is sent or kept, and the answer comes at once,
// whatever size they report.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QPushButton>
#include <ctime>
#include <fstream>

#include "Driver.h"
#include "ReliabilityApp.h"

namespace kelvo::test {
namespace {

/// Of processor time; what is waited for would end the test by its limit.
constexpr std::clock_t kAtOnce = CLOCKS_PER_SEC;
#if defined(__has_feature)
#define KELVO_HAS_FEATURE(feature) __has_feature(feature)
#else
#define KELVO_HAS_FEATURE(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || KELVO_HAS_FEATURE(address_sanitizer) || \
    KELVO_HAS_FEATURE(thread_sanitizer)
constexpr std::size_t kShadow = 10;  // a sanitizer keeps records of every byte, and bytes that were freed
#else
constexpr std::size_t kShadow = 1;
#endif
constexpr std::size_t kFewKiB = kShadow * 64 * 1024;

/// The most memory that the process ever held, in KiB.
std::size_t peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::size_t kib = 0;
            status >> kib;
            return kib;
        }
    }
    return 0;
}

class HostileChoice : public testing::Test {
protected:
    HostileChoice() { startQuickly(app_); }

    void expectRefused(const QString& path) {
        const std::uint32_t reports = triedReports(app_);
        const Holdings before = holdings();
        const std::size_t peak = peakMemory();
        const std::clock_t start = std::clock();
        app_.importIR(3, path);
        app_.importAMP(4, path);
        EXPECT_LT(std::clock() - start, kAtOnce) << path.toStdString();
        EXPECT_LT(peakMemory() - peak, kFewKiB) << path.toStdString();
        EXPECT_EQ(holdings().descriptors, before.descriptors);
        EXPECT_EQ(triedReports(app_), reports);
        EXPECT_FALSE(app_.controller.transferState().isInportIR);
        EXPECT_FALSE(app_.controller.transferState().isInportAMP);
    }
    /// A sparse file of this size that begins with `head`.
    QString sparse(const QString& name, const FileBytes& head, off_t size) {
        const QString path = files_.write(name, head);
        EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), size), 0);
        return path;
    }

    SampleDir files_;
    RunningApp app_;
};

TEST_F(HostileChoice, whatIsNoSoundFileOrTooLarge_isRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(files_.path("fifo.wav")).constData(), 0600), 0);
    for (const QString& path :
         {files_.path("fifo.wav"), files_.path("."), files_.path("gone.wav"), QString("/dev/zero"),
          QString("/dev/null"), QString("/dev/full"), QString("/dev/random"), QString("/dev/tty"),
          QString("/proc/self/mem"), QString("/proc/self/maps"), QString("/proc/version"),
          sparse("4g.wav", waveOf(1), 0x100000000), sparse("5t.wav", waveOf(1), 0x50000000000),
          sparse("4g.amp", ampOf(1), 0x100000000)}) {
        expectRefused(path);
    }
}

TEST_F(HostileChoice, largeFilesBesideAChosenOne_costNoMemory) {
    const QString first = files_.write("1.wav", waveOf(1));
    // Without chunks, so that it must be looked through to its end.
    sparse("2.wav", {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'A', 'V', 'E'}, 80 << 20);
    files_.write("3.wav", waveOf(3));
    sparse("4.wav", waveOf(4), 0xF0000000);
    const std::size_t peak = peakMemory();
    app_.importIR(3, first);
    auto& next = *app_.controller.window().findChild<QPushButton*>("nextIR");
    ASSERT_TRUE(serveUntil([&] { return next.accessibleDescription().startsWith("Imports 2.wav"); }));
    click(next);
    ASSERT_TRUE(serveUntil([&] { return app_.pedal.memory().cab[3].name == "3"; }));
    ASSERT_TRUE(serveUntil([&] { return next.accessibleDescription().startsWith("Imports 4.wav"); }));
    EXPECT_LT(peakMemory() - peak, kFewKiB);
}

TEST_F(HostileChoice, largeSoundFile_costsNoMoreThanItsSizeAndLeavesNothing) {
    constexpr off_t kSize = 64 * 1024 * 1024;
    const QString path = sparse("large.wav", waveOf(0x111111), kSize);
    const Holdings before = holdings();
    const std::size_t peak = peakMemory();
    app_.importIR(3, path);
    ASSERT_TRUE(app_.waitForChanges(1));
    EXPECT_THAT(app_.pedal.memory().cab[3].words, testing::Each(0x111111U));
    EXPECT_LT(peakMemory() - peak, kShadow * static_cast<std::size_t>(kSize / 1024) + kFewKiB);
    EXPECT_LT(holdings().memory, before.memory + kFewKiB);
}

}  // namespace
}  // namespace kelvo::test
