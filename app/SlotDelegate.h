#pragma once

#include <QStyledItemDelegate>

namespace kelvo {

/// Draws a slot's label: figures all of one width, so that the numbers line up, and the names in a column of their own;
/// the number of every slot and all of an empty one subdued; the selection of a table without the keyboard's focus
/// paler than that of one with it.
class SlotDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Space beside a label, in pixels.
    static constexpr int kLabelMargin = 10;

    /// The width in pixels that a label takes in the font with the margins at its sides.
    static int labelWidth(const QFontMetrics& metrics, const QString& label);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace kelvo
