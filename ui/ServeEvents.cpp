#include "ServeEvents.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <vector>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

std::vector<QEventLoop*> running;

/// Serves events until the window has received an event of the type. An event received before wait() counts.
class EventWatcher : public QObject {
public:
    EventWatcher(QWidget& window, QEvent::Type type) : type_(type) { window.installEventFilter(this); }

    void wait(std::chrono::milliseconds patience) {
        QTimer::singleShot(patience, &loop_, &QEventLoop::quit);
        loop_.exec(QEventLoop::ExcludeUserInputEvents);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == type_) {
            // Queued, so that a paint is flushed to the screen first.
            QMetaObject::invokeMethod(&loop_, &QEventLoop::quit, Qt::QueuedConnection);
        }
        return false;
    }

private:
    QEvent::Type type_;
    QEventLoop loop_;
};

}  // namespace

void runModalForWindow(QWidget& window) {
    window.setWindowModality(Qt::ApplicationModal);
    window.show();
    QEventLoop loop;
    running.push_back(&loop);
    loop.exec();
    running.pop_back();
}

void stopModal() {
    if (!running.empty()) {
        running.back()->quit();
    }
}

void showUntilPainted(QWidget& window) {
    EventWatcher painted(window, QEvent::Paint);
    window.show();
    painted.wait(1s);
}

void serveUntilActive(QWidget& window) {
    if (!window.isActiveWindow()) {
        EventWatcher(window, QEvent::WindowActivate).wait(200ms);
    }
}

}  // namespace kelvo
