#include "SlotDelegate.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <numeric>
#include <optional>

#include "SlotLabels.h"
#include "SlotTableModel.h"
#include "SymbolIcon.h"

namespace kelvo {
namespace {

constexpr QLatin1StringView kFigures("0123456789");
const QString kWidestNumber = QStringLiteral("00.");
/// The share of the text colour in dimmed text, on a plain and on a selected row, and of the selection's colour in a
/// table without focus.
constexpr float kSubdued = 0.6F;
constexpr float kSubduedSelected = 0.8F;
constexpr float kPale = 0.3F;
/// The opacity of the part of a line that is still to grow.
constexpr double kTrough = 0.25;
/// The dashes of a broken line and the gaps between them, in pixels.
constexpr int kDash = 12;

std::optional<Symbol> markOf(SlotState state) {
    switch (state) {
        case SlotState::Waiting:
            return Symbol::Dots;
        case SlotState::Running:
            return Symbol::Play;
        case SlotState::NotAnswering:
            return Symbol::Pause;
        case SlotState::Sent:
            return Symbol::Tick;
        case SlotState::Idle:
        case SlotState::CutOff:
            break;
    }
    return std::nullopt;
}

SlotState stateOf(const QModelIndex& index) {
    return index.data(SlotTableModel::kStateRole).value<SlotState>();
}

/// `share` of one colour and the rest of the other.
QColor mixed(const QColor& one, const QColor& other, float share) {
    const auto mix = [share](float a, float b) { return share * a + (1 - share) * b; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

int figureWidth(const QFontMetrics& metrics) {
    int widest = 0;
    for (const QChar figure : kFigures) {
        widest = std::max(widest, metrics.horizontalAdvance(figure));
    }
    return widest;
}

/// The width of a character in a number: all figures are as wide as the widest one.
int numberAdvance(const QFontMetrics& metrics, QChar character) {
    return character.isDigit() ? figureWidth(metrics) : metrics.horizontalAdvance(character);
}

int numberWidth(const QFontMetrics& metrics, const QString& number) {
    return std::accumulate(number.begin(), number.end(), 0, [&metrics](int width, QChar character) {
        return width + numberAdvance(metrics, character);
    });
}

/// From a label's left edge to its name: the same for all names, though a cleared slot's number has no dot.
int nameOffset(const QFontMetrics& metrics, const QString& number) {
    return std::max(numberWidth(metrics, number), numberWidth(metrics, kWidestNumber)) + metrics.averageCharWidth();
}

}  // namespace

int SlotDelegate::labelWidth(const QFontMetrics& metrics, const QString& label) {
    const SlotLabel pieces = splitLabel(label);
    return nameOffset(metrics, pieces.number) + metrics.horizontalAdvance(pieces.name) + 2 * kLabelMargin;
}

void SlotDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const SlotLabel label = splitLabel(index.data().toString());
    item.text.clear();
    QPalette& palette = item.palette;
    const QColor strong = palette.color(QPalette::Highlight);
    const bool isPale = item.widget != nullptr && !item.widget->hasFocus();
    if (isPale) {
        palette.setColor(QPalette::Highlight,
                         mixed(palette.color(QPalette::Highlight), palette.color(QPalette::Base), kPale));
        palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
    }
    const QStyle& style = item.widget != nullptr ? *item.widget->style() : *QApplication::style();
    style.drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const bool selected = item.state.testFlag(QStyle::State_Selected);
    const QColor ink = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor subdued = selected ? mixed(ink, palette.color(QPalette::Highlight), kSubduedSelected)
                                    : mixed(ink, palette.color(QPalette::Base), kSubdued);
    const QFontMetrics& metrics = item.fontMetrics;
    const int markSize = metrics.ascent();
    const QRect mark(item.rect.right() + 1 - kLabelMargin - markSize,
                     item.rect.top() + (item.rect.height() - markSize) / 2, markSize, markSize);
    const int left = item.rect.left() + kLabelMargin;
    const int name = left + nameOffset(metrics, label.number);
    const int baseline = item.rect.top() + (item.rect.height() - metrics.height()) / 2 + metrics.ascent();
    painter->save();
    painter->setFont(item.font);
    painter->setPen(subdued);
    int x = left;
    for (const QChar character : label.number) {
        painter->drawText(x, baseline, character);
        x += numberAdvance(metrics, character);
    }
    painter->setPen(label.isEmpty ? subdued : ink);
    const auto symbol = markOf(stateOf(index));
    const int right = symbol ? mark.left() - kLabelMargin : mark.right();
    painter->drawText(name, baseline, metrics.elidedText(label.name, Qt::ElideRight, right - name));
    if (symbol) {
        paintSymbol(*painter, mark, *symbol, subdued);
    }
    paintLine(*painter, item.rect, index, selected && !isPale ? ink : strong, subdued);
    painter->restore();
}

void SlotDelegate::setFinished(int row, double opacity) {
    finished_[row] = opacity;
}

void SlotDelegate::paintLine(QPainter& painter, const QRect& row, const QModelIndex& index, const QColor& strong,
                             const QColor& subdued) const {
    const QRect line(row.left(), row.bottom() + 1 - kLineHeight - kLineMargin, row.width(), kLineHeight);
    const SlotState state = stateOf(index);
    if (state == SlotState::Running || state == SlotState::NotAnswering) {
        const double share = index.data(SlotTableModel::kShareRole).toDouble();
        painter.setOpacity(kTrough);
        painter.fillRect(line, strong);
        painter.setOpacity(1);
        painter.fillRect(QRectF(line.left(), line.top(), share * line.width(), line.height()), strong);
    } else if (state == SlotState::CutOff) {
        for (int x = line.left(); x <= line.right(); x += 2 * kDash) {
            painter.fillRect(QRect(x, line.top(), kDash, line.height()) & line, subdued);
        }
    } else if (const double opacity = finished_.value(index.row()); opacity > 0) {
        painter.setOpacity(opacity);
        painter.fillRect(line, strong);
        painter.setOpacity(1);
    }
}

}  // namespace kelvo
