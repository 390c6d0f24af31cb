#include "BasicAnimation.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

std::optional<double> BasicAnimation::valueAt(double elapsed, double ownValue) const {
    if (elapsed >= length()) {
        return std::nullopt;
    }
    const double byDistance = byValue.value_or(0.0);
    const double start = fromValue ? *fromValue : (byValue && toValue ? *toValue - byDistance : ownValue);
    const double end = toValue ? *toValue : (byValue ? start + byDistance : ownValue);
    const double time = std::fmod(std::max(elapsed, 0.0), duration) / duration;
    return start + (end - start) * (timingFunction ? timingFunction->at(time) : time);
}

}  // namespace kelvo
