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

/// Empty for a file that can be read whole, else why it cannot.
QString unfitness(const struct stat& status) {
    constexpr auto kLargest = std::numeric_limits<std::uint32_t>::max();
    if (!S_ISREG(status.st_mode)) {
        const char* const kind = S_ISDIR(status.st_mode) ? "folder" : S_ISFIFO(status.st_mode) ? "pipe" : "device";
        return QStringLiteral("it is a %1, not a regular file").arg(QLatin1StringView(kind));
    }
    if (status.st_size <= 0) {
        return QStringLiteral("it is empty");
    }
    if (static_cast<std::uintmax_t>(status.st_size) > kLargest) {
        return QStringLiteral("it is %1 bytes long; at most %2 are allowed").arg(status.st_size).arg(kLargest);
    }
    return {};
}

QString unopened(const QString& path, int error) {
    const QString reason = QStringLiteral("it cannot be opened: %1").arg(qt_error_string(error));
    // What stands for the bytes that could not be decoded is not in the name on the disk.
    return error == ENOENT && path.contains(QChar::ReplacementCharacter)
               ? reason + QStringLiteral(" (its name may not be valid UTF-8)")
               : reason;
}

/// Empty when `rest` has been filled, else why it has not.
QString readFully(int fd, std::span<std::uint8_t> rest) {
    const std::size_t size = rest.size();
    while (!rest.empty()) {
        const ssize_t count = ::read(fd, rest.data(), rest.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return QStringLiteral("it cannot be read: %1").arg(qt_error_string(errno));
        }
        if (count == 0) {
            return QStringLiteral("it ended at byte %1 of %2 while it was read").arg(size - rest.size()).arg(size);
        }
        rest = rest.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

/// Fills `file`, or says why it cannot.
QString readInto(FileContent& file, const QString& path) {
    // The system would take a name with a NUL in it for the shorter name of another file.
    if (path.contains(QChar::Null)) {
        return QStringLiteral("its name holds a NUL");
    }
    const UniqueFd fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!fd || ::fstat(fd.get(), &status) != 0) {
        return unopened(path, errno);
    }
    if (QString reason = unfitness(status); !reason.isEmpty()) {
        return reason;
    }
    file.size = static_cast<std::size_t>(status.st_size);
    try {
        file.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(file.size);
    } catch (const std::bad_alloc&) {
        // Also what a 32-bit process gets that asks for 2 GiB.
        return QStringLiteral("its %1 bytes do not fit into the memory").arg(file.size);
    }
    return readFully(fd.get(), {file.bytes.get(), file.size});
}

}  // namespace

std::optional<FileContent> readWholeFile(const QString& path, QString* refusal) {
    std::optional<FileContent> file(std::in_place);
    const QString reason = readInto(*file, path);
    if (!reason.isEmpty()) {
        file.reset();
    }
    if (refusal != nullptr) {
        *refusal = reason;
    }
    return file;
}

}  // namespace kelvo
