#include "FirstPaint.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

namespace kelvo {
namespace {

constexpr int kPatienceMilliseconds = 1000;

/// Ends the loop behind the first paint event of the window it watches.
class PaintWatcher : public QObject {
public:
    explicit PaintWatcher(QEventLoop& loop) : loop_(loop) {}

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            // Queued, so that the paint is flushed to the screen first.
            QMetaObject::invokeMethod(&loop_, &QEventLoop::quit, Qt::QueuedConnection);
        }
        return false;
    }

private:
    QEventLoop& loop_;
};

}  // namespace

void showUntilPainted(QWidget& window) {
    QEventLoop loop;
    PaintWatcher watcher(loop);
    window.installEventFilter(&watcher);
    window.show();
    QTimer::singleShot(kPatienceMilliseconds, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    window.removeEventFilter(&watcher);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace kelvo
