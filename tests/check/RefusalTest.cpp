// The words in which a file is refused, each where it belongs.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "CheckFile.h"
#include "Refusals.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

class Refusal : public testing::Test {
protected:
    /// Why the file cannot be read whole, whatever its kind.
    static std::string ofFile(const QString& path) {
        DiskFile file(QFile::encodeName(path));
        FileBytes bytes(file.size());
        EXPECT_FALSE(file.read(0, bytes));
        return file.failure() ? unreadable(*file.failure()).toStdString() : std::string();
    }
    std::string of(const QString& name, const FileBytes& bytes) const {
        const FileReport report = checkFile(dir.write(name, bytes).toUtf8());
        EXPECT_FALSE(report.wave || report.amp);
        return report.refusal.toStdString();
    }
    std::string ofWave(const FileBytes& bytes) const { return of("a.wav", bytes); }
    std::string ofAmp(const FileBytes& bytes) const { return of("a.amp", bytes); }
    QString sparse(off_t size) const {
        const QString path = dir.write("sparse", FileBytes(1));
        EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), size), 0);
        return path;
    }

    const SampleDir dir;
};

TEST_F(Refusal, ofWhatIsNoRegularFile) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.path("fifo")).constData(), 0600), 0);
    EXPECT_EQ(ofFile(dir.path(".")), "it is a folder, not a regular file");
    EXPECT_EQ(ofFile(dir.path("fifo")), "it is a pipe, not a regular file");
    EXPECT_EQ(ofFile("/dev/zero"), "it is a device, not a regular file");
}

TEST_F(Refusal, ofWhatCannotBeOpened) {
    EXPECT_EQ(ofFile(dir.path("missing")), "it cannot be opened: No such file or directory");
    EXPECT_EQ(ofFile(dir.write("a", FileBytes(1)) + "/b"), "it cannot be opened: Not a directory");
    EXPECT_EQ(ofFile(QString("a") + QChar::Null), "its name holds a NUL");
}

// Root may read everything, so this thread looks at the file as somebody else.
TEST_F(Refusal, ofAFileThatTheUserMayNotRead) {
    const QString path = dir.write("private", FileBytes(1));
    ASSERT_EQ(::chmod(QFile::encodeName(dir.path(".")).constData(), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0000), 0);
    ::setfsuid(65534);
    const std::string refusal = ofFile(path);
    ::setfsuid(::geteuid());
    EXPECT_EQ(refusal, "it cannot be opened: Permission denied");
}

TEST_F(Refusal, ofALengthThatIsNone) {
    EXPECT_EQ(ofWave({}), "it is empty");
    EXPECT_EQ(ofAmp({}), "it is empty");
    EXPECT_EQ(ofFile(sparse(0x100000000)), "it is 4294967296 bytes long; at most 4294967295 are allowed");
}

TEST(UnreadableFile, isToldByItsStep) {
    using Step = ReadFailure::Step;
    EXPECT_EQ(unreadable({.step = Step::Read, .size = 8, .held = 5}), "it ended at byte 5 of 8 while it was read");
    EXPECT_EQ(unreadable({.step = Step::Read, .error = EIO, .size = 8, .held = 5}),
              "it cannot be read: Input/output error");
}

TEST_F(Refusal, ofOtherContainers_saysWhatStandsThere) {
    FileBytes bytes = WaveFile{.data = FileBytes(4)}.bytes();
    std::ranges::copy(std::string_view("RF64"), bytes.begin());
    EXPECT_EQ(ofWave(bytes), "it is no wave file: byte 0 says \"RF64\" instead of \"RIFF\"");
    std::ranges::copy(std::string_view("RIFF"), bytes.begin());
    std::ranges::copy(std::string_view("A%2 "), bytes.begin() + 8);
    EXPECT_EQ(ofWave(bytes), "it is no wave file: byte 8 says \"A%2 \" instead of \"WAVE\"");
    EXPECT_EQ(ofWave({'I', 'D', '3', 3, 0}), "it is no wave file: byte 0 says \"ID3\\x03\" instead of \"RIFF\"");
    EXPECT_EQ(ofWave({'R'}), "it is no wave file: byte 0 says \"R\" instead of \"RIFF\"");
    EXPECT_EQ(ofWave({'R', 'I', 'F', 'F'}), "it is no wave file: byte 8 says \"\" instead of \"WAVE\"");
}

TEST_F(Refusal, ofAMissingChunk) {
    FileBytes bytes = WaveFile{.data = FileBytes(4)}.bytes();
    bytes[36] = 'D';
    EXPECT_EQ(ofWave(bytes), "it has no \"data\" chunk");
    bytes[12] = 'F';
    EXPECT_EQ(ofWave(bytes), "it has no \"fmt \" chunk");
}

TEST_F(Refusal, ofAChunkThatTheEndCutsOff) {
    FileBytes bytes = WaveFile{}.bytes();
    bytes.resize(41);
    EXPECT_EQ(
        ofWave(bytes),
        "its \"data\" chunk, at byte 36, is cut off by the end of the file after 5 of the 8 bytes that it needs at "
        "least");
    bytes.resize(35);
    EXPECT_EQ(
        ofWave(bytes),
        "its \"fmt \" chunk, at byte 12, is cut off by the end of the file after 23 of the 24 bytes that it needs "
        "at least");
}

TEST_F(Refusal, ofRateDepthAndChannels_saysWhereTheyStandAndWhatIsAllowed) {
    const FileBytes data(16);
    EXPECT_EQ(ofWave(WaveFile{.sampleRate = 22050, .data = data}.bytes()),
              "its sample rate in Hz, at byte 24, is 22050; allowed are 44100, 48000, 88200 and 96000");
    EXPECT_EQ(ofWave(WaveFile{.channels = 0, .data = data}.bytes()),
              "its number of channels, at byte 22, is 0; allowed are 1 and 2");
    for (const std::uint32_t bits : {4, 12, 64}) {
        EXPECT_EQ(ofWave(WaveFile{.bitsPerSample = bits, .data = data}.bytes()),
                  "its number of bits per sample, at byte 34, is " + std::to_string(bits) +
                      "; allowed are 8, 16 and 24 (integers) and 32 (floats)");
    }
}

TEST_F(Refusal, ofAnAmpWithoutItsChecksum) {
    EXPECT_EQ(ofAmp({1, 0, 0, 0, '2', '.', '0'}),
              "it is 7 bytes long and ends before its checksum, which takes the bytes 2048 to 2051");
}

TEST_F(Refusal, ofAWrongChecksum_givesBothSums) {
    FileBytes bytes = ampFile({});
    bytes[3] = 0x0A;
    bytes[2048] = 0xFF;
    EXPECT_EQ(ofAmp(bytes), "its words add up to 0x0a000000, but its checksum, at byte 2048, is 0x000000ff");
}

TEST_F(Refusal, ofAWrongTrailer_givesWhatStandsThere) {
    FileBytes bytes = ampFile({});
    append(bytes, "\n");
    EXPECT_EQ(ofAmp(bytes), "its last three bytes are \".0\\x0a\" instead of \"2.0\"");
    EXPECT_EQ(ofAmp({'0'}), "its last three bytes are \"0\" instead of \"2.0\"");
}

TEST_F(Refusal, isEmptyOnceAFileIsAccepted) {
    EXPECT_EQ(checkFile(dir.write("a.wav", WaveFile{.data = FileBytes(4)}.bytes()).toUtf8()).refusal, "");
    EXPECT_EQ(checkFile(dir.write("a.amp", ampFile({})).toUtf8()).refusal, "");
}

}  // namespace
}  // namespace kelvo
