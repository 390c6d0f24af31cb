#include "SymbolIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>
#include <algorithm>

namespace kelvo {
namespace {

/// Symbols are laid out in a square of so many units.
constexpr int kUnits = 16;

struct Shape {
    QList<QRect> bars;
    QPolygonF tip;
};

/// An arrow down into a tray, a bin with its lid, and triangles.
Shape shapeOf(Symbol symbol) {
    if (symbol == Symbol::Import) {
        return {.bars = {{7, 1, 2, 6}, {2, 9, 2, 4}, {12, 9, 2, 4}, {2, 13, 12, 2}},
                .tip = QPolygonF({{4, 6}, {12, 6}, {8, 11}})};
    }
    if (symbol == Symbol::Up || symbol == Symbol::Down) {
        const int foot = symbol == Symbol::Up ? 11 : 5;
        return {.bars = {},
                .tip = QPolygonF({{3, static_cast<double>(foot)}, {13, static_cast<double>(foot)}, {8, 16.0 - foot}})};
    }
    return {.bars = {{6, 1, 4, 2}, {2, 3, 12, 2}, {3, 6, 2, 7}, {7, 6, 2, 6}, {11, 6, 2, 7}, {3, 13, 10, 2}},
            .tip = {}};
}

class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol) : symbol_(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double unit = static_cast<double>(std::min(rect.width(), rect.height())) / kUnits;
        const QColor ink = QGuiApplication::palette().color(
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
        const auto [bars, tip] = shapeOf(symbol_);
        painter->save();
        painter->translate(rect.topLeft());
        for (const QRect& bar : bars) {
            const QPoint end(qRound((bar.right() + 1) * unit) - 1, qRound((bar.bottom() + 1) * unit) - 1);
            painter->fillRect(QRect(QPoint(qRound(bar.left() * unit), qRound(bar.top() * unit)), end), ink);
        }
        painter->setRenderHint(QPainter::Antialiasing);
        painter->scale(unit, unit);
        painter->setPen(Qt::NoPen);
        painter->setBrush(ink);
        painter->drawPolygon(tip);
        painter->restore();
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

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

}  // namespace kelvo
