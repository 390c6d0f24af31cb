#include "WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <new>

#include "UniqueFd.h"

namespace kelvo {
namespace {

using Step = ReadFailure::Step;

/// Fills `rest` and returns how much of it could not be; `error` is then errno, or 0 at the end of the file.
std::size_t readFully(int fd, std::span<std::uint8_t> rest, int& error) {
    while (!rest.empty()) {
        const ssize_t count = ::read(fd, rest.data(), rest.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            error = count < 0 ? errno : 0;
            break;
        }
        rest = rest.subspan(static_cast<std::size_t>(count));
    }
    return rest.size();
}

/// Fills `file`, or says why it cannot.
std::optional<ReadFailure> readInto(FileContent& file, const QString& path) {
    // The system would take a name with a NUL in it for the shorter name of another file.
    if (path.contains(QChar::Null)) {
        return ReadFailure{};
    }
    const UniqueFd fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!fd || ::fstat(fd.get(), &status) != 0) {
        return ReadFailure{.error = errno};
    }
    ReadFailure failure{
        .step = Step::Type, .mode = status.st_mode, .size = static_cast<std::uintmax_t>(status.st_size)};
    if (!S_ISREG(status.st_mode)) {
        return failure;
    }
    if (failure.size > kLargestFile) {
        failure.step = Step::Length;
        return failure;
    }
    file.size = static_cast<std::size_t>(status.st_size);
    try {
        file.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(file.size);
    } catch (const std::bad_alloc&) {
        // Also what a 32-bit process gets that asks for 2 GiB.
        failure.step = Step::Memory;
        return failure;
    }
    failure.step = Step::Read;
    const std::size_t missing = readFully(fd.get(), {file.bytes.get(), file.size}, failure.error);
    failure.held = file.size - missing;
    return missing == 0 ? std::nullopt : std::optional(failure);
}

}  // namespace

std::optional<FileContent> readWholeFile(const QString& path, ReadFailure* failure) {
    std::optional<FileContent> file(std::in_place);
    if (const auto reason = readInto(*file, path)) {
        file.reset();
        if (failure != nullptr) {
            *failure = *reason;
        }
    }
    return file;
}

}  // namespace kelvo
