#include "WholeFile.h"

#include <QFile>
#include <new>

#include "DiskFile.h"

namespace kelvo {

std::optional<FileContent> readWholeFile(const QString& path) {
    DiskFile file(QFile::encodeName(path));
    FileContent content;
    content.size = file.size();
    try {
        content.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(content.size);
    } catch (const std::bad_alloc&) {
        // A 32-bit process also gets this for 2 GiB and more.
        return std::nullopt;
    }
    if (!file.read(0, {content.bytes.get(), content.size})) {
        return std::nullopt;
    }
    return content;
}

}  // namespace kelvo
