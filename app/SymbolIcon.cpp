#include "SymbolIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>
#include <algorithm>

namespace kelvo {
namespace {

/// The side of the square in which the shapes are defined.
constexpr int kUnits = 16;

struct Shape {
    QList<QRect> bars;
    QPolygonF polygon;
};

/// An arrow down into a tray, a bin with its lid, triangles, two bars, three dots and a tick.
Shape shapeOf(Symbol symbol) {
    switch (symbol) {
        case Symbol::Import:
            return {{{7, 1, 2, 6}, {2, 9, 2, 4}, {12, 9, 2, 4}, {2, 13, 12, 2}}, QPolygonF({{4, 6}, {12, 6}, {8, 11}})};
        case Symbol::Delete:
            return {{{6, 1, 4, 2}, {2, 3, 12, 2}, {3, 6, 2, 7}, {7, 6, 2, 6}, {11, 6, 2, 7}, {3, 13, 10, 2}}, {}};
        case Symbol::Up:
            return {{}, QPolygonF({{3, 11}, {13, 11}, {8, 5}})};
        case Symbol::Down:
            return {{}, QPolygonF({{3, 5}, {13, 5}, {8, 11}})};
        case Symbol::Play:
            return {{}, QPolygonF({{4, 2}, {4, 14}, {13, 8}})};
        case Symbol::Pause:
            return {{{3, 2, 4, 12}, {9, 2, 4, 12}}, {}};
        case Symbol::Dots:
            return {{{1, 6, 3, 3}, {6, 6, 3, 3}, {11, 6, 3, 3}}, {}};
        case Symbol::Tick:
            return {{}, QPolygonF({{1, 8}, {3, 6}, {6, 9}, {13, 2}, {15, 4}, {6, 13}})};
    }
    return {};
}

class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : symbol_(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        paintSymbol(*painter, rect, symbol_, QGuiApplication::palette().color(group, QPalette::ButtonText));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, result.rect(), mode, state);
        return result;
    }
    QIconEngine* clone() const override { return new SymbolEngine(*this); }

private:
    Symbol symbol_;
};

}  // namespace

void paintSymbol(QPainter& painter, const QRect& rect, Symbol symbol, const QColor& ink) {
    const double unit = static_cast<double>(std::min(rect.width(), rect.height())) / kUnits;
    const auto [bars, polygon] = shapeOf(symbol);
    painter.save();
    painter.translate(rect.topLeft());
    for (const QRect& bar : bars) {
        const QPoint end(qRound((bar.right() + 1) * unit) - 1, qRound((bar.bottom() + 1) * unit) - 1);
        painter.fillRect(QRect(QPoint(qRound(bar.left() * unit), qRound(bar.top() * unit)), end), ink);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(unit, unit);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(polygon);
    painter.restore();
}

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

}  // namespace kelvo
