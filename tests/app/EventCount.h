#pragma once

#include <QEvent>
#include <QObject>
#include <utility>

namespace kelvo::test {

/// How often something has got an event of a type.
class EventCount : public QObject {
public:
    EventCount(QObject& watched, QEvent::Type type) : type_(type) { watched.installEventFilter(this); }
    /// Since it was asked last.
    int take() { return std::exchange(times_, 0); }

    bool eventFilter(QObject*, QEvent* event) override {
        times_ += event->type() == type_ ? 1 : 0;
        return false;
    }

private:
    const QEvent::Type type_;
    int times_ = 0;
};

}  // namespace kelvo::test
