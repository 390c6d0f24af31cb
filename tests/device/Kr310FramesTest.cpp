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

std::string read(std::string_view stream, std::size_t perReport = 63) {
    FrameReader reader;
    return read(reader, unhex(stream), perReport);
}

TEST(FrameCrc, ofTheCheckStringIsTheCataloguedValue) {
    EXPECT_EQ(frameCrc(Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCE3C);
}

TEST(FrameCrc, ofNothingIsAllOnes) {
    EXPECT_EQ(frameCrc({}), 0xFFFF);
}

TEST(FrameCrc, ofTheConnectRequest) {
    EXPECT_EQ(frameCrc(Bytes{0x02, 0x00, 0xE0, 0x00}), 0x0225);
}

TEST(FrameWriter, putsLengthLowByteFirstAndCrcHighByteFirst) {
    EXPECT_EQ(hex(writeFrame({0xA5, {199}})), "AA 55 02 00 A5 C7 59 B7");
}

TEST(FrameWriter, writesAFrameWithoutData) {
    EXPECT_EQ(hex(writeFrame({0xE0, {}})), "AA 55 01 00 E0 35 E1");
}

TEST(FrameWriter, writesTheLongestFrame) {
    const Bytes bytes = writeFrame({0x77, Bytes(1017)});
    ASSERT_EQ(bytes.size(), 1024U);
    EXPECT_EQ(hex(std::span(bytes).first(6)), "AA 55 FA 03 77 00");
    EXPECT_EQ(hex(std::span(bytes).last(3)), "00 BA 3B");
}

TEST(FrameReader, findsAFrameInOneReport) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 02 25"), "E0: 00");
}

TEST(FrameReader, findsAFrameThatComesByteByByte) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 02 25", 1), "E0: 00");
}

TEST(FrameReader, findsTwoFramesInOneReport) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78"), "E0: 00 | 77: 01");
}

TEST(FrameReader, findsFramesThatShareReports) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 02 25 AA 55 02 00 77 01 93 78", 5), "E0: 00 | 77: 01");
}

TEST(FrameReader, findsTheLongestFrame) {
    Bytes stream = unhex("AA 55 FA 03 77");
    stream.resize(1022);
    stream.insert(stream.end(), {0xBA, 0x3B});
    FrameReader reader;
    EXPECT_EQ(read(reader, stream).size(), 4U + 1017 * 3 - 1);
}

TEST(FrameReader, leavesOutWhatIsNoHeader) {
    EXPECT_EQ(read("13 55 AA 00 AA AA 55 02 00 E0 00 02 25 55"), "E0: 00");
}

TEST(FrameReader, dropsAFrameWithAWrongCrcAndFindsTheNext) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 02 24 AA 55 02 00 77 01 93 78"), "77: 01");
}

TEST(FrameReader, dropsAFrameWhoseCrcBytesAreSwapped) {
    EXPECT_EQ(read("AA 55 02 00 E0 00 25 02"), "");
}

TEST(FrameReader, findsASoundFrameInsideABrokenOne) {
    EXPECT_EQ(read("AA 55 0A 00 77 AA 55 02 00 E0 00 02 25 00 00 00"), "E0: 00");
}

TEST(FrameReader, dropsAFrameWithoutCommand) {
    EXPECT_EQ(read("AA 55 00 00 FF FF AA 55 02 00 E0 00 02 25"), "E0: 00");
}

TEST(FrameReader, doesNotWaitForAFrameThatIsTooLong) {
    EXPECT_EQ(read("AA 55 FB 03 AA 55 02 00 E0 00 02 25"), "E0: 00");
}

TEST(FrameReader, takesNoMoreThanTheCountedBytes) {
    FrameReader reader;
    Bytes report = makeReport(unhex("AA 55 02 00 E0 00 02"));
    report[8] = 0x25;
    EXPECT_TRUE(reader.takeReport(report).empty());
    EXPECT_EQ(read(reader, unhex("25")), "E0: 00");
}

TEST(FrameReader, ignoresReportsWithACountOfNoneOrOver63) {
    FrameReader reader;
    for (const int count : {0, 64, 255}) {
        Bytes report = makeReport(connectFrame());
        report[0] = static_cast<std::uint8_t>(count);
        EXPECT_TRUE(reader.takeReport(report).empty()) << count;
    }
    EXPECT_EQ(read(reader, connectFrame()), "E0: 00");
}

TEST(FrameReader, ignoresReportsOfAnotherSize) {
    FrameReader reader;
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
