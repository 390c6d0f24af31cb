#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>

#include "Allocations.h"
#include "DiskFile.h"
#include "ReadHook.h"
#include "SampleFiles.h"
#include "WholeFile.h"

std::function<ssize_t(int fd, void* buffer, std::size_t size, off_t offset)> readHook;

extern "C" ssize_t __wrap_pread64(int fd, void* buffer, std::size_t size,
                                  off_t offset) {  // NOLINT(bugprone-reserved-identifier)
    return readHook ? readHook(fd, buffer, size, offset) : __real_pread64(fd, buffer, size, offset);
}

namespace kelvo {
namespace {

std::optional<FileBytes> bytesOf(const std::optional<FileContent>& file) {
    return file ? std::optional(FileBytes(file->bytes.get(), file->bytes.get() + file->size)) : std::nullopt;
}

ReadFailure failureOf(const QString& path) {
    DiskFile file(QFile::encodeName(path));
    FileBytes bytes(file.size());
    EXPECT_FALSE(file.read(0, bytes));
    return file.failure().value_or(ReadFailure{});
}

ssize_t unexpectedRead(int, void*, std::size_t, off_t) {
    ADD_FAILURE() << "read was called";
    return -1;
}

class WholeFile : public testing::Test {
protected:
    void TearDown() override { readHook = nullptr; }

    const SampleDir dir;
    const FileBytes content{'k', 'e', 'l', 'v', 'o', 0, 0xFF, '\n'};
};

TEST_F(WholeFile, givesTheBytesOfARegularFile_andLeavesNoDescriptorOpen) {
    const auto openDescriptors = [] {
        const std::filesystem::directory_iterator entries("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    };
    const auto before = openDescriptors();
    EXPECT_EQ(bytesOf(readWholeFile(dir.write("empty", {}))), FileBytes());
    const QString name = QString::fromUtf8("\u00DCber \U0001D11E %20.wav");
    EXPECT_EQ(bytesOf(readWholeFile(dir.write(name, content))), content);
    ASSERT_TRUE(QFile::link(dir.path(name), dir.path("link")));
    EXPECT_EQ(bytesOf(readWholeFile(dir.path("link"))), content);
    EXPECT_FALSE(readWholeFile("/dev/zero"));
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(WholeFile, refusesWithoutReading_andSaysWhy) {
    using enum ReadFailure::Step;
    dir.write("a", content);
    ASSERT_TRUE(QFile::link(dir.path("loop"), dir.path("loop")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.path("fifo")).constData(), 0600), 0);
    ASSERT_EQ(::truncate(QFile::encodeName(dir.write("huge", content)).constData(), 0x100000000), 0);
    readHook = unexpectedRead;
    struct Row {
        QString path;
        ReadFailure::Step step;
        int error = 0;
        mode_t type = 0;
        std::uint64_t size = 0;
    };
    for (const Row& row : {Row{dir.path("missing"), Open, ENOENT},
                           {dir.path("a/"), Open, ENOTDIR},
                           {QString(), Open, ENOENT},
                           {QString(5000, 'a'), Open, ENAMETOOLONG},
                           {dir.path("loop"), Open, ELOOP},
                           {QString("/") + QChar(0xDC00) + ".wav", Open, ENOENT},  // half a surrogate pair
                           {dir.path("a") + QChar::Null + "b.wav", Open},
                           {dir.path("."), Type, 0, S_IFDIR},
                           {"/dev/zero", Type, 0, S_IFCHR},
                           {dir.path("fifo"), Type, 0, S_IFIFO},
                           {dir.path("huge"), Length, 0, 0, 4294967296}}) {
        SCOPED_TRACE(row.path.toStdString());
        EXPECT_FALSE(readWholeFile(row.path));
        const ReadFailure failure = failureOf(row.path);
        EXPECT_EQ(failure.step, row.step);
        EXPECT_EQ(failure.error, row.error);
        EXPECT_TRUE(row.step != Type || (failure.mode & S_IFMT) == row.type);
        EXPECT_TRUE(row.step != Length || failure.size == row.size);
    }
}

TEST_F(WholeFile, readsALengthOf32Bits) {
    const QString path = dir.write("large", content);
    ASSERT_EQ(::truncate(QFile::encodeName(path).constData(), 0xFFFFFFFF), 0);
    std::size_t wanted = 0;
    readHook = [&](int, void*, std::size_t size, off_t) -> ssize_t {
        wanted = size;
        return 0;
    };
    EXPECT_FALSE(readWholeFile(path));
    // A process of 32 bits has no memory for it.
    EXPECT_EQ(wanted, sizeof(std::size_t) == 4 ? 0U : 0xFFFFFFFFU);
}

TEST_F(WholeFile, continuesAfterInterruptedAndShortReads) {
    const QString path = dir.write("a", content);
    int calls = 0;
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) -> ssize_t {
        if (++calls <= 2) {
            errno = EINTR;
            return -1;
        }
        return __real_pread64(fd, buffer, std::min<std::size_t>(size, 3), offset);
    };
    EXPECT_EQ(bytesOf(readWholeFile(path)), content);
    EXPECT_EQ(calls, 5);
}

TEST_F(WholeFile, doesNotReadWhatIsAppendedMeanwhile) {
    const QString path = dir.write("a", content);
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::Append));
        EXPECT_EQ(file.write("more"), 4);
        file.close();
        return __real_pread64(fd, buffer, size, offset);
    };
    EXPECT_EQ(bytesOf(readWholeFile(path)), content);
}

TEST_F(WholeFile, failedRead_reportsItsPosition) {
    const QString path = dir.write("a", content);
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) {
        EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), 5), 0);
        return __real_pread64(fd, buffer, size, offset);
    };
    ReadFailure failure = failureOf(path);
    EXPECT_EQ(failure.step, ReadFailure::Step::Read);
    EXPECT_EQ(failure.error, 0);
    EXPECT_EQ(failure.size, 8U);
    EXPECT_EQ(failure.held, 5U);
    readHook = [](int, void*, std::size_t, off_t) -> ssize_t {
        errno = EIO;
        return -1;
    };
    EXPECT_EQ(failureOf(path).error, EIO);
}

TEST_F(WholeFile, withoutMemory_isRefused) {
    const QString path = dir.write("large", FileBytes(70001));
    test::failAllocationsOf(70001);
    EXPECT_FALSE(readWholeFile(path));
    test::failAllocationsOf(0);
    EXPECT_TRUE(readWholeFile(path));
}

}  // namespace
}  // namespace kelvo
