#include "CloseActionWindow.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCloseEvent>

namespace kelvo {
namespace {

class WindowInterface : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override {
        return widget()->windowType() == Qt::Dialog ? QAccessible::Dialog : QAccessible::Window;
    }
};

QAccessibleInterface* makeWindowInterface(const QString&, QObject* object) {
    auto* const window = dynamic_cast<CloseActionWindow*>(object);
    return window != nullptr ? new WindowInterface(window) : nullptr;
}

}  // namespace

CloseActionWindow::CloseActionWindow() {
    QAccessible::installFactory(makeWindowInterface);
}

void CloseActionWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    Qt::WindowStates unoffered;
    unoffered.setFlag(Qt::WindowMinimized, !(windowFlags() & Qt::WindowMinimizeButtonHint));
    unoffered.setFlag(Qt::WindowMaximized, !(windowFlags() & Qt::WindowMaximizeButtonHint));
    if (event->type() == QEvent::WindowStateChange) {
        setWindowState(windowState() & ~unoffered);
    }
}

void CloseActionWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (action_) {
        action_();
    }
}

}  // namespace kelvo
