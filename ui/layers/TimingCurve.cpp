#include "TimingCurve.h"

namespace kelvo {
namespace {

double bezier(double inner1, double inner2, double s) {
    const double rest = 1.0 - s;
    return 3.0 * rest * rest * s * inner1 + 3.0 * rest * s * s * inner2 + s * s * s;
}

}  // namespace

double TimingCurve::at(double time) const {
    if (time <= 0.0) {
        return 0.0;
    }
    if (time >= 1.0) {
        return 1.0;
    }
    // x grows with the curve's parameter, so halving always finds it; 40 steps exhaust what a screen can show.
    double low = 0.0;
    double high = 1.0;
    for (int step = 0; step < 40; ++step) {
        const double middle = (low + high) / 2.0;
        (bezier(x1, x2, middle) < time ? low : high) = middle;
    }
    return bezier(y1, y2, low);
}

}  // namespace kelvo
