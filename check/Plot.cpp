#include "Plot.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace kelvo {
namespace {

constexpr QSize kPictureSize(1000, 700);
constexpr QRectF kTitleArea(96, 14, 874, 30);
constexpr QRectF kTimeArea(96, 60, 874, 250);
constexpr QRectF kFrequencyArea(96, 385, 874, 250);
constexpr int kTitlePixels = 19;
constexpr int kLabelPixels = 14;

constexpr QRgb kPaper = 0xFFFFFFFF;
constexpr QRgb kInk = 0xFF222222;
constexpr QRgb kGrid = 0xFFDDDDDD;
constexpr QRgb kCurve = 0xFF1F4E9C;

constexpr double kLowest = 20.0;  // Hz
constexpr double kHighest = 20000.0;
constexpr double kGainStep = 10.0;  // dB
constexpr double kGainSpan = 60.0;
constexpr double kGainRoom = 1.0;

struct Axis {
    QString title;
    double first;
    double last;
    std::vector<double> ticks;
    bool isLogarithmic = false;

    /// Where `value` stands between `first`, 0, and `last`, 1.
    [[nodiscard]] double part(double value) const {
        return isLogarithmic ? std::log(value / first) / std::log(last / first) : (value - first) / (last - first);
    }
    /// The inverse.
    [[nodiscard]] double valueAt(double part) const {
        return isLogarithmic ? first * std::pow(last / first, part) : first + part * (last - first);
    }
};

struct Panel {
    QRectF area;
    Axis x;
    Axis y;

    [[nodiscard]] QPointF place(double xValue, double yValue) const {
        return {area.left() + x.part(xValue) * area.width(), area.bottom() - y.part(yValue) * area.height()};
    }
};

/// As large as the points need it, so that a quiet response can be seen too.
Axis levelAxis(const PointLevels& levels) {
    const float peak = std::max(std::ranges::max(levels), -std::ranges::min(levels));
    constexpr std::array kLimits{0.001F, 0.002F, 0.005F, 0.01F, 0.02F, 0.05F, 0.1F, 0.2F, 0.5F, 1.0F};
    const auto limit =
        static_cast<double>(*std::ranges::find_if(kLimits, [peak](float value) { return value >= peak; }));
    // A little more, so that the frame does not hide a curve that goes up to it.
    return {QStringLiteral("level (full scale = 1)"),
            -1.05 * limit,
            1.05 * limit,
            {-limit, -limit / 2, 0, limit / 2, limit}};
}

/// Down from the next step that leaves the curve a little room.
Axis gainAxis(const std::vector<double>& gains) {
    const double highest = std::ranges::max(gains);
    const double top = highest > kNoGain ? std::floor((highest + kGainRoom) / kGainStep + 1.0) * kGainStep : 0.0;
    Axis axis{QStringLiteral("gain (dB)"), top - kGainSpan, top, {}};
    for (double value = axis.first; value <= axis.last; value += kGainStep) {
        axis.ticks.push_back(value);
    }
    return axis;
}

QString label(double tick) {
    return tick < 1000.0 ? QString::number(tick) : QStringLiteral("%1 k").arg(tick / 1000.0);
}

void drawPanel(QPainter& painter, const Panel& panel, const QPolygonF& curve) {
    const QRectF& area = panel.area;
    const auto drawTick = [&painter](QPointF from, QPointF to, const QRectF& place, int alignment, double tick) {
        painter.setPen(QColor(kGrid));
        painter.drawLine(from, to);
        painter.setPen(QColor(kInk));
        painter.drawText(place, alignment, label(tick));
    };
    for (const double tick : panel.x.ticks) {
        const double x = panel.place(tick, panel.y.first).x();
        drawTick({x, area.top()}, {x, area.bottom()}, {x - 40, area.bottom() + 4, 80, 20}, Qt::AlignCenter, tick);
    }
    for (const double tick : panel.y.ticks) {
        const double y = panel.place(panel.x.first, tick).y();
        drawTick({area.left(), y}, {area.right(), y}, {area.left() - 76, y - 10, 70, 20},
                 Qt::AlignRight | Qt::AlignVCenter, tick);
    }
    painter.drawRect(area);
    painter.drawText(QRectF(area.left(), area.bottom() + 26, area.width(), 20), Qt::AlignCenter, panel.x.title);
    painter.save();
    painter.translate(14, area.center().y());
    painter.rotate(-90);
    painter.drawText(QRectF(-150, -10, 300, 20), Qt::AlignCenter, panel.y.title);
    painter.restore();
    painter.save();
    painter.setClipRect(area);
    painter.setPen(QPen(QColor(kCurve), 1.5));
    painter.drawPolyline(curve);
    painter.restore();
}

void drawTime(QPainter& painter, const PointLevels& levels) {
    const Axis time{QStringLiteral("time (ms)"), -0.2, 11.8, {0, 2, 4, 6, 8, 10}};
    const Panel panel{kTimeArea, time, levelAxis(levels)};
    QPolygonF curve;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        curve += panel.place(1000.0 * static_cast<double>(i) / kIRPointRate, static_cast<double>(levels[i]));
    }
    drawPanel(painter, panel, curve);
}

void drawFrequency(QPainter& painter, const PointLevels& levels) {
    // Closer than the picture's columns: 512 points have peaks and notches narrower than one, up where columns are
    // wide.
    constexpr std::size_t kColumns = 3000;
    const Axis axis{QStringLiteral("frequency (Hz)"),
                    kLowest,
                    kHighest,
                    {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000},
                    true};
    const auto frequency = [&axis](std::size_t i) { return axis.valueAt(static_cast<double>(i) / kColumns); };
    std::vector<double> gains;
    for (std::size_t i = 0; i <= kColumns; ++i) {
        gains.push_back(gainAt(levels, frequency(i)));
    }
    const Panel panel{kFrequencyArea, axis, gainAxis(gains)};
    QPolygonF curve;
    for (std::size_t i = 0; i <= kColumns; ++i) {
        curve += panel.place(frequency(i), gains[i]);
    }
    drawPanel(painter, panel, curve);
}

void setFontPixels(QPainter& painter, int pixels) {
    QFont font = painter.font();
    font.setPixelSize(pixels);
    painter.setFont(font);
}

/// A write that was cut short gives no reason; the next one does.
bool writeAll(QIODevice& file, QByteArrayView bytes) {
    qint64 count = 1;
    while (count > 0 && !bytes.isEmpty()) {
        count = file.write(bytes.data(), bytes.size());
        bytes = bytes.sliced(std::max<qint64>(count, 0));
    }
    return bytes.isEmpty();
}

}  // namespace

double gainAt(std::span<const float> points, double frequency) {
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / kIRPointRate);
    // Horner's rule, from the last point down: the polynomial of the points at one place of the unit circle.
    std::complex<double> sum = 0.0;
    for (std::size_t i = points.size(); i-- > 0;) {
        sum = sum * step + static_cast<double>(points[i]);
    }
    return std::max(20.0 * std::log10(std::abs(sum)), kNoGain);
}

QImage plotPoints(const QString& title, const PointLevels& levels) {
    QImage picture(kPictureSize, QImage::Format_RGB32);
    picture.fill(kPaper);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(kInk));
    setFontPixels(painter, kTitlePixels);
    const QString line = painter.fontMetrics().elidedText(title, Qt::ElideMiddle, static_cast<int>(kTitleArea.width()));
    painter.drawText(kTitleArea, Qt::AlignLeft | Qt::AlignVCenter, line);
    setFontPixels(painter, kLabelPixels);
    drawTime(painter, levels);
    drawFrequency(painter, levels);
    return picture;
}

QString savePicture(const QImage& picture, const QByteArray& path) {
    const QString name = QFile::decodeName(path);
    if (QFile::encodeName(name) != path) {
        return QStringLiteral("its name is not valid UTF-8");
    }
    if (const QFileInfo there(name); there.exists() && !there.isFile()) {
        return QStringLiteral("it is not a regular file");
    }
    QByteArray png;
    QBuffer buffer(&png);
    QSaveFile file(name);
    const bool isSaved = buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG") &&
                         file.open(QIODevice::WriteOnly) && writeAll(file, png) && file.commit();
    return isSaved ? QString() : file.errorString();
}

}  // namespace kelvo
