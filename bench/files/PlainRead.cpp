#include "PlainRead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

#include "UniqueFd.h"

namespace kelvo {

PlainFile readPlainly(const char* path) {
    const UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!fd || ::fstat(fd.get(), &status) != 0) {
        throw std::runtime_error("no such file");
    }
    PlainFile file;
    file.size = static_cast<std::size_t>(status.st_size);
    file.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(file.size);
    if (::read(fd.get(), file.bytes.get(), file.size) != status.st_size) {
        throw std::runtime_error("a read that gives less than the file");
    }
    return file;
}

bool passOnce(const PlainFile& file, std::uint8_t absent) {
    return std::memchr(file.bytes.get(), absent, file.size) != nullptr;
}

}  // namespace kelvo
