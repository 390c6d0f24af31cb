#pragma once

#include <QWidget>
#include <functional>

namespace kelvo {

/// A top-level window whose close button does what it is told instead of closing the window. A desktop that minimises
/// or maximises it though its flags do not offer that is undone at once. Assistive tools meet it as a window or, when
/// it has the flags of one, as a dialog.
class CloseActionWindow : public QWidget {
public:
    CloseActionWindow();

    /// Called on the main thread each time the user or the desktop asks the window to close.
    void setCloseAction(std::function<void()> action) { action_ = std::move(action); }

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    std::function<void()> action_;
};

}  // namespace kelvo
