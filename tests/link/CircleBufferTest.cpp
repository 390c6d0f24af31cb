#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <thread>
#include <vector>

#include "CircleBuffer.h"
#include "LockRecord.h"
#include "Ring.h"

namespace kelvo {
namespace {

using test::takeRing;
using Bytes = std::vector<std::uint8_t>;
using Mutexes = std::vector<const void*>;

class CircleBuffer : public testing::Test {
protected:
    void SetUp() override { ClearRx_buffer(); }

    /// Leaves an empty ring whose next byte goes to storage index `index`.
    static void moveIndicesTo(std::uint32_t index) {
        Bytes bytes(index);
        ASSERT_TRUE(putRX_buffer(bytes.data(), index));
        ASSERT_TRUE(getRX_buffer(index, bytes.data()));
    }
};

TEST_F(CircleBuffer, writeThatFits_isStored_longerOneIsNot) {
    const Bytes first(10000, 0x11);
    const Bytes second(241, 0x22);
    ASSERT_TRUE(putRX_buffer(first.data(), 10000));
    EXPECT_FALSE(putRX_buffer(second.data(), 241));
    EXPECT_FALSE(putRX_buffer(second.data(), 0xFFFFFFFF));
    EXPECT_TRUE(putRX_buffer(second.data(), 240));
    EXPECT_FALSE(putRX_buffer(second.data(), 1));
    Bytes full = first;
    full.resize(10240, 0x22);
    EXPECT_FALSE(getRX_buffer(0xFFFFFFFF, full.data()));
    EXPECT_EQ(takeRing(), full);
    const Bytes tooMuch(10241, 0x11);
    EXPECT_FALSE(putRX_buffer(tooMuch.data(), 10241)) << "not even by an empty ring";
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST_F(CircleBuffer, refusesToGiveFourBytesOfThreeAndKeepsThem) {
    const Bytes three{0xAA, 0x55, 0x02};
    ASSERT_TRUE(putRX_buffer(three.data(), 3));
    Bytes out{9, 9, 9, 9};
    EXPECT_FALSE(getRX_buffer(4, out.data()));
    EXPECT_EQ(out, (Bytes{9, 9, 9, 9}));
    EXPECT_TRUE(getRX_buffer(3, out.data()));
    EXPECT_EQ(out, (Bytes{0xAA, 0x55, 0x02, 9}));
    EXPECT_FALSE(getRX_buffer(1, out.data()));
}

TEST_F(CircleBuffer, keepsTheOrderAcrossTheEndOfItsStorage) {
    for (const std::uint32_t start : {0U, 10234U, 10236U, 10237U, 10239U}) {
        ClearRx_buffer();
        moveIndicesTo(start);
        const Bytes bytes{1, 2, 3, 4, 5, 6};
        ASSERT_TRUE(putRX_buffer(bytes.data(), 4));
        ASSERT_TRUE(putRX_buffer(bytes.data() + 4, 2));
        Bytes out(2);
        EXPECT_TRUE(getRX_buffer(2, out.data()));
        EXPECT_EQ(out, (Bytes{1, 2})) << "from storage index " << start;
        EXPECT_EQ(takeRing(), (Bytes{3, 4, 5, 6})) << "from storage index " << start;
    }
}

TEST_F(CircleBuffer, holdsItsFullSizeFromAnyStartIndex) {
    moveIndicesTo(5000);
    Bytes full(10240);
    std::iota(full.begin(), full.end(), std::uint8_t{0});
    EXPECT_TRUE(putRX_buffer(full.data(), 10240));
    EXPECT_FALSE(putRX_buffer(full.data(), 1));
    EXPECT_EQ(takeRing(), full);
}

TEST_F(CircleBuffer, isEmptyAfterClear) {
    const Bytes full(10240, 0x33);
    ASSERT_TRUE(putRX_buffer(full.data(), 10240));
    ClearRx_buffer();
    std::uint8_t out = 9;
    EXPECT_FALSE(getRX_buffer(1, &out));
    EXPECT_EQ(out, 9);
    EXPECT_TRUE(putRX_buffer(full.data(), 10240));
    EXPECT_EQ(takeRing(), full);
}

TEST_F(CircleBuffer, alwaysGrantsZeroBytesAndChangesNothing) {
    EXPECT_TRUE(getRX_buffer(0, nullptr));
    EXPECT_TRUE(putRX_buffer(nullptr, 0));
    EXPECT_EQ(takeRing(), Bytes{});

    const Bytes full(10240, 0x44);
    ASSERT_TRUE(putRX_buffer(full.data(), 10240));
    EXPECT_TRUE(putRX_buffer(nullptr, 0));
    EXPECT_TRUE(getRX_buffer(0, nullptr));
    EXPECT_EQ(takeRing(), full);
}

// Which no run over it would show with certainty.
TEST_F(CircleBuffer, isGuardedByOneMutexInAllItDoes) {
    std::uint8_t byte = 1;
    const test::LockRecord record;
    ASSERT_TRUE(putRX_buffer(&byte, 1));
    ASSERT_TRUE(getRX_buffer(1, &byte));
    ClearRx_buffer();
    ASSERT_EQ(record.locked.size(), 3U);
    EXPECT_EQ(record.locked, Mutexes(3, record.locked[0]));
}

TEST_F(CircleBuffer, streamBetweenThreads_isCompleteAndInOrder) {
    constexpr std::uint32_t kReports = 2000;
    std::thread hidThread([] {
        std::array<std::uint8_t, 63> report{};
        std::uint8_t next = 0;
        for (std::uint32_t sent = 0; sent < kReports; ++sent) {
            for (std::uint8_t& byte : report) {
                byte = next++;
            }
            while (!putRX_buffer(report.data(), 63)) {
                std::this_thread::yield();
            }
        }
    });
    std::uint8_t expected = 0;
    std::array<std::uint8_t, 7> piece{};  // 63 is a multiple of 7, so the last read is met too
    std::uint32_t wrong = 0;
    for (std::uint32_t taken = 0; taken < kReports * 63; taken += 7) {
        while (!getRX_buffer(7, piece.data())) {
            std::this_thread::yield();
        }
        for (const std::uint8_t byte : piece) {
            wrong += byte != expected++ ? 1U : 0U;
        }
    }
    hidThread.join();
    EXPECT_EQ(wrong, 0U);
}

}  // namespace
}  // namespace kelvo
