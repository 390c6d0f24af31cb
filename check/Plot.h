#pragma once

#include <QImage>
#include <QString>

#include "CheckFile.h"

namespace kelvo {

/// Draws the points over time and their gain over frequency, 1000 by 700 pixels. Also draws the gain of the complete
/// file, if known, at the same level. `title` is one printable line; one that is too long is elided in the middle.
/// Needs a QGuiApplication on any platform. Main thread.
[[nodiscard]] QImage plotWave(const QString& title, const WaveFacts& wave);

/// Writes a picture as PNG to `path`. Replaces an existing file only by the complete picture. Returns an empty text, or
/// why it failed.
[[nodiscard]] QString savePicture(const QImage& picture, const QByteArray& path);

}  // namespace kelvo
