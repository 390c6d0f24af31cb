#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <utility>

#include "DiskFile.h"
#include "ReadHook.h"
#include "SampleFiles.h"
#include "UniqueFd.h"
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

TEST_F(WholeFile, givesTheBytesOfARegularFile) {
    EXPECT_EQ(bytesOf(readWholeFile(dir.write("a", content))), content);
}

TEST_F(WholeFile, followsASymbolicLink) {
    const QString path = dir.write("a", content);
    ASSERT_TRUE(QFile::link(path, dir.path("link")));
    EXPECT_EQ(bytesOf(readWholeFile(dir.path("link"))), content);
}

TEST_F(WholeFile, acceptsANameThatIsNotAscii) {
    const QString name = QString::fromUtf8(
        "\xC3\x9C"
        "ber \xF0\x9D\x84\x9E %20.wav");
    EXPECT_EQ(bytesOf(readWholeFile(dir.write(name, content))), content);
}

TEST_F(WholeFile, leavesNoDescriptorOpen) {
    const auto openDescriptors = [] {
        const std::filesystem::directory_iterator entries("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    };
    const auto before = openDescriptors();
    EXPECT_TRUE(readWholeFile(dir.write("a", content)));
    EXPECT_TRUE(readWholeFile(dir.write("empty", {})));
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
                           {dir.path("no/such/folder"), Open, ENOENT},
                           {dir.path("a/"), Open, ENOTDIR},
                           {QString(), Open, ENOENT},
                           {QString(5000, 'a'), Open, ENAMETOOLONG},
                           {dir.path("loop"), Open, ELOOP},
                           {QString(QChar::Null), Open},
                           {dir.path("a") + QChar::Null + "b.wav", Open},
                           {dir.path("."), Type, 0, S_IFDIR},
                           {"/", Type, 0, S_IFDIR},
                           {"/dev/zero", Type, 0, S_IFCHR},
                           {"/dev/null", Type, 0, S_IFCHR},
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

TEST_F(WholeFile, givesAnEmptyFile) {
    EXPECT_EQ(bytesOf(readWholeFile(dir.write("empty", {}))), FileBytes());
}

TEST_F(WholeFile, refusesASocket) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(dir.path("s"));
    ASSERT_LT(static_cast<std::size_t>(path.size()), sizeof address.sun_path);
    std::copy(path.begin(), path.end(), address.sun_path);
    const UniqueFd server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(readWholeFile(dir.path("s")));
}

TEST_F(WholeFile, refusesAFifoWithBytesAndReadsNone) {
    const QByteArray path = QFile::encodeName(dir.path("fifo.wav"));
    ASSERT_EQ(::mkfifo(path.constData(), 0600), 0);
    const UniqueFd end(::open(path.constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    ASSERT_EQ(::write(end.get(), "RIFF", 4), 4);
    EXPECT_FALSE(readWholeFile(dir.path("fifo.wav")));
    char buffer[8] = {};
    EXPECT_EQ(::read(end.get(), buffer, sizeof buffer), 4);
}

// Root may read everything, so this thread reads the files as another user if it can; for any other user the
// call changes nothing and the file is shut to its owner too.
TEST_F(WholeFile, refusesAFileThatTheUserMayNotRead) {
    const QString path = dir.write("private", content);
    const QByteArray name = QFile::encodeName(path);
    ASSERT_EQ(::chmod(QFile::encodeName(dir.path(".")).constData(), 0755), 0);
    const auto readAsSomebodyElse = [&] {
        ::setfsuid(65534);
        auto bytes = readWholeFile(path);
        ::setfsuid(::geteuid());
        return bytes;
    };
    ASSERT_EQ(::chmod(name.constData(), 0000), 0);
    EXPECT_FALSE(readAsSomebodyElse());
    ASSERT_EQ(::chmod(name.constData(), 0444), 0);
    EXPECT_TRUE(readAsSomebodyElse());
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

TEST_F(WholeFile, continuesAfterAnInterruptedRead) {
    const QString path = dir.write("a", content);
    int calls = 0;
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) -> ssize_t {
        if (++calls <= 2) {
            errno = EINTR;
            return -1;
        }
        return __real_pread64(fd, buffer, size, offset);
    };
    EXPECT_EQ(bytesOf(readWholeFile(path)), content);
    EXPECT_EQ(calls, 3);
}

TEST_F(WholeFile, joinsShortReads) {
    const QString path = dir.write("a", content);
    readHook = [&](int fd, void* buffer, std::size_t size, off_t offset) {
        return __real_pread64(fd, buffer, std::min<std::size_t>(size, 3), offset);
    };
    EXPECT_EQ(bytesOf(readWholeFile(path)), content);
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
    failure = failureOf(path);
    EXPECT_EQ(failure.step, ReadFailure::Step::Read);
    EXPECT_EQ(failure.error, EIO);
    EXPECT_EQ(failure.held, 0U);
}

}  // namespace
}  // namespace kelvo
