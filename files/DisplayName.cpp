#include "DisplayName.h"

#include <QByteArray>
#include <QStringList>
#include <algorithm>

namespace kelvo {
namespace {

/// The last component of `path` up to its only `extension`, or up to the last of several, each replaced by `joint`.
QString displayName(const QString& path, const QString& extension, const QString& joint) {
    QStringList pieces = path.section(QLatin1Char('/'), -1).split(extension);
    if (pieces.size() < 3) {
        return pieces.first();
    }
    pieces.last().clear();
    return pieces.join(joint);
}

}  // namespace

QString irName(const QString& path) {
    return displayName(path, QStringLiteral(".wav"), QStringLiteral(".wav")).toUpper();
}

QString ampName(const QString& path) {
    return displayName(path, QStringLiteral(".amp"), QStringLiteral(".apm"));
}

void storeName(const QString& name, NameBuffer& destination) {
    const QByteArray utf8 = name.toUtf8();
    const auto length = std::min(kNameLength, static_cast<std::size_t>(name.size()));
    const auto end = std::copy_n(utf8.cbegin(), length, destination.begin());
    *end = '\0';
}

}  // namespace kelvo
