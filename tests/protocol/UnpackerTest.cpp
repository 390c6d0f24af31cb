#include <gmock/gmock.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string>

#include "Allocations.h"
#include "UnpackerFixture.h"

namespace kelvo {
namespace {

using testing::ElementsAreArray;

using test::Bytes;
using test::joined;
using test::kAcknowledgeFrame;
using test::kConnectFrame;
using test::kProgressFrame;
using test::longestFrame;
using test::takeRing;

using Unpacker = test::UnpackerFixture;
using Commands = std::vector<int>;

/// The bytes of a text such as "01 connect": each word is a byte in hexadecimal digits or the name of a frame.
Bytes bytesOf(const char* text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const Bytes* frame = word == "connect"       ? &kConnectFrame
                             : word == "progress"    ? &kProgressFrame
                             : word == "acknowledge" ? &kAcknowledgeFrame
                                                     : nullptr;
        if (frame != nullptr) {
            bytes.insert(bytes.end(), frame->begin(), frame->end());
        } else {
            std::from_chars(word.data(), word.data() + word.size(), bytes.emplace_back(), 16);
        }
    }
    return bytes;
}

/// One call of DUP_Unpack after these bytes have arrived.
struct Step {
    const char* arrives;
    Commands delivered;             ///< in this call
    const char* removed = nullptr;  ///< what the call left in the ring; the test then removes it
};

struct Stream {
    const char* name;
    std::vector<Step> steps;
};

class UnpackerStream : public test::UnpackerFixture, public testing::WithParamInterface<Stream> {};

TEST_P(UnpackerStream, deliversTheseCommands) {
    Commands expected;
    for (const auto& [arrives, delivered, removed] : GetParam().steps) {
        SCOPED_TRACE(arrives);
        feed(bytesOf(arrives));
        expected.insert(expected.end(), delivered.begin(), delivered.end());
        EXPECT_EQ(app.commands(), expected);
        if (removed != nullptr) {
            EXPECT_EQ(takeRing(), bytesOf(removed));
        }
    }
}

std::string nameOf(const testing::TestParamInfo<Stream>& info) {
    return info.param.name;
}

const Stream kPieces[] = {
    {"nothing", {{"", {}}}},
    {"theStartUpFrame", {{"AA 55 02 00 E0 00 02 25", {0xE0}, ""}, {"", {}}}},
    {"threeFrames", {{"connect progress acknowledge", {0xE0, 0xA5, 0xE1}}}},
    {"theSameFrameTwice", {{"connect connect", {0xE0, 0xE0}}}},
    {"strayBytes_oneIsDroppedPerCall", {{"01 55 FF 00", {}}, {"", {}, "FF 00"}}},
    {"aFrameAfterStrayBytes", {{"01 02 connect", {}}, {"", {}}, {"", {0xE0}}}},
    {"theFirstHeaderByteOnly", {{"AA", {}, ""}, {"", {}}, {"55 02 00 E0 00 02 25", {0xE0}}}},
    {"halfOfLength", {{"AA 55 02", {}, "02"}, {"02 00 E0 00 02 25", {0xE0}}}},
    {"partOfTheRest", {{"AA 55 02 00 E0 00 02", {}, "E0 00 02"}, {"E0 00 02 25", {0xE0}}}},
    {"byteByByte",
     {{"AA", {}}, {"55", {}}, {"02", {}}, {"00", {}}, {"A5", {}}, {"C7", {}}, {"59", {}}, {"B7", {0xA5}}, {"", {}}}},
    {"length0_whoseCommandIsTheCrcsHighByte", {{"AA 55 00 00 FF FF", {0xFF}}, {"connect", {0xE0}}}},
    {"length1", {{"AA 55 01 00 A5 2D 80", {0xA5}}}},
    // The first four bytes of the frame that follows complete one with a wrong CRC, which is searched for a header.
    {"aHeaderWithoutItsFrame", {{"AA 55 02 00", {}}, {"connect", {0xE0}}}},
};

INSTANTIATE_TEST_SUITE_P(InPieces, UnpackerStream, testing::ValuesIn(kPieces), nameOf);

const Stream kResyncs[] = {
    {"headerByteTwice", {{"AA AA 55 02 00 E0 00 02 25", {0xE0}}}},
    {"wrongSecondByte", {{"AA 01 connect", {0xE0}}}},
    {"wrongSecondByteAlone", {{"AA 01", {}}, {"connect", {0xE0}}}},
    {"length1019_isRefusedAtOnce", {{"AA 55 FB 03", {}}, {"connect", {0xE0}}}},
    {"length65535", {{"AA 55 FF FF connect", {0xE0}}}},
    {"headerInTheLowByteOfLength", {{"AA 55 AA 55 02 00 E0 00 02 25", {0xE0}}}},
    {"headerInTheHighByteOfLength", {{"AA 55 FB AA 55 02 00 E0 00 02 25", {0xE0}}}},
    {"wrongCrc",
     {{"AA 55 02 00 E0 00 02 24", {}},
      {"AA 55 02 00 E0 00 03 25", {}},
      {"AA 55 02 00 E0 01 02 25", {}},
      {"connect", {0xE0}}}},
    {"crcLowByteFirst", {{"AA 55 02 00 E0 00 25 02", {}}}},
    {"wrongCrc_deliversTheNextFrame", {{"AA 55 02 00 E0 00 00 00 progress", {0xA5}}}},
    {"wrongCrc_deliversAFrameInside", {{"AA 55 08 00 01 02 connect", {0xE0}}, {"progress", {0xA5}}}},
    {"wrongCrc_deliversTwoFramesInside", {{"AA 55 0E 00 connect progress", {0xE0, 0xA5}}}},
    {"strayByteBetweenFramesInside", {{"AA 55 0F 00 connect 07 progress", {0xE0, 0xA5}}}},
    {"headerByteBetweenFramesInside", {{"AA 55 0F 00 connect AA progress", {0xE0, 0xA5}}}},
    {"halfAFrameInside", {{"AA 55 0A 00 connect AA 55 02 00", {0xE0}}, {"A5 C7 59 B7", {0xA5}}}},
    {"noHeaderInTheRest", {{"AA 55 0A 00 connect 55 02 00 A5", {0xE0}}, {"C7 59 B7", {}}}},
    {"headerByteAtTheEnd", {{"AA 55 02 00 E0 00 02 AA", {}}, {"55 02 00 A5 C7 59 B7", {0xA5}}}},
};

INSTANTIATE_TEST_SUITE_P(AfterAnError, UnpackerStream, testing::ValuesIn(kResyncs), nameOf);

TEST_F(Unpacker, allocatesNoMemory) {
    struct CountingApp : AppClass {
        CountingApp() { AppClassPoint = this; }
        ~CountingApp() override { AppClassPoint = nullptr; }
        void CMD_CallBack(FrameView) override { ++frames; }
        void exitApp() override {}
        int frames = 0;
    };
    CountingApp counting;
    // Every state: stray bytes, a wrong second header byte, a LENGTH too great, a wrong CRC, a frame found inside.
    arrive(bytesOf("01 AA AA 55 FF FF AA 55 02 00 00 00 00 00 connect AA 55 09 00 progress acknowledge"));
    const std::size_t before = test::allocations();
    for (int tick = 0; tick < 20; ++tick) {
        DUP_Unpack();
    }
    EXPECT_EQ(test::allocations(), before);
    EXPECT_EQ(counting.frames, 3);
}

TEST_F(Unpacker, deliversTheCompleteFrameBuffer) {
    feed(joined({longestFrame(), kConnectFrame}));
    ASSERT_EQ(app.commands(), (Commands{0x42, 0xE0}));
    EXPECT_THAT(app.frames()[0], ElementsAreArray(longestFrame()));
    // A short frame is followed by what the long one left.
    Bytes expected = longestFrame();
    std::ranges::copy(kConnectFrame, expected.begin());
    EXPECT_THAT(app.frames()[1], ElementsAreArray(expected));
}

TEST(Application, getsTheRemoval_andMayBeMissing) {
    ClearRx_buffer();
    DUP_init();
    ASSERT_EQ(AppClassPoint.load(), nullptr);
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 8));
    DUP_Unpack();
    EXPECT_EQ(takeRing(), Bytes{});
    quitWindow();
    const test::RecordingApp app;
    quitWindow();
    EXPECT_EQ(app.exits(), 1);
}

}  // namespace
}  // namespace kelvo
