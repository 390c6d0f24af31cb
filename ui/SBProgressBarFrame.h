#pragma once

#include <QImage>
#include <QRectF>
#include <array>
#include <cstdint>
#include <vector>

#include "SBProgressBar.h"

namespace kelvo {

/// Composes the frames of one bar from pieces that are drawn once and kept, at the resolution they are shown at.
///
/// Away from the round ends the bar looks the same in every column but for the stripes. So each column of pixels is
/// kept in two forms, once under a stripe that is all black and once under one that is all white, and a frame only
/// chooses between the two by the stripe pattern: in advance for the middle of the fill, which is then a plain copy
/// from a long strip, and per frame for the two ends. What is right of the fill is a copy from the bare trough. Between
/// two changes of the bar, frames draw no shape, no gradient and no clip. Every piece comes from the layers' painter.
///
/// The stripes move in whole device pixels; the fill's right end is kept for whoever ends in
/// the same 64th of one, which is as fine as the raster engine sees.
class SBProgressBarFrame {
public:
    explicit SBProgressBarFrame(SBProgressBar& bar) : bar_(bar) {}
    SBProgressBarFrame(const SBProgressBarFrame&) = delete;
    SBProgressBarFrame& operator=(const SBProgressBarFrame&) = delete;

    /// Shows the bar as it is now; `painter` works in device pixels, `ratio` of them per point. The trough right of
    /// `part`, which is in points, may be left out.
    void draw(QPainter& painter, double ratio, const QRect& part);

    /// How many pieces have been drawn since the start.
    int drawnParts() const { return drawnParts_; }

private:
    // Places within a pixel at which a right end is kept.
    static constexpr int kSteps = 64;

    // All that the kept pieces depend on. The fill's width is not in it.
    struct Look {
        std::uint64_t revision = 0;
        double ratio = 0.0;
        RingLook ring;
        QPointF innerOrigin;
        double innerHeight = 0.0;
        std::array<float, 8> opacities{};
        bool operator==(const Look&) const = default;
    };

    // Some columns of the bar: as they are without stripes, under black and under white ones.
    struct Columns {
        QImage none;
        QImage black;
        QImage white;
        bool isOpaque = false;
    };

    // A round end of the fill, and what it looks like with the stripes at the places where they have been lately.
    struct End {
        struct Phase {
            int cellColumn = 0;
            QImage pixels;
        };
        Columns columns;
        std::vector<Phase> phases;
    };

    Look presentLook(double ratio);
    void forget(const Look& look);
    void layOut(const QRectF& inner);
    void makeStrip();
    QImage paintBar(double x, int width, const QColor& stripes);
    Columns makeColumns(double x, int width);
    End makeEnd(const Columns& columns) const;
    const QImage& pixelsOf(End& end, int cellColumn);
    QImage compose(const Columns& columns, int cellColumn) const;
    int cellColumn(int x, int stripesAt) const;
    const QRgb* cellRow(int y) const;

    SBProgressBar& bar_;
    Look look_;
    QSize size_;        // of the bar, in pixels
    int endWidth_ = 0;  // columns at either end of trough and fill that differ from the middle
    QImage cell_;       // one period of the stripes
    int cellTop_ = 0;   // where it begins, vertically
    bool cellIsOpaque_ = false;
    QImage trough_;
    QImage strip_;
    End leftEnd_;
    std::array<Columns, kSteps> keptRightEnds_;

    // The fill that the following are laid out for.
    QRectF inner_;
    End rightEnd_;
    int rightX_ = 0;   // where it begins; 0 if it is all of a fill too short to have a middle
    int fillEnd_ = 0;  // the first column that is only trough
    int drawnParts_ = 0;
};

}  // namespace kelvo
