#pragma once

#include <QString>
#include <QUrl>

namespace kelvo {

// From the URL of a chosen file to the path that a reader opens. Any thread.

/// The extension of the files for a CAB slot and for an AMP slot.
inline const QString kIRFileType = QStringLiteral("wav");
inline const QString kAmpFileType = QStringLiteral("amp");

/// Whether the last component of a local file's URL ends in a dot and `fileType`, in upper or lower case.
[[nodiscard]] bool hasFileType(const QUrl& url, const QString& fileType);

/// The path of a wave file: the URL's text without the scheme, the colon and one slash, so that it begins with two
/// slashes. Escaped characters are decoded.
[[nodiscard]] QString irPath(const QUrl& url);

/// The same for an amp model, but escapes are not decoded, so a file whose path contains one is not found.
[[nodiscard]] QString ampPath(const QUrl& url);

}  // namespace kelvo
