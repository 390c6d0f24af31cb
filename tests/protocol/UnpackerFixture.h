#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "CircleBuffer.h"
#include "DataUnpacking.h"
#include "RecordingApp.h"
#include "Ring.h"

namespace kelvo::test {

using Bytes = std::vector<std::uint8_t>;

/// Three small frames whose CRCs were computed outside this program.
inline const Bytes kConnectFrame{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25};
inline const Bytes kProgressFrame{0xAA, 0x55, 0x02, 0x00, 0xA5, 0xC7, 0x59, 0xB7};
inline const Bytes kAcknowledgeFrame{0xAA, 0x55, 0x02, 0x00, 0xE1, 0x01, 0x21, 0x35};

/// The longest frame, LENGTH 1018: the command and all data are 0x42.
inline Bytes longestFrame() {
    Bytes frame{0xAA, 0x55, 0xFA, 0x03};
    frame.resize(1022, 0x42);
    frame.push_back(0x5C);
    frame.push_back(0xF5);
    return frame;
}

inline Bytes joined(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

/// The unpacker at the start of a stream, between an empty ring and an application that keeps the frames.
class UnpackerFixture : public testing::Test {
protected:
    void SetUp() override {
        ClearRx_buffer();
        DUP_init();
    }

    /// Bytes that arrive, without a tick of the receive thread.
    static void arrive(const Bytes& bytes) {
        ASSERT_TRUE(putRX_buffer(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    }
    /// Bytes that arrive, and one tick.
    static void feed(const Bytes& bytes) {
        arrive(bytes);
        DUP_Unpack();
    }

    RecordingApp app;
};

}  // namespace kelvo::test
