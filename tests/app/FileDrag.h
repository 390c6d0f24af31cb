#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>

#include "SlotTableView.h"

namespace kelvo::test {

/// What a file manager does that carries files over a table. Each step tells whether it hears that they are welcome.
class FileDrag {
public:
    FileDrag(SlotTableView& table, const QList<QUrl>& urls) : table_(table) { files_.setUrls(urls); }

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
    /// Lets go of the files, and lets the table do what it does then.
    bool drop(int row) {
        QDropEvent event(at(row), kActions, &files_, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(table_.viewport(), &event);
        // A move would make the file manager delete the file.
        EXPECT_TRUE(!event.isAccepted() || event.dropAction() == Qt::CopyAction);
        QCoreApplication::sendPostedEvents(&table_);
        return event.isAccepted();
    }

private:
    QPoint at(int row) const { return table_.visualRect(table_.model()->index(row, 0)).center(); }

    static constexpr Qt::DropActions kActions = Qt::CopyAction | Qt::MoveAction;
    SlotTableView& table_;
    QMimeData files_;
};

/// A whole drag onto the row; whether the files were taken.
inline bool drop(SlotTableView& table, int row, const QList<QUrl>& urls) {
    FileDrag drag(table, urls);
    if (!drag.enter(row)) {
        return false;
    }
    const bool isWelcome = drag.moveTo(row);
    return drag.drop(row) && isWelcome;
}

}  // namespace kelvo::test
