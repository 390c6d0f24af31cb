#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <QString>
#include <cstdint>
#include <span>

#include "FuzzInput.h"
#include "UniqueFd.h"

namespace kelvo::fuzz {

/// A regular file in memory, with a path for readers that need one. Its name is a number.
class MemoryFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> content) : fd_(::memfd_create("fuzz", MFD_CLOEXEC)) {
        check(fd_ && ::write(fd_.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()),
              "the system gives memory for a file");
    }

    [[nodiscard]] QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(fd_.get()); }
    [[nodiscard]] QString name() const { return QString::number(fd_.get()); }

private:
    UniqueFd fd_;
};

}  // namespace kelvo::fuzz
