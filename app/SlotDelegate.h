#pragma once

#include <QStyledItemDelegate>

namespace kelvo {

/// Draws a slot's label: figures all of one width, so that the numbers line up, and the names in a column of their own;
/// the number of every slot and all of an empty one subdued; at the foot of a row with a transfer a thin line, of which
/// as much as is acknowledged is strong; the selection of a table without the keyboard's focus
/// paler than that of one with it.
class SlotDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Space beside a label, in pixels.
    static constexpr int kLabelMargin = 10;

    /// The width in pixels that a label takes in the font with the margins at its sides.
    static int labelWidth(const QFontMetrics& metrics, const QString& label);

    /// The line's height in pixels, and that of the row's ground below it, which tells it from the next row.
    static constexpr int kLineHeight = 2;
    static constexpr int kLineMargin = 2;

    /// The opacity, from 1 down to 0, of the full line that a finished transfer leaves in this row for a moment.
    void setFinished(int row, double opacity);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintTransfer(QPainter& painter, const QRect& row, const QModelIndex& index, const QColor& ink) const;

    int finishedRow_ = -1;
    double finishedOpacity_ = 0.0;
};

}  // namespace kelvo
