#include "WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <limits>
#include <new>
#include <span>

#include "UniqueFd.h"

namespace kelvo {
namespace {

std::optional<std::size_t> regularFileSize(int fd) {
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
        return std::nullopt;
    }
    const auto size = static_cast<std::uintmax_t>(status.st_size);
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(size);
}

bool readFully(int fd, std::span<std::uint8_t> rest) {
    while (!rest.empty()) {
        const ssize_t count = ::read(fd, rest.data(), rest.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        rest = rest.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

std::optional<FileContent> readWholeFile(const QString& path) {
    // The system would take a name with a NUL in it for the shorter name of another file.
    if (path.contains(QChar::Null)) {
        return std::nullopt;
    }
    const UniqueFd fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const auto size = fd ? regularFileSize(fd.get()) : std::nullopt;
    if (!size) {
        return std::nullopt;
    }
    try {
        FileContent file{std::make_unique_for_overwrite<std::uint8_t[]>(*size), *size};
        if (readFully(fd.get(), {file.bytes.get(), file.size})) {
            return file;
        }
    } catch (const std::bad_alloc&) {
        // Also what a 32-bit process gets that asks for 2 GiB.
    }
    return std::nullopt;
}

}  // namespace kelvo
