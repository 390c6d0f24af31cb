#pragma once

#include <QIcon>

namespace kelvo {

enum class Symbol { Import, Delete, Up, Down };

/// A small symbol in the colour that the application's palette has for buttons' text at the time of painting. It is
/// drawn for each size anew, with its upright and level edges on whole pixels.
[[nodiscard]] QIcon symbolIcon(Symbol symbol);

}  // namespace kelvo
