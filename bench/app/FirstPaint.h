#pragma once

#include <QApplication>
#include <QEvent>
#include <QObject>

#include "ProcessFigures.h"

namespace kelvo {

/// Records when the first widget of the application has been painted and flushed. Main thread.
class FirstPaint : public QObject {
public:
    FirstPaint() { qApp->installEventFilter(this); }

    /// The time by monotonicNow; 0 before the first paint.
    std::int64_t time() const { return time_; }

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object->isWidgetType()) {
            qApp->removeEventFilter(this);
            // Queued, so that the paint is flushed to the screen first.
            QMetaObject::invokeMethod(
                this, [this] { time_ = monotonicNow(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::int64_t time_ = 0;
};

}  // namespace kelvo
