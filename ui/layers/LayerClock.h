#pragma once

#include <functional>

namespace kelvo {

/// The time that animations run by: seconds since any fixed moment, never going back.
using LayerClock = std::function<double()>;

}  // namespace kelvo
