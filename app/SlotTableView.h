#pragma once

#include <QTableView>

namespace kelvo {

/// A table of slots that is high enough to show all its rows without scrolling. Its data source tells tables apart by
/// the dynamic property "tag", set in the interface file.
class SlotTableView : public QTableView {
public:
    explicit SlotTableView(QWidget* parent = nullptr);

    int tag() const;

    /// The selected row, -1 for none.
    int selectedRow() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

}  // namespace kelvo
