// What the judge of a file reads, and what it does not. That its verdict is the readers' is shown where files are
// changed in every way: tests/reliability/FileChangesTest.cpp and the fuzz targets.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>

#include "Judge.h"
#include "ReadHook.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

class Judge : public testing::Test {
protected:
    using Step = ReadFailure::Step;

    void SetUp() override {
        readHook = [this](int fd, void* buffer, std::size_t size, off_t offset) {
            bytesRead += size;
            return __real_pread64(fd, buffer, size, offset);
        };
    }
    void TearDown() override { readHook = nullptr; }

    /// A file as long as a recording of two hours, without a disk of that size.
    QString longFile(const FileBytes& bytes) const {
        const QString path = dir.write("long.wav", bytes);
        EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), 2'000'000'000), 0);
        return path;
    }

    const SampleDir dir;
    std::size_t bytesRead = 0;
};

TEST_F(Judge, readsOnlyWhatDecides_howeverLongTheFileIs) {
    struct Row {
        FileBytes bytes;
        bool isAccepted;
        std::size_t read;
    };
    for (const auto& [bytes, isAccepted, read] : {Row{WaveFile{.data = FileBytes(100)}.bytes(), true, 7 + 12 + 4099},
                                                  {textBytes("TavikIR"), true, 7},
                                                  {FileBytes(100, 'x'), false, 7 + 12}}) {
        bytesRead = 0;
        EXPECT_EQ(judgeIRFile(longFile(bytes)).isAccepted(), isAccepted);
        EXPECT_EQ(bytesRead, read);
    }
}

TEST_F(Judge, readsAnAmpModelsWordsChecksumAndEnd) {
    FileBytes bytes = ampFile(std::array<std::uint32_t, 1>{5});
    bytes.resize(300000, 'x');
    append(bytes, "2.0");
    EXPECT_TRUE(judgeAmpFile(dir.write("long.amp", bytes)).isAccepted());
    EXPECT_EQ(bytesRead, 2052U + 3U);
}

TEST_F(Judge, acceptsAWaveFileByItsRateAndDepthToo) {
    const FileBytes data(100);
    const auto isAccepted = [&](const WaveFile& wave) {
        return judgeIRFile(dir.write("a.wav", wave.bytes())).isAccepted();
    };
    EXPECT_TRUE(isAccepted({.sampleRate = 96000, .bitsPerSample = 32, .data = data}));
    EXPECT_FALSE(isAccepted({.sampleRate = 96001, .bitsPerSample = 32, .data = data}));
    EXPECT_FALSE(isAccepted({.sampleRate = 96000, .bitsPerSample = 20, .data = data}));
    EXPECT_FALSE(isAccepted({.sampleRate = 96000, .channels = 0, .data = data}));
}

TEST_F(Judge, missingFile_isRefused) {
    EXPECT_EQ(judgeIRFile(dir.path("missing")).failure->step, Step::Open);
    EXPECT_FALSE(judgeIRFile(dir.path("missing")).isAccepted());
    EXPECT_FALSE(judgeAmpFile(dir.path("missing")).isAccepted());
}

TEST_F(Judge, refusesAFileThatGetsShorterOrFailsAtAnyRead) {
    FileBytes bytes = WaveFile{.data = FileBytes(100)}.bytes();
    bytes.insert(bytes.begin() + 12, 3 * 4096, 'f');
    const QString path = dir.write("a.wav", bytes);
    for (const int error : {0, EIO}) {
        for (int failing = 1; failing <= 6; ++failing) {
            int reads = 0;
            readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) {
                // An old EINTR means nothing at the end of a file.
                errno = error == 0 ? EINTR : error;
                return ++reads == failing ? ssize_t{error == 0 ? 0 : -1} : __real_pread64(fd, buffer, size, offset);
            };
            const IRVerdict verdict = judgeIRFile(path);
            EXPECT_FALSE(verdict.isAccepted()) << failing;
            ASSERT_TRUE(verdict.failure) << failing;
            EXPECT_EQ(verdict.failure->step, Step::Read);
            EXPECT_EQ(verdict.failure->error, error);
            EXPECT_EQ(reads, failing) << "nothing is read after a failure";
        }
    }
}

TEST_F(Judge, stopsAtTheNextReadAfterAStopRequest) {
    std::stop_source stop;
    int reads = 0;
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) {
        if (++reads == 2) {
            stop.request_stop();
        }
        return __real_pread64(fd, buffer, size, offset);
    };
    const QString path = dir.write("a.wav", joinedFiles({textBytes("RIFF????WAVE"), FileBytes(100 * 4096, 'f')}));
    EXPECT_EQ(judgeIRFile(path, stop.get_token()).failure->error, ECANCELED);
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(judgeAmpFile(path, stop.get_token()).failure->error, ECANCELED);
    EXPECT_EQ(reads, 2);
}

}  // namespace
}  // namespace kelvo
