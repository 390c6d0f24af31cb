#include "WholeFile.h"

#include <QFile>
#include <new>

namespace kelvo {
namespace {

/// Fills `content`, or says why it cannot.
std::optional<ReadFailure> readInto(FileContent& content, const QString& path) {
    DiskFile file(QFile::encodeName(path));
    if (file.failure()) {
        return file.failure();
    }
    content.size = file.size();
    try {
        content.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(content.size);
    } catch (const std::bad_alloc&) {
        // Also what a 32-bit process gets that asks for 2 GiB.
        return ReadFailure{.step = ReadFailure::Step::Memory, .size = content.size};
    }
    file.read(0, {content.bytes.get(), content.size});
    return file.failure();
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
