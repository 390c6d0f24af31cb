#include "Plot.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "Response.h"

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
constexpr QRgb kFileCurve = 0xFFD98A2B;

constexpr double kLowest = 20.0;  // Hz
constexpr double kHighest = 20000.0;
constexpr double kGainStep = 10.0;  // dB
constexpr double kGainSpan = 60.0;
constexpr double kGainMargin = 1.0;

struct Axis {
    QString title;
    double first;
    double last;
    std::vector<double> ticks;
    bool isLogarithmic = false;

    /// The position of `value` on the axis: 0 at `first`, 1 at `last`.
    [[nodiscard]] double part(double value) const {
        return isLogarithmic ? std::log(value / first) / std::log(last / first) : (value - first) / (last - first);
    }
    /// The inverse of `part`.
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

/// Scaled to the points, so that a quiet response is visible too.
Axis levelAxis(const PointLevels& levels) {
    const double peak = std::max(std::ranges::max(levels), -std::ranges::min(levels));
    constexpr std::array kLimits{0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0};
    const double limit = *std::ranges::lower_bound(kLimits, peak);
    // A small margin, so that the frame does not hide a curve that reaches the limit.
    return {QStringLiteral("level (full scale = 1)"),
            -1.05 * limit,
            1.05 * limit,
            {-limit, -limit / 2, 0, limit / 2, limit}};
}

/// The top is the next step that leaves a small margin above the curve.
Axis gainAxis(const std::vector<double>& gains) {
    const double highest = std::ranges::max(gains);
    const double top = highest > kNoGain ? std::floor((highest + kGainMargin) / kGainStep + 1.0) * kGainStep : 0.0;
    Axis axis{QStringLiteral("gain (dB)"), top - kGainSpan, top, {}};
    for (double value = axis.first; value <= axis.last; value += kGainStep) {
        axis.ticks.push_back(value);
    }
    return axis;
}

QString label(double tick) {
    return tick < 1000.0 ? QString::number(tick) : QStringLiteral("%1 k").arg(tick / 1000.0);
}

void drawPanel(QPainter& painter, const Panel& panel) {
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
}

void drawCurve(QPainter& painter, const Panel& panel, std::span<const double> x, std::span<const double> y,
               QRgb color) {
    QPolygonF curve;
    for (std::size_t i = 0; i < x.size(); ++i) {
        curve += panel.place(x[i], y[i]);
    }
    painter.save();
    painter.setClipRect(panel.area);
    painter.setPen(QPen(QColor(color), 1.5));
    painter.drawPolyline(curve);
    painter.restore();
}

void drawTime(QPainter& painter, const PointLevels& levels) {
    const Axis time{QStringLiteral("time (ms)"), -0.2, 11.8, {0, 2, 4, 6, 8, 10}};
    const Panel panel{kTimeArea, time, levelAxis(levels)};
    std::vector<double> times;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        times.push_back(1000.0 * static_cast<double>(i) / kIRPointRate);
    }
    drawPanel(painter, panel);
    drawCurve(painter, panel, times, levels, kCurve);
}

/// Whole Hz without duplicates, closer than the picture's columns: at high frequencies, peaks and notches of 512 points
/// are narrower than a column.
std::vector<double> drawnFrequencies(const Axis& axis) {
    constexpr int kColumns = 3000;
    std::vector<double> frequencies{axis.first};
    for (int i = 1; i <= kColumns; ++i) {
        const double frequency = std::round(axis.valueAt(static_cast<double>(i) / kColumns));
        if (frequency > frequencies.back()) {
            frequencies.push_back(frequency);
        }
    }
    return frequencies;
}

/// The gains of the complete file, shifted to the level of the points.
std::vector<double> gainsOfWhole(const WaveFacts& wave, std::span<const double> frequencies) {
    std::vector<double> gains = gainsAt(wave.whole->second, wave.whole->rate, frequencies);
    const double level = meanLevel(gainsAt(wave.whole->second, wave.whole->rate, comparedFrequencies()));
    for (double& gain : gains) {
        gain += wave.level.value_or(level) - level;
    }
    return gains;
}

void drawFrequency(QPainter& painter, const WaveFacts& wave) {
    const Axis axis{QStringLiteral("frequency (Hz)"),
                    kLowest,
                    kHighest,
                    {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000},
                    true};
    const std::vector<double> frequencies = drawnFrequencies(axis);
    const std::vector<double> gains = gainsAt(wave.levels, kIRPointRate, frequencies);
    const Panel panel{kFrequencyArea, axis, gainAxis(gains)};
    drawPanel(painter, panel);
    if (wave.whole) {
        const QRectF& area = panel.area;
        drawCurve(painter, panel, frequencies, gainsOfWhole(wave, frequencies), kFileCurve);
        painter.setPen(QColor(kFileCurve));
        painter.drawText(QRectF(area.left(), area.top() - 24, area.width(), 20), Qt::AlignRight,
                         QStringLiteral("the whole file"));
        painter.setPen(QColor(kCurve));
        painter.drawText(QRectF(area.left(), area.top() - 24, area.width() - 120, 20), Qt::AlignRight,
                         QStringLiteral("what the pedal gets"));
    }
    drawCurve(painter, panel, frequencies, gains, kCurve);
}

void setFontPixels(QPainter& painter, int pixels) {
    QFont font = painter.font();
    font.setPixelSize(pixels);
    painter.setFont(font);
}

/// Repeats incomplete writes, so that `file` reports why the last one failed.
bool writeAll(QIODevice& file, QByteArrayView bytes) {
    qint64 count = 1;
    while (count > 0 && !bytes.isEmpty()) {
        count = file.write(bytes.data(), bytes.size());
        bytes = bytes.sliced(std::max<qint64>(count, 0));
    }
    return bytes.isEmpty();
}

}  // namespace

QImage plotWave(const QString& title, const WaveFacts& wave) {
    QImage picture(kPictureSize, QImage::Format_RGB32);
    picture.fill(kPaper);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(kInk));
    setFontPixels(painter, kTitlePixels);
    const QString line = painter.fontMetrics().elidedText(title, Qt::ElideMiddle, static_cast<int>(kTitleArea.width()));
    painter.drawText(kTitleArea, Qt::AlignLeft | Qt::AlignVCenter, line);
    setFontPixels(painter, kLabelPixels);
    drawTime(painter, wave.levels);
    drawFrequency(painter, wave);
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
