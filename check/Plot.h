#pragma once

#include <QImage>
#include <QString>

#include "CheckFile.h"

namespace kelvo {

/// A picture, 1000 by 700, of the points over time and of their gain over frequency. `title` is one printable line;
/// what is too long of it is left out in the middle. Needs a QGuiApplication, on any platform. Main thread.
[[nodiscard]] QImage plotPoints(const QString& title, const PointLevels& levels);

/// Writes a picture as PNG to `path`, over a file that is there. Returns nothing on success, else why it failed.
[[nodiscard]] QString savePicture(const QImage& picture, const QString& path);

}  // namespace kelvo
