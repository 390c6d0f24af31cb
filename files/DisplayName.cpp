#include "DisplayName.h"

#include <QByteArray>
#include <QStringList>
#include <algorithm>

namespace kelvo {

QString displayName(const QString& path, const QString& extension, const QString& joint) {
    QStringList pieces = path.section(QLatin1Char('/'), -1).split(extension);
    if (pieces.size() < 3) {
        return pieces.first();
    }
    pieces.last().clear();
    return pieces.join(joint);
}

void storeName(const QString& name, CharName& destination) {
    const QByteArray utf8 = name.toUtf8();
    const auto length = std::min(kNameLength, static_cast<std::size_t>(name.size()));
    const auto end = std::copy_n(utf8.cbegin(), length, destination.begin());
    *end = '\0';
}

}  // namespace kelvo
