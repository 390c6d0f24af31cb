#pragma once

#include <QHash>
#include <QTableView>
#include <QUrl>
#include <QVariantAnimation>
#include <functional>
#include <stop_token>
#include <utility>

class QMimeData;

namespace kelvo {

class SlotDelegate;

/// A table of slots that is large enough for all its rows. The dynamic property "tag", set in the interface file,
/// identifies it to the data source. The user can move the selection but not clear it; Home and End move it to the
/// first and the last slot.
class SlotTableView : public QTableView {
public:
    explicit SlotTableView(QWidget* parent = nullptr);

    int tag() const;

    /// The selected row, -1 for none.
    int selectedRow() const;

    /// Runs when the user presses these keys here.
    void setKeyAction(const QKeySequence& keys, const std::function<void()>& action);

    /// Runs after local files of this type have been dropped on a row or pasted into the selected row, and the row has
    /// been selected. The files are in natural order; others among them are ignored. Nothing can be dropped while a
    /// modal window is open.
    void setFileAction(const QString& fileType, std::function<void(int row, const QList<QUrl>& files)> action);

    /// Receives the accepted files, at most one for each row.
    using Verdict = std::function<void(const QList<QUrl>& accepted)>;
    /// Begins to judge files and calls back later, unless it is stopped.
    using Judge = std::function<std::stop_source(const QList<QUrl>& files, const Verdict& verdict)>;
    /// Judges files while they are dragged here. Until the verdict comes, files count as accepted by their names.
    void setFileJudge(Judge judge) { judge_ = std::move(judge); }

    /// A dimmed text in the middle of the rows while there are no labels; empty for none.
    void setNotice(const QString& notice);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Shows a full line in the row, which fades within 0.6 s, or disappears after that time if the desktop has
    /// animations switched off.
    void showFinished(int row);

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
    /// The files for this table, by their names.
    QList<QUrl> filesOf(const QMimeData& mime) const;
    void paste();
    bool acceptsDrop() const;
    /// How many of the dragged files fit from this row on.
    int countFrom(int row) const;
    void forgetDrag();
    void markDropRow(int row);
    void paintDropFrame(QPainter& painter) const;
    void fitRowsToFont();

    SlotDelegate* delegate_;
    QHash<int, QVariantAnimation*> fading_;  // by row
    QString fileType_;
    std::function<void(int, const QList<QUrl>&)> fileAction_;
    Judge judge_;
    std::stop_source judging_{std::nostopstate};
    qsizetype dragged_ = 0;  // files that are being dragged here, of any kind
    QList<QUrl> dropFiles_;  // of these, the accepted ones as far as they have been judged
    QString notice_;
    int dropRow_ = -1;  // under the files that are being dragged
};

}  // namespace kelvo
