#pragma once

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QImage>
#include <algorithm>
#include <cstdlib>

namespace kelvo::test {

/// Whether the picture is the one that was reviewed and kept at `path`. Each channel may differ by two steps, because
/// processors round differently. A picture that differs is written to the working directory under the same name. If it
/// is right, copy it over the kept one.
inline testing::AssertionResult isApproved(const QImage& picture, const QString& path) {
    constexpr int kTolerance = 2;
    const QImage actual = picture.convertToFormat(QImage::Format_RGB32);
    const QImage approved = QImage(path).convertToFormat(QImage::Format_RGB32);
    const auto differs = [&](int x, int y) {
        const QRgb one = actual.pixel(x, y);
        const QRgb other = approved.pixel(x, y);
        return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                         std::abs(qBlue(one) - qBlue(other))}) > kTolerance;
    };
    QRect difference = approved.size() == actual.size() ? QRect() : actual.rect();
    for (int y = 0; y < actual.height() && approved.size() == actual.size(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            difference |= differs(x, y) ? QRect(x, y, 1, 1) : QRect();
        }
    }
    if (difference.isNull()) {
        return testing::AssertionSuccess();
    }
    const QString name = QFileInfo(path).fileName();
    const bool isKept = actual.save(name);
    return testing::AssertionFailure() << name.toStdString() << " differs at " << difference.x() << ", "
                                       << difference.y() << ", " << difference.width() << " by " << difference.height()
                                       << (isKept ? "; see the new one in the working directory" : "");
}

}  // namespace kelvo::test
