#include <gtest/gtest.h>

#include "DeviceTesting.h"
#include "Kr310Frames.h"

namespace kelvo {
namespace {

/// The frames found in a stream that comes in reports of this many bytes, as "E0: 00 | 77: 01".
std::string read(FrameReader& reader, std::span<const std::uint8_t> stream, std::size_t perReport = 63) {
    std::string found;
    for (const Bytes& report : makeReports(stream, perReport)) {
        for (const Frame& frame : reader.takeReport(report)) {
            found += (found.empty() ? "" : " | ") + hex(std::span(&frame.command, 1)) + ": " + hex(frame.data);
        }
    }
    return found;
}

TEST(FrameCrc, ofKnownBytes) {
    EXPECT_EQ(frameCrc(Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);  // the catalogue's check value
    EXPECT_EQ(frameCrc({}), 0xFFFF);
}

TEST(FrameWriter, putsLengthLowByteFirstAndCrcHighByteFirst_upToTheLongestFrame) {
    EXPECT_EQ(hex(writeFrame({0xA5, {199}})), "AA 55 02 00 A5 C7 59 B7");
    EXPECT_EQ(hex(writeFrame({0xE0, {}})), "AA 55 01 00 E0 35 E1");
    const Bytes longest = writeFrame({0x77, Bytes(1017)});
    ASSERT_EQ(longest.size(), 1024U);
    EXPECT_EQ(hex(std::span(longest).first(6)), "AA 55 FA 03 77 00");
    EXPECT_EQ(hex(std::span(longest).last(3)), "00 BA 3B");
    FrameReader reader;
    EXPECT_EQ(read(reader, longest).size(), 4U + 1017 * 3 - 1);
}

TEST(FrameReader, findsTheFramesInAStream) {
    struct Row {
        const char* name;
        const char* stream;
        const char* found;
        std::size_t perReport = 63;
    };
    for (const auto& [name, stream, found, perReport] :
         {Row{"one report", "AA 55 02 00 E0 00 02 25", "E0: 00"},
          {"byte by byte", "AA 55 02 00 E0 00 02 25", "E0: 00", 1},
          {"two frames", "AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78", "E0: 00 | 77: 01"},
          {"shared reports", "AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78", "E0: 00 | 77: 01", 5},
          {"stray bytes", "13 55 AA 00 AA AA 55 02 00 E0 00 02 25 55", "E0: 00"},
          {"wrong CRC", "AA 55 02 00 E0 00 02 24 AA 55 02 00 77 01 93 78", "77: 01"},
          {"CRC low byte first", "AA 55 02 00 E0 00 25 02", ""},
          {"a frame inside a broken one", "AA 55 0A 00 77 AA 55 02 00 E0 00 02 25 00 00 00", "E0: 00"},
          {"no command", "AA 55 00 00 FF FF AA 55 02 00 E0 00 02 25", "E0: 00"},
          {"too long", "AA 55 FB 03 AA 55 02 00 E0 00 02 25", "E0: 00"}}) {
        FrameReader reader;
        EXPECT_EQ(read(reader, unhex(stream), perReport), found) << name;
    }
}

TEST(FrameReader, readsOnlyTheCountedBytes) {
    FrameReader reader;
    Bytes report = makeReport(unhex("AA 55 02 00 E0 00 02"));
    report[8] = 0x25;
    EXPECT_TRUE(reader.takeReport(report).empty());
    EXPECT_EQ(read(reader, unhex("25")), "E0: 00");
}

TEST(FrameReader, ignoresReportsWithACountOfNoneOrOver63AndOfAnotherSize) {
    using Row = std::pair<std::size_t, std::uint8_t>;
    FrameReader reader;
    for (const auto& [size, count] : {Row{64, 0}, {64, 64}, {64, 255}, {0, 8}, {1, 8}, {63, 8}, {65, 8}}) {
        Bytes report = makeReport(connectFrame());
        report[0] = count;
        report.resize(size);
        EXPECT_TRUE(reader.takeReport(report).empty()) << size << ' ' << count;
    }
    EXPECT_EQ(read(reader, connectFrame()), "E0: 00");
}

}  // namespace
}  // namespace kelvo
