#include "BasicAnimation.h"

#include <QPointF>
#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

QEasingCurve bezierCurve(QPointF inner1, QPointF inner2) {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(inner1, inner2, {1.0, 1.0});
    return curve;
}

}  // namespace

QEasingCurve defaultTiming() {
    return bezierCurve({0.25, 0.1}, {0.25, 1.0});
}

QEasingCurve easeInEaseOut() {
    return bezierCurve({0.42, 0.0}, {0.58, 1.0});
}

double BasicAnimation::valueAt(double elapsed) const {
    const double time = std::fmod(std::max(elapsed, 0.0), duration) / duration;
    const double distance = toValue ? *toValue - fromValue : byValue;
    return fromValue + distance * timingFunction.valueForProgress(time);
}

}  // namespace kelvo
