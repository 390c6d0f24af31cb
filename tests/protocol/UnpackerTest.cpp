#include <algorithm>
#include <charconv>
#include <sstream>
#include <string>

#include "Allocations.h"
#include "UnpackerFixture.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::joined;
using test::kAcknowledgeFrame;
using test::kConnectFrame;
using test::kProgressFrame;
using test::longestFrame;
using test::takeRing;

using Unpacker = test::UnpackerFixture;
using Commands = std::vector<int>;

Bytes firstBytes(const test::RecordingApp::Frame& frame, std::ptrdiff_t count) {
    return {frame.begin(), frame.begin() + count};
}

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

TEST_F(Unpacker, afterInit_forgetsTheBeginningOfAFrame) {
    feed(bytesOf("AA 55 0A 00"));
    DUP_init();
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, deliversTheCompleteFrameBuffer) {
    feed(joined({longestFrame(), kConnectFrame}));
    ASSERT_EQ(app.commands(), (Commands{0x42, 0xE0}));
    EXPECT_EQ(firstBytes(app.frames()[0], 1024), longestFrame());
    // A short frame is followed by what the long one left.
    Bytes expected = longestFrame();
    std::ranges::copy(kConnectFrame, expected.begin());
    EXPECT_EQ(firstBytes(app.frames()[1], 1024), expected);
}

TEST_F(Unpacker, length1019_isNotDeliveredThoughItsCrcIsGood) {
    Bytes frame{0xAA, 0x55, 0xFB, 0x03};
    frame.resize(1023, 0x42);
    frame.push_back(0x20);
    frame.push_back(0xD2);
    arrive(frame);
    for (int call = 0; call < 1025; ++call) {
        DUP_Unpack();
    }
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_EQ(app.commands(), Commands{});
}

TEST_F(Unpacker, badLongestFrame_deliversTheFramesInsideIt) {
    Bytes bad = longestFrame();
    std::ranges::copy(kConnectFrame, bad.begin() + 100);
    std::ranges::copy(kProgressFrame, bad.begin() + 1016);
    feed(bad);
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
    feed(kAcknowledgeFrame);
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5, 0xE1}));
}

TEST_F(Unpacker, ringFullOfHeaderBytes_isConsumedInOneCall) {
    feed(Bytes(10240, 0xAA));
    EXPECT_EQ(takeRing(), Bytes{});
    feed(bytesOf("55 02 00 E0 00 02 25"));
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, ringFullOfFalseHeadersOfLongFrames_isConsumed) {
    Bytes stream;
    while (stream.size() < 10240) {
        stream.insert(stream.end(), {0xAA, 0x55, 0xFA, 0x03});
    }
    feed(stream);
    EXPECT_EQ(app.commands(), Commands{});
    EXPECT_LT(takeRing().size(), 1024U);
}

TEST_F(Unpacker, recoversAfterALostReport) {
    const Bytes frame = longestFrame();
    arrive(Bytes(frame.begin(), frame.begin() + 63));
    feed(Bytes(frame.begin() + 126, frame.end()));  // 63 bytes short: the frame swallows what comes next
    for (int repeat = 0; repeat < 8; ++repeat) {
        feed(kProgressFrame);
    }
    EXPECT_EQ(app.commands(), Commands(8, 0xA5));
}

TEST(Application, getsAll1024BytesOfAFrameAndTheRemoval) {
    test::RecordingApp app;
    test::RecordingApp::Frame frame{};
    frame[0] = 0x11;
    frame[1023] = 0x99;
    C_CMD_CallBack(frame.data());
    ASSERT_EQ(app.frames().size(), 1U);
    EXPECT_EQ(app.frames()[0], frame);
    quitWindow();
    EXPECT_EQ(app.exits(), 1);
}

TEST(Application, mayBeMissing) {
    ClearRx_buffer();
    DUP_init();
    ASSERT_EQ(AppClassPoint.load(), nullptr);
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 8));
    DUP_Unpack();
    EXPECT_EQ(takeRing(), Bytes{});
    quitWindow();
}

}  // namespace
}  // namespace kelvo
