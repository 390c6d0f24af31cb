#pragma once

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTableView>

namespace kelvo {

/// What a file manager does while it drags files over a table. Each step returns whether the table accepts them.
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
    /// Lets go of the files, and lets the table do what it does then. Tells what the file manager hears was done with
    /// them, having wanted a move.
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

/// A whole drag onto the row; whether the files were taken. For their sender that must be a copy, or it deletes them.
inline bool drop(QTableView& table, int row, const QList<QUrl>& urls) {
    FileDrag drag(table, urls);
    return drag.enter(row) && drag.moveTo(row) && drag.drop(row) == Qt::CopyAction;
}

}  // namespace kelvo
