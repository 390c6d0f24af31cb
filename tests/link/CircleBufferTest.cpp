#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "CircleBuffer.h"

namespace kelvo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Byte i of everything that is stored is i % 251, so a byte in the wrong place has the wrong value.
class CircleBuffer : public testing::Test {
protected:
    CircleBuffer() { ClearRx_buffer(); }

    bool put(std::uint32_t n) {
        const Bytes bytes = bytesFrom(stored_, n);
        if (!putRX_buffer(bytes.data(), n)) {
            return false;
        }
        stored_ += n;
        return true;
    }

    /// Fails the test unless exactly the n oldest bytes are given, or none.
    bool get(std::uint32_t n) {
        constexpr std::uint8_t kUntouched = 0xFF;
        Bytes bytes(n + 1, kUntouched);
        const bool isGranted = getRX_buffer(n, bytes.data());
        Bytes expected = isGranted ? bytesFrom(taken_, n) : Bytes(n, kUntouched);
        expected.push_back(kUntouched);
        EXPECT_EQ(bytes, expected);
        taken_ += isGranted ? n : 0;
        return isGranted;
    }

    void clear() {
        ClearRx_buffer();
        taken_ = stored_;
    }

private:
    static Bytes bytesFrom(std::uint32_t first, std::uint32_t n) {
        Bytes bytes;
        for (std::uint32_t i = 0; i < n; ++i) {
            bytes.push_back(static_cast<std::uint8_t>((first + i) % 251));
        }
        return bytes;
    }

    std::uint32_t stored_ = 0;  // by the thread that puts
    std::uint32_t taken_ = 0;   // by the thread that gets
};

TEST_F(CircleBuffer, movesAllBytesOfACallOrNone) {
    EXPECT_TRUE(put(0));
    EXPECT_TRUE(get(0));
    EXPECT_FALSE(get(1));
    EXPECT_TRUE(put(3));
    EXPECT_FALSE(get(4));
    EXPECT_TRUE(get(3));
    EXPECT_FALSE(put(10241));
    EXPECT_TRUE(put(10000));
    EXPECT_FALSE(put(241));
    EXPECT_TRUE(put(240));
    EXPECT_FALSE(put(1));
    EXPECT_TRUE(put(0));
    EXPECT_TRUE(get(0));
    std::uint8_t byte = 9;
    EXPECT_FALSE(putRX_buffer(&byte, 0xFFFFFFFF));
    EXPECT_FALSE(getRX_buffer(0xFFFFFFFF, &byte));
    EXPECT_TRUE(get(10240));
    EXPECT_FALSE(get(1));
}

TEST_F(CircleBuffer, keepsTheOrderAcrossTheEndOfItsStorage) {
    for (const std::uint32_t start : {10234U, 10236U, 10237U, 10239U, 10240U}) {
        SCOPED_TRACE(start);
        clear();
        EXPECT_TRUE(put(start));
        EXPECT_TRUE(get(start));
        EXPECT_TRUE(put(4));
        EXPECT_TRUE(put(2));
        EXPECT_TRUE(get(2));
        EXPECT_TRUE(get(4));
    }
}

TEST_F(CircleBuffer, isEmptyAfterClear) {
    EXPECT_TRUE(put(7));
    EXPECT_TRUE(get(3));
    clear();
    EXPECT_FALSE(get(1));
    EXPECT_TRUE(put(10240));
    EXPECT_TRUE(get(10240));
}

TEST_F(CircleBuffer, streamBetweenThreads_isCompleteAndInOrder) {
    std::thread hidThread([this] {
        for (int report = 0; report < 2000; ++report) {
            while (!put(63)) {
                std::this_thread::yield();
            }
        }
    });
    for (int piece = 0; piece < 2000 * 9; ++piece) {
        while (!get(7)) {
            std::this_thread::yield();
        }
    }
    hidThread.join();
}

}  // namespace
}  // namespace kelvo
