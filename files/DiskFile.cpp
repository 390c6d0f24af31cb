#include "DiskFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kelvo {

DiskFile::DiskFile(const QByteArray& path, std::stop_token stop) : failure_(open(path)), stop_(std::move(stop)) {}

std::optional<ReadFailure> DiskFile::open(const QByteArray& path) {
    // The system would end the name at the NUL and open another file.
    if (path.contains('\0')) {
        return ReadFailure{};
    }
    fd_.reset(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!fd_ || ::fstat(fd_.get(), &status) != 0) {
        return ReadFailure{.error = errno};
    }
    const auto size = static_cast<std::uintmax_t>(status.st_size);
    if (!S_ISREG(status.st_mode)) {
        return ReadFailure{.step = ReadFailure::Step::Type, .mode = status.st_mode};
    }
    if (size > kLargestFile) {
        return ReadFailure{.step = ReadFailure::Step::Length, .size = size};
    }
    size_ = static_cast<std::size_t>(size);
    return std::nullopt;
}

bool DiskFile::read(std::size_t offset, std::span<std::uint8_t> bytes) {
    while (!failure_ && !bytes.empty()) {
        if (stop_.stop_requested()) {
            failure_ = brokenOff(offset, ECANCELED);
            break;
        }
        const ssize_t count = ::pread(fd_.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count > 0) {
            offset += static_cast<std::size_t>(count);
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            failure_ = brokenOff(offset, count == 0 ? 0 : errno);
        }
    }
    return !failure_;
}

ReadFailure DiskFile::brokenOff(std::size_t offset, int error) const {
    return {.step = ReadFailure::Step::Read, .error = error, .size = size_, .held = offset};
}

ByteView DiskFile::part(std::size_t offset, std::size_t length) {
    offset = std::min(offset, size_);
    length = std::min({length, size_ - offset, kLongestPart});
    const bool isHeld =
        offset >= partOffset_ && offset - partOffset_ <= partSize_ && length <= partSize_ - (offset - partOffset_);
    if (!isHeld) {
        partOffset_ = offset;
        partSize_ = read(offset, std::span(part_).first(length)) ? length : 0;
    }
    return failure_ ? ByteView() : ByteView(part_).subspan(offset - partOffset_, length);
}

}  // namespace kelvo
