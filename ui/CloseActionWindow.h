#pragma once

#include <QWidget>
#include <functional>

namespace kelvo {

/// A top-level window whose close button runs an action instead of closing the window. If the desktop minimises or
/// maximises it although its flags do not allow that, the state is reset at once. Its accessible role is a dialog or a
/// window, according to its flags.
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
