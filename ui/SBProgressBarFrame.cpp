#include "SBProgressBarFrame.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "layers/LayerPainter.h"
#include "layers/PatternCell.h"

namespace kelvo {
namespace {

int wholePixels(double length) {
    constexpr double kRoundingError = 1e-6;
    return static_cast<int>(std::ceil(length - kRoundingError));
}

QImage cellOf(const Layer::Background& stripes, double ratio) {
    QImage cell;
    if (const auto* const tile = std::get_if<LayerImage>(&stripes)) {
        cell = patternCell(*tile, ratio);
    }
    if (cell.isNull()) {
        cell = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        const auto* const color = std::get_if<QColor>(&stripes);
        cell.fill(color ? *color : QColor(Qt::transparent));
    }
    return cell;
}

bool isOpaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 255; })) {
            return false;
        }
    }
    return true;
}

const QRgb* rowOf(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

// The raster engine copies what is opaque by its format, and blends everything else.
QImage::Format formatOf(bool opaque) {
    return opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
}

// A colour channel under the stripes' pixel: without stripes it is `none`, and it changes linearly with their alpha and
// colour.
int channel(int none, int black, int white, int alpha, int color) {
    return none + ((black - none) * alpha + (white - black) * color) / 255;
}

QRgb under(QRgb stripe, QRgb none, QRgb black, QRgb white) {
    if (stripe == 0xff000000U) {
        return black;
    }
    if (stripe == 0xffffffffU) {
        return white;
    }
    const int alpha = qAlpha(stripe);
    return qRgba(channel(qRed(none), qRed(black), qRed(white), alpha, qRed(stripe)),
                 channel(qGreen(none), qGreen(black), qGreen(white), alpha, qGreen(stripe)),
                 channel(qBlue(none), qBlue(black), qBlue(white), alpha, qBlue(stripe)),
                 channel(qAlpha(none), qAlpha(black), qAlpha(white), alpha, alpha));
}

}  // namespace

void SBProgressBarFrame::draw(QPainter& painter, double ratio, const QRect& part) {
    const double alpha = static_cast<double>(bar_.rootLayer().shownOpacity());
    if (!(alpha > 0.0) || bar_.size().isEmpty()) {
        return;
    }
    if (const Look look = presentLook(ratio); look != look_ || trough_.isNull()) {
        forget(look);
    }
    if (const QRectF inner = bar_.innerClipLayer().frame(); inner != inner_) {
        layOut(inner);
    }
    const int stripesAt = static_cast<int>(std::lround((inner_.x() + bar_.stripesLayer().shownPosition().x()) * ratio));

    if (alpha < 1.0) {
        painter.setOpacity(alpha);
    }
    const int partEnd = std::min(wholePixels((part.x() + part.width()) * ratio), size_.width());
    if (fillEnd_ < partEnd) {
        painter.drawImage(QPoint(fillEnd_, 0), trough_, QRect(fillEnd_, 0, partEnd - fillEnd_, size_.height()));
    }
    if (fillEnd_ > 0) {
        painter.drawImage(QPoint(rightX_, 0), pixelsOf(rightEnd_, cellColumn(rightX_, stripesAt)));
    }
    if (rightX_ > 0) {
        painter.drawImage(QPoint(0, 0), pixelsOf(leftEnd_, cellColumn(0, stripesAt)));
        const QRect middle(cellColumn(endWidth_, stripesAt), 0, rightX_ - endWidth_, size_.height());
        if (!middle.isEmpty()) {
            painter.drawImage(QPoint(endWidth_, 0), strip_, middle);
        }
    }
    if (alpha < 1.0) {
        painter.setOpacity(1.0);
    }
}

SBProgressBarFrame::Look SBProgressBarFrame::presentLook(double ratio) {
    const QRectF inner = bar_.innerClipLayer().frame();
    Look look{bar_.lookRevision(), ratio, bar_.shownRing(), inner.topLeft(), inner.height(), {}};
    const std::array<const Layer*, 8> layers{&bar_.clipLayer(),        &bar_.backgroundLayer(), &bar_.borderLayer(),
                                             &bar_.innerClipLayer(),   &bar_.fillLayer(),       &bar_.stripesLayer(),
                                             &bar_.innerShadowLayer(), &bar_.colorTintLayer()};
    std::transform(layers.begin(), layers.end(), look.opacities.begin(),
                   [](const Layer* layer) { return layer->shownOpacity(); });
    return look;
}

void SBProgressBarFrame::forget(const Look& look) {
    look_ = look;
    size_ = {wholePixels(bar_.width() * look.ratio), wholePixels(bar_.height() * look.ratio)};
    const double roundEnd = bar_.height() / 2.0 + std::max(look.ring.borderWidth, 0.0);
    endWidth_ = wholePixels(std::min(roundEnd * look.ratio, static_cast<double>(size_.width()))) + 1;
    cell_ = cellOf(bar_.stripesLayer().background(), look.ratio);
    cellTop_ = static_cast<int>(std::lround((look.innerOrigin.y() + bar_.stripesLayer().frame().y()) * look.ratio));
    cellIsOpaque_ = isOpaque(cell_);
    strip_ = {};
    leftEnd_ = {};
    keptRightEnds_.fill({});
    ++drawnParts_;
    trough_ = paintLayers(bar_.clipLayer(), {{0.0, 0.0}, size_, look.ratio}, {.omitted = &bar_.innerClipLayer()});
    layOut(bar_.innerClipLayer().frame());
}

void SBProgressBarFrame::layOut(const QRectF& inner) {
    inner_ = inner;
    rightX_ = 0;
    fillEnd_ = 0;
    if (inner.isEmpty()) {
        return;
    }
    const double right = inner.right() * look_.ratio;
    const int step = static_cast<int>(std::floor(right * kSteps));
    const int column = step / kSteps;
    fillEnd_ = std::clamp(column + 1, 1, size_.width());
    if (right < 2.0 * endWidth_) {
        rightEnd_ = makeEnd(makeColumns(0.0, fillEnd_));
        return;
    }
    if (leftEnd_.phases.empty()) {
        leftEnd_ = makeEnd(makeColumns(0.0, endWidth_));
        makeStrip();
    }
    rightX_ = column - endWidth_;
    // Over the trough's own round end no two places look the same.
    Columns alone;
    Columns& columns =
        column < size_.width() - endWidth_ ? keptRightEnds_[static_cast<std::size_t>(step % kSteps)] : alone;
    if (columns.black.isNull()) {
        columns = makeColumns(rightX_, fillEnd_ - rightX_);
    }
    rightEnd_ = makeEnd(columns);
}

void SBProgressBarFrame::makeStrip() {
    const Columns column = makeColumns(endWidth_, 1);
    const int width = size_.width() + cell_.width();
    strip_ = QImage(width, size_.height(), formatOf(column.isOpaque));
    for (int y = 0; y < strip_.height(); ++y) {
        QRgb* const row = reinterpret_cast<QRgb*>(strip_.scanLine(y));
        const QRgb* const stripe = cellRow(y);
        const QRgb none = *rowOf(column.none, y);
        const QRgb black = *rowOf(column.black, y);
        const QRgb white = *rowOf(column.white, y);
        for (int x = 0; x < width; ++x) {
            row[x] = x < cell_.width() ? under(stripe[x], none, black, white) : row[x - cell_.width()];
        }
    }
}

QImage SBProgressBarFrame::paintBar(double x, int width, const QColor& stripes) {
    ++drawnParts_;
    return paintLayers(bar_.clipLayer(), {{x, 0.0}, {width, size_.height()}, look_.ratio},
                       {.recolored = &bar_.stripesLayer(), .color = stripes});
}

SBProgressBarFrame::Columns SBProgressBarFrame::makeColumns(double x, int width) {
    Columns columns;
    columns.black = paintBar(x, width, Qt::black);
    columns.white = paintBar(x, width, Qt::white);
    columns.none = cellIsOpaque_ ? columns.black : paintBar(x, width, Qt::transparent);
    columns.isOpaque = isOpaque(columns.none) && isOpaque(columns.black) && isOpaque(columns.white);
    return columns;
}

SBProgressBarFrame::End SBProgressBarFrame::makeEnd(const Columns& columns) const {
    // Bounds what a very wide stripe tile can take.
    constexpr int kMostPhases = 64;
    return {columns, std::vector<End::Phase>(static_cast<std::size_t>(std::min(cell_.width(), kMostPhases)))};
}

const QImage& SBProgressBarFrame::pixelsOf(End& end, int cellColumn) {
    End::Phase& phase = end.phases[static_cast<std::size_t>(cellColumn) % end.phases.size()];
    if (phase.pixels.isNull() || phase.cellColumn != cellColumn) {
        phase = {cellColumn, compose(end.columns, cellColumn)};
    }
    return phase.pixels;
}

QImage SBProgressBarFrame::compose(const Columns& columns, int cellColumn) const {
    QImage pixels(columns.black.size(), formatOf(columns.isOpaque));
    for (int y = 0; y < pixels.height(); ++y) {
        QRgb* const row = reinterpret_cast<QRgb*>(pixels.scanLine(y));
        const QRgb* const stripe = cellRow(y);
        const QRgb* const none = rowOf(columns.none, y);
        const QRgb* const black = rowOf(columns.black, y);
        const QRgb* const white = rowOf(columns.white, y);
        int column = cellColumn;
        for (int x = 0; x < pixels.width(); ++x) {
            row[x] = under(stripe[column], none[x], black[x], white[x]);
            column = column + 1 == cell_.width() ? 0 : column + 1;
        }
    }
    return pixels;
}

int SBProgressBarFrame::cellColumn(int x, int stripesAt) const {
    const int column = (x - stripesAt) % cell_.width();
    return column < 0 ? column + cell_.width() : column;
}

const QRgb* SBProgressBarFrame::cellRow(int y) const {
    const int row = (y - cellTop_) % cell_.height();
    return rowOf(cell_, row < 0 ? row + cell_.height() : row);
}

}  // namespace kelvo
