#include <algorithm>
#include <random>

#include "FrameSearch.h"
#include "UnpackerFixture.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::framesIn;
using test::plainCrc;

/// Good frames, frames with one byte changed, cut frames and garbage rich in header bytes.
class StreamMaker {
public:
    explicit StreamMaker(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

    Bytes stream() {
        Bytes all;
        while (all.size() < 3000) {
            const Bytes piece = below(4) == 0 ? garbage(1 + below(12)) : damaged(frame());
            all.insert(all.end(), piece.begin(), piece.end());
        }
        return all;
    }

private:
    Bytes garbage(std::size_t count) {
        static const Bytes kLikely{0xAA, 0x55, 0x00, 0x01, 0x02, 0x03};
        Bytes bytes(count);
        for (std::uint8_t& byte : bytes) {
            byte = below(2) == 0 ? kLikely[below(kLikely.size())] : static_cast<std::uint8_t>(below(256));
        }
        return bytes;
    }
    Bytes frame() {
        const std::size_t length = below(20) == 0 ? below(1019) : below(24);
        Bytes bytes{0xAA, 0x55, static_cast<std::uint8_t>(length & 0xFF), static_cast<std::uint8_t>(length >> 8)};
        const Bytes data = garbage(length);
        bytes.insert(bytes.end(), data.begin(), data.end());
        const unsigned crc = plainCrc(bytes.begin() + 2, bytes.end());
        bytes.push_back(static_cast<std::uint8_t>(crc >> 8));
        bytes.push_back(static_cast<std::uint8_t>(crc & 0xFF));
        return bytes;
    }
    Bytes damaged(Bytes frame) {
        switch (below(6)) {
            case 0:
                frame[below(frame.size())] ^= static_cast<std::uint8_t>(1 + below(255));
                break;
            case 1:
                frame.resize(below(frame.size()));
                break;
            default:
                break;
        }
        return frame;
    }

    std::mt19937 random_;
};

using UnpackerModel = test::UnpackerFixture;

TEST_F(UnpackerModel, findsTheSameFramesAsASearchOfTheWholeStream) {
    std::size_t found = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        test::RecordingApp stage;  // takes the place of the fixture's
        StreamMaker maker(seed);
        const Bytes stream = maker.stream();
        ClearRx_buffer();
        DUP_init();
        for (std::size_t at = 0; at < stream.size();) {
            const std::size_t count = std::min(1 + maker.below(63), stream.size() - at);
            const auto begin = stream.begin() + static_cast<std::ptrdiff_t>(at);
            feed(Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)));
            at += count;
        }
        for (std::size_t tick = 0; tick < stream.size(); ++tick) {
            DUP_Unpack();
        }
        const std::vector<Bytes> expected = framesIn(stream);
        const auto delivered = stage.frames();
        ASSERT_EQ(delivered.size(), expected.size()) << "seed " << seed;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const auto size = static_cast<std::ptrdiff_t>(expected[i].size());
            ASSERT_EQ(Bytes(delivered[i].begin(), delivered[i].begin() + size), expected[i]) << "seed " << seed;
        }
        found += expected.size();
    }
    EXPECT_GT(found, 2000U) << "the streams must hold good frames, or this compares nothing";
}

}  // namespace
}  // namespace kelvo
