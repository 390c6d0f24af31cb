// Every read of a chosen file, and the memory for it, fails once: the import ends there without a trace, and the next
// one works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>

#include "Allocations.h"
#include "ReliabilityApp.h"

namespace {

/// Reads of at most this many bytes each, of which the failing one reports an I/O error; 0 leaves reads alone.
std::atomic<std::size_t> pieceSize = 0;
std::atomic<std::size_t> failingRead = 0;
std::atomic<std::size_t> reads = 0;

}  // namespace

// The linker's --wrap=pread64 gives these names.
extern "C" ssize_t __real_pread64(int fd, void* buffer, std::size_t size,
                                  off_t offset);  // NOLINT(bugprone-reserved-identifier)
extern "C" ssize_t __wrap_pread64(int fd, void* buffer, std::size_t size,
                                  off_t offset) {  // NOLINT(bugprone-reserved-identifier)
    if (pieceSize == 0) {
        return __real_pread64(fd, buffer, size, offset);
    }
    if (++reads == failingRead) {
        errno = EIO;
        return -1;
    }
    return __real_pread64(fd, buffer, std::min<std::size_t>(size, pieceSize), offset);
}

namespace kelvo::test {
namespace {

class FailingCall : public testing::Test {
protected:
    FailingCall() {
        startQuickly(app_);
        EXPECT_TRUE(serveUntil([this] { return !app_.cabLabel(9).isEmpty() && !app_.ampLabel(9).isEmpty(); }));
    }
    ~FailingCall() override {
        pieceSize = failingRead = 0;
        failAllocationsOf(0);
    }

    void readInPieces(std::size_t size, std::size_t failing) {
        reads = 0;
        failingRead = failing;
        pieceSize = size;
    }
    /// Both imports leave no trace but the row.
    void expectNothingHappens(const std::function<void()>& import) {
        const std::uint32_t reports = triedReports(app_);
        const QStringList cabs = app_.controller.IRNameArr();
        const QStringList amps = app_.controller.AMPNameArr();
        const auto descriptors = holdings().descriptors;
        import();
        EXPECT_EQ(triedReports(app_), reports);
        EXPECT_EQ(app_.controller.IRNameArr(), cabs);
        EXPECT_EQ(app_.controller.AMPNameArr(), amps);
        EXPECT_EQ(holdings().descriptors, descriptors);
    }
    void expectTheNextImportsWork() {
        app_.importIR(6, wave_);
        ASSERT_TRUE(app_.waitForChanges(1));
        app_.importAMP(7, amp_);
        ASSERT_TRUE(app_.waitForChanges(2));
        EXPECT_THAT(changedSlots(app_.pedal), testing::ElementsAre("CAB 33", "AMP 63"));
        EXPECT_THAT(app_.pedal.memory().cab[6].words, testing::Each(0x123456U));
        EXPECT_THAT(app_.pedal.memory().amp[7].words, testing::Each(0x12345678U));
    }

    SampleDir files_;
    const QString wave_ = files_.write("a.wav", waveOf(0x123456));
    const QString amp_ = files_.write("a.amp", ampOf(0x12345678));
    RunningApp app_;
};

TEST_F(FailingCall, anyReadOfAWave_endsTheImportAndTheNextWorks) {
    // 1580 bytes, 40 at a time.
    for (std::size_t k = 1; k <= 40; ++k) {
        readInPieces(40, k);
        expectNothingHappens([this] { app_.importIR(3, wave_); });
        EXPECT_EQ(reads, k);
    }
    pieceSize = 0;
    expectTheNextImportsWork();
}

TEST_F(FailingCall, anyReadOfAnAmp_endsTheImportAndTheNextWorks) {
    // 2055 bytes, 50 at a time.
    for (std::size_t k = 1; k <= 42; ++k) {
        readInPieces(50, k);
        expectNothingHappens([this] { app_.importAMP(3, amp_); });
        EXPECT_EQ(reads, k);
    }
    pieceSize = 0;
    expectTheNextImportsWork();
}

TEST_F(FailingCall, theMemoryForAFile_endsTheImportAndTheNextWorks) {
    expectNothingHappens([this] {
        failAllocationsOf(1580);
        app_.importIR(3, wave_);
        failAllocationsOf(2055);
        app_.importAMP(4, amp_);
        failAllocationsOf(0);
    });
    expectTheNextImportsWork();
}

}  // namespace
}  // namespace kelvo::test
