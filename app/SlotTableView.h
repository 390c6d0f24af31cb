#pragma once

#include <QTableView>
#include <QUrl>
#include <QVariantAnimation>
#include <functional>

namespace kelvo {

class SlotDelegate;

/// A table of slots, of the size that shows all its rows. Its data source tells tables apart by the dynamic property
/// "tag", set in the interface file. The user can move the selection, not take it away; Home and End move it to the
/// first and the last slot.
class SlotTableView : public QTableView {
public:
    explicit SlotTableView(QWidget* parent = nullptr);

    int tag() const;

    /// The selected row, -1 for none.
    int selectedRow() const;

    /// Runs when the user presses `key` here.
    void setKeyAction(Qt::Key key, const std::function<void()>& action);

    /// Runs after local files of this type that `isGood` takes have been dropped on a row and the row has been
    /// selected: with them in natural order, those that would not fit into this row and the ones below left out. What
    /// else is among them is passed over, a folder too; nothing but that is no drop, and nothing is one while a modal
    /// window is open. `isGood` is asked when a drag comes over the table, not for its moves there, once for each file,
    /// and for no more of them than fill the table.
    void setDropAction(const QString& fileType, std::function<bool(const QUrl&)> isGood,
                       std::function<void(const QList<QUrl>&)> action);

    /// What is being waited for, drawn subdued in the middle of the rows while there are no labels; empty for nothing.
    void setNotice(const QString& notice);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// A transfer that has just been finished leaves a full line in its row that fades away within 0.6 s, or stands and
    /// is gone then where the desktop wants no animations.
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles = {}) override;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event = nullptr) const override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QList<QUrl> welcomeFiles(const QDropEvent& event) const;
    bool isWelcome() const;
    QList<QUrl> filesFrom(int row) const;
    void markDropRow(int row);
    void fadeLine(int row);
    void fitRowsToFont();

    SlotDelegate* delegate_;
    QVariantAnimation fading_{this};
    int fadingRow_ = -1;
    QString dropFileType_;
    std::function<bool(const QUrl&)> isGoodDrop_;
    std::function<void(const QList<QUrl>&)> dropAction_;
    QList<QUrl> dropFiles_;  // that are being dragged here and are welcome
    QString notice_;
    int dropRow_ = -1;  // under the files that are being dragged
};

}  // namespace kelvo
