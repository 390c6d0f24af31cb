#pragma once

#include <QString>
#include <QUrl>

namespace kelvo {

// What stands between a file that the user chose and the path that a reader opens. Any thread.

/// The extension of the files for a CAB slot and for an AMP slot.
inline const QString kIRFileType = QStringLiteral("wav");
inline const QString kAmpFileType = QStringLiteral("amp");

/// Whether the last component of a local file's URL ends in a dot and `fileType`, in either case of letters.
[[nodiscard]] bool hasFileType(const QUrl& url, const QString& fileType);

/// The path of a wave file: the URL's text without the scheme, its colon and one slash, so that it begins with two
/// slashes, and with escaped characters decoded.
[[nodiscard]] QString irPath(const QUrl& url);

/// The same for an amp model, but the escapes stay in: a path that needs any names no file.
[[nodiscard]] QString ampPath(const QUrl& url);

}  // namespace kelvo
