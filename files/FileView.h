#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>

#include "DiskFile.h"
#include "LittleEndian.h"

namespace kelvo {

/// The bytes of a file in memory or on disk. Cheap to copy. The bytes or the DiskFile must outlive it.
class FileView {
public:
    FileView() = default;
    template <std::convertible_to<ByteView> Bytes>
    FileView(const Bytes& bytes) : memory_(bytes) {}
    FileView(DiskFile& disk) : disk_(&disk) {}

    [[nodiscard]] std::size_t size() const { return disk_ != nullptr ? disk_->size() : memory_.size(); }

    /// Up to `length` bytes, at most DiskFile::kLongestPart, from `offset` on; fewer at the end of the file. For a file
    /// on disk the view is valid until the next call, and empty after a failure.
    [[nodiscard]] ByteView part(std::size_t offset, std::size_t length) const {
        if (disk_ != nullptr) {
            return disk_->part(offset, length);
        }
        const ByteView rest = memory_.subspan(std::min(offset, memory_.size()));
        return rest.first(std::min(length, rest.size()));
    }

    /// The unsigned little-endian number of `width` bytes, at most 4, at `offset`. Bytes after the end count as zero.
    [[nodiscard]] std::uint32_t number(std::size_t offset, std::size_t width) const {
        return littleEndian(part(offset, width));
    }

private:
    ByteView memory_;
    DiskFile* disk_ = nullptr;
};

}  // namespace kelvo
