#pragma once

#include <QIcon>

class QColor;
class QPainter;
class QRect;

namespace kelvo {

enum class Symbol { Import, Delete, Up, Down, Play, Pause, Dots, Tick };

/// Draws the symbol into the rectangle, with its upright and level edges on whole pixels.
void paintSymbol(QPainter& painter, const QRect& rect, Symbol symbol, const QColor& ink);

/// A small symbol in the colour that the application's palette has for buttons' text at the time of painting. It is
/// drawn for each size anew.
[[nodiscard]] QIcon symbolIcon(Symbol symbol);

}  // namespace kelvo
