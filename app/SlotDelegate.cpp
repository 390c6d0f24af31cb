#include "SlotDelegate.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>
#include <numeric>

#include "SlotLabel.h"
#include "SlotTableModel.h"

namespace kelvo {
namespace {

constexpr QLatin1StringView kFigures("0123456789");
const QString kWidestNumber = QStringLiteral("00.");
/// How much of its ink what is subdued keeps, on a plain and on a selected row, and of its colour a selection without
/// focus.
constexpr float kSubdued = 0.6F;
constexpr float kSubduedSelected = 0.8F;
constexpr float kPale = 0.3F;
/// The opacity of what a line still has to grow.
constexpr double kTrough = 0.25;

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

/// The width of a number's character: that of the widest figure for all figures.
int numberAdvance(const QFontMetrics& metrics, QChar character) {
    return character.isDigit() ? figureWidth(metrics) : metrics.horizontalAdvance(character);
}

int numberWidth(const QFontMetrics& metrics, const QString& number) {
    return std::accumulate(number.begin(), number.end(), 0, [&metrics](int width, QChar character) {
        return width + numberAdvance(metrics, character);
    });
}

/// From a label's left edge to its name: one place for all names, though a cleared slot's number has no dot.
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
    const int right = item.rect.right() - kLabelMargin;
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
    painter->drawText(name, baseline, metrics.elidedText(label.name, Qt::ElideRight, right - name));
    painter->restore();
    paintTransfer(*painter, item.rect, index, selected && !isPale ? ink : strong);
}

void SlotDelegate::setFinished(int row, double opacity) {
    finishedRow_ = row;
    finishedOpacity_ = opacity;
}

void SlotDelegate::paintTransfer(QPainter& painter, const QRect& row, const QModelIndex& index,
                                 const QColor& ink) const {
    const QVariant share = index.data(SlotTableModel::kTransferRole);
    const QRect line(row.left(), row.bottom() + 1 - kLineHeight - kLineMargin, row.width(), kLineHeight);
    painter.save();
    if (share.isValid()) {
        painter.setOpacity(kTrough);
        painter.fillRect(line, ink);
        painter.setOpacity(1);
        painter.fillRect(QRectF(line.left(), line.top(), share.toDouble() * line.width(), line.height()), ink);
    } else if (index.row() == finishedRow_) {
        painter.setOpacity(finishedOpacity_);
        painter.fillRect(line, ink);
    }
    painter.restore();
}

}  // namespace kelvo
