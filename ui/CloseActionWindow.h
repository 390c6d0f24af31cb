#pragma once

#include <QWidget>
#include <functional>

namespace kelvo {

/// A top-level window whose close button does what it is told instead of closing the window.
class CloseActionWindow : public QWidget {
public:
    using QWidget::QWidget;

    /// Called on the main thread each time the user or the desktop asks the window to close.
    void setCloseAction(std::function<void()> action) { action_ = std::move(action); }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::function<void()> action_;
};

}  // namespace kelvo
