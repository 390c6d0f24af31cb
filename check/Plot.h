#pragma once

#include <QImage>
#include <QString>
#include <span>

#include "CheckFile.h"

namespace kelvo {

/// How much an impulse response with these points, one every 1 / kIRPointRate seconds, amplifies a steady tone of
/// `frequency` Hz, in dB; a single point of 1.0 gives 0 dB. kNoGain at the least, which silence gives. Any thread.
[[nodiscard]] double gainAt(std::span<const float> points, double frequency);

inline constexpr double kNoGain = -200.0;

/// A picture, 1000 by 700, of the points over time and of their gain over frequency. `title` is one printable line;
/// what is too long of it is left out in the middle. Needs a QGuiApplication, on any platform. Main thread.
[[nodiscard]] QImage plotPoints(const QString& title, const PointLevels& levels);

/// Writes a picture as PNG to `path`. A file that is there is replaced by the whole picture or stays as it is. Returns
/// nothing on success, else why it failed.
[[nodiscard]] QString savePicture(const QImage& picture, const QByteArray& path);

}  // namespace kelvo
