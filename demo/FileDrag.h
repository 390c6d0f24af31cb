#pragma once

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTableView>

namespace kelvo {

/// A drag of files from a file manager over a table. Each step returns whether the table accepts them.
class FileDrag {
public:
    FileDrag(QTableView& table, const QList<QUrl>& urls) : table_(table) { files_.setUrls(urls); }

    bool enter(int row) {
        QDragEnterEvent event(at(row), kActions, &files_, Qt::LeftButton, {});
        QCoreApplication::sendEvent(table_.viewport(), &event);
        return event.isAccepted();
    }
    bool moveTo(int row) {
        QDragMoveEvent event(at(row), kActions, &files_, Qt::LeftButton, {});
        QCoreApplication::sendEvent(table_.viewport(), &event);
        return event.isAccepted();
    }
    void leave() {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(table_.viewport(), &event);
    }
    /// Drops the files and runs what the table posts. The file manager prefers a move; returns the action that is
    /// reported to it.
    Qt::DropAction drop(int row) {
        QDropEvent event(at(row), kActions, &files_, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(table_.viewport(), &event);
        QCoreApplication::sendPostedEvents(&table_);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }

private:
    QPoint at(int row) const { return table_.visualRect(table_.model()->index(row, 0)).center(); }

    static constexpr Qt::DropActions kActions = Qt::CopyAction | Qt::MoveAction;
    QTableView& table_;
    QMimeData files_;
};

/// Drags the files onto the row and drops them. Returns whether they were accepted as a copy: after a move the file
/// manager would delete them.
inline bool drop(QTableView& table, int row, const QList<QUrl>& urls) {
    FileDrag drag(table, urls);
    return drag.enter(row) && drag.moveTo(row) && drag.drop(row) == Qt::CopyAction;
}

}  // namespace kelvo
