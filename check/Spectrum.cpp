#include "Spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "IRConversion.h"

namespace kelvo {

double gainAt(std::span<const float> points, double frequency) {
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / kIRPointRate);
    // Horner's rule, from the last point down: the polynomial of the points at one place of the unit circle.
    std::complex<double> sum = 0.0;
    for (std::size_t i = points.size(); i-- > 0;) {
        sum = sum * step + static_cast<double>(points[i]);
    }
    return std::max(20.0 * std::log10(std::abs(sum)), kNoGain);
}

}  // namespace kelvo
