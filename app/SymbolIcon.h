#pragma once

#include <QIcon>

class QColor;
class QPainter;
class QRect;

namespace kelvo {

enum class Symbol { Import, Delete, Up, Down, Play, Pause, Dots, Tick };

/// Draws the symbol into the rectangle, with its vertical and horizontal edges on whole pixels.
void paintSymbol(QPainter& painter, const QRect& rect, Symbol symbol, const QColor& ink);

/// A symbol in the palette's colour for the text of buttons, drawn separately for each size.
[[nodiscard]] QIcon symbolIcon(Symbol symbol);

}  // namespace kelvo
