#include "MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>
#include <mutex>
#include <utility>
#include <vector>

namespace kelvo {
namespace {

/// Holds the work behind a lock of our own, so that only an empty event crosses threads inside the toolkit.
class Receiver : public QObject {
public:
    Receiver() { moveToThread(QCoreApplication::instance()->thread()); }

    void add(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(work));
        if (waiting_.size() == 1) {
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        }
    }

protected:
    bool event(QEvent* event) override {
        std::vector<std::function<void()>> ready;
        {
            // Taken before the first look at the event, which another thread has made under it.
            const std::lock_guard lock(mutex_);
            if (event->type() != QEvent::User) {
                return QObject::event(event);
            }
            ready.swap(waiting_);
        }
        for (const auto& work : ready) {
            work();
        }
        return true;
    }

private:
    // One that was there before the threads: who first waits for this object may not be who made it.
    static inline std::mutex mutex_;
    std::vector<std::function<void()>> waiting_;
};

}  // namespace

void dispatchMain(std::function<void()> work) {
    // Never destroyed: a thread may still post while the process ends.
    static auto* const receiver = new Receiver;
    receiver->add(std::move(work));
}

}  // namespace kelvo
