#pragma once

#include <QHash>
#include <QStyledItemDelegate>

namespace kelvo {

/// Draws a slot: its label, its state, and a paler selection in a table without the keyboard's focus.
///
/// Figures are all of one width, so that the numbers line up, and the names stand in a column of their own. The number
/// of every slot and all of an empty one are subdued. Each state has its mark at the row's end: three dots for one that
/// waits, a triangle for a running transfer, two bars for one without an answer, a tick for a finished one. At the foot
/// of a row, a thin line grows with the transfer; a transfer that was cut off leaves a broken line.
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

    /// The opacity, from 1 down to 0, of the full line that a finished transfer leaves in the row for a moment.
    void setFinished(int row, double opacity);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintLine(QPainter& painter, const QRect& row, const QModelIndex& index, const QColor& strong,
                   const QColor& subdued) const;

    QHash<int, double> finished_;  // opacities by row
};

}  // namespace kelvo
