#pragma once

#include <QHash>
#include <QStyledItemDelegate>

namespace kelvo {

/// Draws a slot: its label, its state, and a paler selection in a table without the keyboard's focus.
///
/// All figures have one width, so that numbers and names line up in columns. Numbers, and everything in an empty slot,
/// are dimmed. Each state has a mark at the end of the row: three dots for a pending import, a triangle for a running
/// transfer, two bars for one without an answer, a tick for a complete one. A thin line at the bottom of the row grows
/// with the transfer; a transfer that was cut off leaves a broken line.
class SlotDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Space beside a label, in pixels.
    static constexpr int kLabelMargin = 10;

    /// The width of a label in pixels, with the margins at its sides.
    static int labelWidth(const QFontMetrics& metrics, const QString& label);

    /// The height of the line in pixels, and of the background below it, which separates it from the next row.
    static constexpr int kLineHeight = 2;
    static constexpr int kLineMargin = 2;

    /// The opacity, from 1 down to 0, of the full line that a complete transfer leaves in the row for a moment.
    void setFinished(int row, double opacity);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintLine(QPainter& painter, const QRect& row, const QModelIndex& index, const QColor& strong,
                   const QColor& subdued) const;

    QHash<int, double> finished_;  // opacities by row
};

}  // namespace kelvo
