#pragma once

#include <QImage>
#include <QString>

#include "CheckFile.h"

namespace kelvo {

/// A picture, 1000 by 700, of the points over time and of their gain over frequency, beside that of the whole file at
/// the same level where that is known. `title` is one printable line; what is too long of it is left out in the middle.
/// Needs a QGuiApplication, on any platform. Main thread.
[[nodiscard]] QImage plotWave(const QString& title, const WaveFacts& wave);

/// Writes a picture as PNG to `path`. A file that is there is replaced by the whole picture or stays as it is. Returns
/// nothing on success, else why it failed.
[[nodiscard]] QString savePicture(const QImage& picture, const QByteArray& path);

}  // namespace kelvo
