#pragma once

#include <QEvent>
#include <QObject>
#include <functional>
#include <utility>

namespace kelvo::test {

/// Calls a function before an object receives an event of a type.
class OnEvent : public QObject {
public:
    OnEvent(QObject& watched, QEvent::Type type, std::function<void()> act) : type_(type), act_(std::move(act)) {
        watched.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == type_) {
            act_();
        }
        return false;
    }

private:
    const QEvent::Type type_;
    const std::function<void()> act_;
};

}  // namespace kelvo::test
