#pragma once

#include <QCache>
#include <QImage>
#include <QRectF>
#include <array>
#include <cstdint>
#include <optional>

#include "SBProgressBar.h"

namespace kelvo {

/// Composes the frames of one bar from pictures of its pieces, at the resolution they are shown at. The layers' painter
/// paints each when it is first shown; a frame only copies.
///
/// The stripes move in whole device pixels, so a part has as many pictures as the stripes have pixels before they
/// repeat. Away from the round ends the bar looks the same in every column but for the stripes: its middle is one long
/// strip, from which a frame takes what begins where the stripes are. What is right of the fill is a copy from the bare
/// trough. A new value changes only the fill's right end.
class SBProgressBarFrame {
public:
    explicit SBProgressBarFrame(SBProgressBar& bar) : bar_(bar) {}
    SBProgressBarFrame(const SBProgressBarFrame&) = delete;
    SBProgressBarFrame& operator=(const SBProgressBarFrame&) = delete;

    /// Shows the bar as it is now; `painter` works in device pixels, `ratio` of them per point. The trough right of
    /// `part`, which is in points, may be left out.
    void draw(QPainter& painter, double ratio, const QRect& part);

    /// How many pictures have been painted since the start.
    int paintedParts() const { return paintedParts_; }

private:
    // All that the pictures depend on, but for the fill's width and the stripes' place.
    struct Look {
        std::uint64_t revision;
        double ratio;
        RingLook ring;
        QPointF innerOrigin;
        double innerHeight;
        std::array<float, 8> opacities;
        bool operator==(const Look&) const = default;
    };

    // One part of the bar with the stripes at the places where they have been lately. Bounded for very wide tiles.
    static constexpr int kMostPhases = 64;
    using Phases = QCache<int, QImage>;

    Look presentLook(double ratio);
    void forget(const Look& look);
    void layOut(const QRectF& inner);
    void makeStrip(int phase);
    QImage paintLayersOf(const Layer& layer, int x, int width, const Layer* omitted = nullptr);
    QImage paintPart(int x, int width);
    QImage partAt(int phase, Phases& phases, int x, int width);

    SBProgressBar& bar_;
    std::optional<Look> look_;
    QSize size_;        // of the bar, in pixels
    int endWidth_ = 0;  // columns at either end of trough and fill that differ from the middle
    int period_ = 1;    // columns after which the stripes repeat
    QImage trough_;
    QImage strip_;
    int stripPhase_ = 0;
    Phases leftEnd_{kMostPhases};

    // The fill that the following are laid out for.
    QRectF inner_;
    Phases rightEnd_{kMostPhases};
    int rightX_ = 0;   // where it begins; 0 if it is all of a fill too short to have a middle
    int fillEnd_ = 0;  // the first column that is only trough
    int paintedParts_ = 0;
};

}  // namespace kelvo
