#include "SBProgressBarFrame.h"

#include <QPainter>
#include <QPixmap>
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

int modulo(int number, int period) {
    return (number % period + period) % period;
}

}  // namespace

void SBProgressBarFrame::draw(QPainter& painter, double ratio, const QRect& part) {
    const double alpha = static_cast<double>(bar_.rootLayer().shownOpacity());
    if (!(alpha > 0.0) || bar_.size().isEmpty()) {
        return;
    }
    if (const Look look = presentLook(ratio); look_ != look) {
        forget(look);
    }
    if (const QRectF inner = bar_.innerClipLayer().frame(); inner != inner_) {
        layOut(inner);
    }
    const double stripesAt = (inner_.x() + bar_.stripesLayer().shownPosition().x()) * ratio;
    const int phase = modulo(static_cast<int>(std::lround(stripesAt)), period_);

    painter.setOpacity(alpha);
    const int partEnd = std::min(wholePixels((part.x() + part.width()) * ratio), size_.width());
    if (fillEnd_ < partEnd) {
        painter.drawImage(QPoint(fillEnd_, 0), trough_, QRect(fillEnd_, 0, partEnd - fillEnd_, size_.height()));
    }
    if (fillEnd_ > 0) {
        painter.drawImage(QPoint(rightX_, 0), partAt(phase, rightEnd_, rightX_, fillEnd_ - rightX_));
    }
    if (rightX_ > 0) {
        painter.drawImage(QPoint(0, 0), partAt(phase, leftEnd_, 0, endWidth_));
    }
    if (rightX_ > endWidth_) {
        if (strip_.isNull()) {
            makeStrip(phase);
        }
        const int column = modulo(stripPhase_ - phase, period_);
        painter.drawImage(QPoint(endWidth_, 0), strip_, QRect(column, 0, rightX_ - endWidth_, size_.height()));
    }
    painter.setOpacity(1.0);
}

SBProgressBarFrame::Look SBProgressBarFrame::presentLook(double ratio) {
    const QRectF inner = bar_.innerClipLayer().frame();
    return {bar_.lookRevision(),
            ratio,
            bar_.shownRing(),
            inner.topLeft(),
            inner.height(),
            {bar_.clipLayer().shownOpacity(), bar_.backgroundLayer().shownOpacity(), bar_.borderLayer().shownOpacity(),
             bar_.innerClipLayer().shownOpacity(), bar_.fillLayer().shownOpacity(), bar_.stripesLayer().shownOpacity(),
             bar_.innerShadowLayer().shownOpacity(), bar_.colorTintLayer().shownOpacity()}};
}

void SBProgressBarFrame::forget(const Look& look) {
    look_ = look;
    size_ = {wholePixels(bar_.width() * look.ratio), wholePixels(bar_.height() * look.ratio)};
    const double roundEnd = bar_.height() / 2.0 + look.ring.borderWidth;
    endWidth_ = wholePixels(std::min(roundEnd * look.ratio, static_cast<double>(size_.width()))) + 1;
    const auto* const tile = std::get_if<LayerImage>(&bar_.stripesLayer().background());
    period_ = tile ? std::max(patternCell(*tile, look.ratio).width(), 1) : 1;
    strip_ = {};
    leftEnd_.clear();
    trough_ = paintLayersOf(bar_.clipLayer(), 0, size_.width(), &bar_.innerClipLayer());
    layOut(bar_.innerClipLayer().frame());
}

void SBProgressBarFrame::layOut(const QRectF& inner) {
    inner_ = inner;
    rightEnd_.clear();
    rightX_ = 0;
    fillEnd_ = 0;
    if (!inner.isEmpty()) {
        const int column = static_cast<int>(std::floor(inner.right() * look_->ratio));
        fillEnd_ = std::min(column + 1, size_.width());
        rightX_ = column - endWidth_;
        if (rightX_ < endWidth_) {
            rightX_ = 0;
        } else if (strip_.isNull() && rightX_ < endWidth_ + period_) {
            rightX_ = endWidth_;
        }
    }
}

void SBProgressBarFrame::makeStrip(int phase) {
    stripPhase_ = phase;
    const QImage columns = paintPart(endWidth_, period_);
    strip_ = QImage(size_.width() + period_, size_.height(), columns.format());
    strip_.fill(Qt::transparent);
    QPainter(&strip_).fillRect(strip_.rect(), QBrush(columns));
}

QImage SBProgressBarFrame::paintLayersOf(const Layer& layer, int x, int width, const Layer* omitted) {
    ++paintedParts_;
    return paintLayers(layer, {{static_cast<double>(x), 0.0}, {width, size_.height()}, look_->ratio}, omitted);
}

QImage SBProgressBarFrame::paintPart(int x, int width) {
    QImage picture;
    if (x >= endWidth_ && x + width <= size_.width() - endWidth_ && bar_.clipLayer().shownOpacity() == 1.0F) {
        // Here the bar's mask cuts nothing off, so that the fill lies on the trough as it is.
        picture = trough_.copy(x, 0, width, size_.height());
        QPainter(&picture).drawImage(0, 0, paintLayersOf(bar_.innerClipLayer(), x, width));
    } else {
        picture = paintLayersOf(bar_.clipLayer(), x, width);
    }
    // A pixmap finds out whether it is opaque: such a picture is copied, any other blended.
    return QPixmap::fromImage(std::move(picture)).toImage();
}

QImage SBProgressBarFrame::partAt(int phase, Phases& phases, int x, int width) {
    if (const QImage* const kept = phases.object(phase)) {
        return *kept;
    }
    QImage part = paintPart(x, width);
    phases.insert(phase, new QImage(part));
    return part;
}

}  // namespace kelvo
