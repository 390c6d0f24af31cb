#pragma once

namespace kelvo {

/// The pace of an animation: a cubic Bezier curve from (0, 0) to (1, 1) with the inner control points (x1, y1) and
/// (x2, y2), x being the share of time and y the share of the way. x1 and x2 lie within 0 to 1.
struct TimingCurve {
    double x1;
    double y1;
    double x2;
    double y2;

    /// The share of the way after the share `time` (0 to 1) of the time.
    double at(double time) const;

    bool operator==(const TimingCurve&) const = default;
};

/// Used by implicit animations.
inline constexpr TimingCurve kDefaultTiming{0.25, 0.1, 0.25, 1.0};
inline constexpr TimingCurve kEaseInEaseOut{0.42, 0.0, 0.58, 1.0};

}  // namespace kelvo
