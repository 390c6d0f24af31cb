#include "ChosenFile.h"

#include <QFileInfo>

namespace kelvo {

bool hasFileType(const QUrl& url, const QString& fileType) {
    return url.isLocalFile() && QFileInfo(url.path()).suffix().compare(fileType, Qt::CaseInsensitive) == 0;
}

QString irPath(const QUrl& url) {
    return QUrl::fromPercentEncoding(ampPath(url).toLatin1());
}

QString ampPath(const QUrl& url) {
    return QString::fromLatin1(url.toEncoded()).mid(6);
}

}  // namespace kelvo
