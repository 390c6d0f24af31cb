#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "Kr310Frames.h"

namespace kelvo {
namespace {

/// The frames found in a stream that comes in reports of this many bytes, as "E0: 00 | 77: 01".
std::string read(FrameReader& reader, std::span<const std::uint8_t> stream, std::size_t perReport = 63) {
    std::string found;
    while (!stream.empty()) {
        const std::size_t count = std::min(perReport, stream.size());
        for (const Frame& frame : reader.takeReport(makeReport(stream.first(count)))) {
            found += (found.empty() ? "" : " | ") + hex(std::span(&frame.command, 1)) + ": " + hex(frame.data);
        }
        stream = stream.subspan(count);
    }
    return found;
}

TEST(FrameCrc, ofKnownBytes) {
    EXPECT_EQ(frameCrc(Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);  // the catalogue's check value
    EXPECT_EQ(frameCrc({}), 0xFFFF);
    EXPECT_EQ(frameCrc(Bytes{0x02, 0x00, 0xE0, 0x00}), 0x0225);
}

TEST(FrameWriter, putsLengthLowByteFirstAndCrcHighByteFirst) {
    EXPECT_EQ(hex(writeFrame({0xA5, {199}})), "AA 55 02 00 A5 C7 59 B7");
    EXPECT_EQ(hex(writeFrame({0xE0, {}})), "AA 55 01 00 E0 35 E1");
    const Bytes longest = writeFrame({0x77, Bytes(1017)});
    ASSERT_EQ(longest.size(), 1024U);
    EXPECT_EQ(hex(std::span(longest).first(6)), "AA 55 FA 03 77 00");
    EXPECT_EQ(hex(std::span(longest).last(3)), "00 BA 3B");
}

struct StreamCase {
    const char* name;
    const char* stream;
    const char* found;
    std::size_t perReport = 63;
};

class FrameStream : public testing::TestWithParam<StreamCase> {};

TEST_P(FrameStream, hasTheseFrames) {
    FrameReader reader;
    EXPECT_EQ(read(reader, unhex(GetParam().stream), GetParam().perReport), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Reader, FrameStream,
    testing::Values(StreamCase{"oneReport", "AA 55 02 00 E0 00 02 25", "E0: 00"},
                    StreamCase{"byteByByte", "AA 55 02 00 E0 00 02 25", "E0: 00", 1},
                    StreamCase{"twoFrames", "AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78", "E0: 00 | 77: 01"},
                    StreamCase{"framesThatShareReports", "AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78",
                               "E0: 00 | 77: 01", 5},
                    StreamCase{"strayBytes", "13 55 AA 00 AA AA 55 02 00 E0 00 02 25 55", "E0: 00"},
                    StreamCase{"wrongCrc", "AA 55 02 00 E0 00 02 24 AA 55 02 00 77 01 93 78", "77: 01"},
                    StreamCase{"crcLowByteFirst", "AA 55 02 00 E0 00 25 02", ""},
                    StreamCase{"frameInsideABrokenOne", "AA 55 0A 00 77 AA 55 02 00 E0 00 02 25 00 00 00", "E0: 00"},
                    StreamCase{"noCommand", "AA 55 00 00 FF FF AA 55 02 00 E0 00 02 25", "E0: 00"},
                    StreamCase{"tooLong", "AA 55 FB 03 AA 55 02 00 E0 00 02 25", "E0: 00"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FrameReader, findsTheLongestFrame) {
    Bytes stream = unhex("AA 55 FA 03 77");
    stream.resize(1022);
    stream.insert(stream.end(), {0xBA, 0x3B});
    FrameReader reader;
    EXPECT_EQ(read(reader, stream).size(), 4U + 1017 * 3 - 1);
}

TEST(FrameReader, readsOnlyTheCountedBytes) {
    FrameReader reader;
    Bytes report = makeReport(unhex("AA 55 02 00 E0 00 02"));
    report[8] = 0x25;
    EXPECT_TRUE(reader.takeReport(report).empty());
    EXPECT_EQ(read(reader, unhex("25")), "E0: 00");
}

TEST(FrameReader, ignoresReportsWithACountOfNoneOrOver63AndOfAnotherSize) {
    FrameReader reader;
    for (const int count : {0, 64, 255}) {
        Bytes report = makeReport(connectFrame());
        report[0] = static_cast<std::uint8_t>(count);
        EXPECT_TRUE(reader.takeReport(report).empty()) << count;
    }
    for (const std::size_t size : {0U, 1U, 9U, 63U, 65U}) {
        Bytes report = makeReport(connectFrame());
        report.resize(size);
        EXPECT_TRUE(reader.takeReport(report).empty()) << size;
    }
    EXPECT_EQ(read(reader, connectFrame()), "E0: 00");
}

TEST(FrameReader, forgetsAnIncompleteFrameOnReset) {
    FrameReader reader;
    EXPECT_EQ(read(reader, unhex("AA 55 02 00 E0")), "");
    reader.reset();
    EXPECT_EQ(read(reader, unhex("00 02 25")), "");
}

}  // namespace
}  // namespace kelvo
