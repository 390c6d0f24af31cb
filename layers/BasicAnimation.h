#pragma once

#include <QEasingCurve>
#include <optional>
#include <string>

namespace kelvo {

/// Moves a property of a layer between two values. It changes what is shown, never the property itself.
///
/// It is a plain function of the time since its start. The toolkit's animation objects run on a clock of their own,
/// also while nobody sees them; these need no more than the frame timer of the view, and a test can set the time.
struct BasicAnimation {
    /// "position.x" or "opacity".
    std::string keyPath{};

    /// The end is `toValue` or, without one, `byValue` further on.
    double fromValue = 0.0;
    double byValue = 0.0;
    std::optional<double> toValue{};

    /// Seconds of one run. Zero or less takes LayerScene::kDefaultDuration when the animation is added.
    double duration = 0.0;
    /// Linear by default.
    QEasingCurve timingFunction{};
    /// Infinity runs for ever.
    double repeatCount = 1.0;
    /// An animation that is not removed stays listed under its key when it has ended, but shows no more.
    bool removedOnCompletion = true;

    /// Seconds of all runs.
    double length() const { return duration * repeatCount; }
    /// The value `elapsed` seconds after the start.
    double valueAt(double elapsed) const;

    bool operator==(const BasicAnimation&) const = default;
};

/// The pace of implicit animations.
QEasingCurve defaultTiming();
QEasingCurve easeInEaseOut();

}  // namespace kelvo
