#pragma once

#include <QEasingCurve>
#include <optional>
#include <string>

namespace kelvo {

/// Moves one property of a layer between two values. It changes what is shown, never the property itself.
struct BasicAnimation {
    /// "position.x" and "opacity" move the layer; any other name only yields Layer::animatedValue.
    std::string keyPath{};

    /// The way: from-to, from-by and by-to as they say; a single one together with the property's own value.
    std::optional<double> fromValue{};
    std::optional<double> byValue{};
    std::optional<double> toValue{};

    /// Seconds of one run; zero or less takes the default, 0.25 s, when the animation is added.
    double duration = 0.0;
    /// The pace, even at first.
    QEasingCurve timingFunction{};
    /// Infinity runs for ever.
    double repeatCount = 1.0;
    /// One that is kept stays listed under its key when it has ended, but shows no more.
    bool removedOnCompletion = true;

    /// Seconds of all runs.
    double length() const { return duration * repeatCount; }

    /// The value `elapsed` seconds after the start, given the property's own value; none once all runs are over.
    std::optional<double> valueAt(double elapsed, double ownValue) const;

    bool operator==(const BasicAnimation&) const = default;
};

/// The paces of implicit animations and of those that start and end slowly.
QEasingCurve defaultTiming();
QEasingCurve easeInEaseOut();

}  // namespace kelvo
