#pragma once

#include <QEasingCurve>
#include <optional>
#include <string>

namespace kelvo {

/// Moves a property of a layer between two values. It changes what is shown, never the property itself.
///
/// A pure function of the time since its start. The toolkit's animation objects would run on their own clock, also
/// while the view is hidden; these need only the view's frame timer, and a test can set the time.
struct BasicAnimation {
    /// "position.x" or "opacity".
    std::string keyPath{};

    /// The end is `toValue`, or `fromValue` + `byValue` without one.
    double fromValue = 0.0;
    double byValue = 0.0;
    std::optional<double> toValue{};

    /// Seconds of one run. Zero or less is replaced by LayerScene::kDefaultDuration when the animation is added.
    double duration = 0.0;
    /// Linear by default.
    QEasingCurve timingFunction{};
    /// Infinity repeats endlessly.
    double repeatCount = 1.0;
    /// An animation that is not removed stays under its key after its end, but has no effect.
    bool removedOnCompletion = true;

    /// Seconds of all runs.
    double length() const { return duration * repeatCount; }
    /// The value `elapsed` seconds after the start.
    double valueAt(double elapsed) const;

    bool operator==(const BasicAnimation&) const = default;
};

/// The timing of implicit animations.
QEasingCurve defaultTiming();
QEasingCurve easeInEaseOut();

}  // namespace kelvo
