#pragma once

#include <QTableView>
#include <functional>

class QUrl;

namespace kelvo {

/// A table of slots that is high enough to show all its rows without scrolling. Its data source tells tables apart by
/// the dynamic property "tag", set in the interface file. Whoever reaches it by the keyboard finds a row selected.
class SlotTableView : public QTableView {
public:
    explicit SlotTableView(QWidget* parent = nullptr);

    int tag() const;

    /// The selected row, -1 for none.
    int selectedRow() const;

    /// Runs when the user presses `key` here. Without a selection the row of the focus frame is selected first.
    void setKeyAction(Qt::Key key, const std::function<void()>& action);

    /// Runs after a local file of this type has been dropped on a row and the row has been selected; anything else is
    /// no drop, and nothing is while a modal window is open.
    void setDropAction(const QString& fileType, std::function<void(const QUrl&)> action);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool isWelcome(const QDropEvent& event) const;
    void markDropRow(int row);
    void selectCurrentRow();

    QString dropFileType_;
    std::function<void(const QUrl&)> dropAction_;
    int dropRow_ = -1;  // under a file that is being dragged
};

}  // namespace kelvo
