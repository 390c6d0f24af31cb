#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <utility>

namespace kelvo {

class CloseActionWindow;
class SBProgressBar;

/// The modal window that shows how much of the device's data has been read. It knows no device: it polls its bar twice
/// a second, shows the value in its label and ends the modal run when the value is exactly 1.0. A full bar and 100% are
/// painted before that.
///
/// Main thread, except for the bar's floatValue, which any thread may set.
class LoadDataWindowController {
public:
    using ExitProcess = std::function<void(int status)>;

    /// A placeholder without an interface: no window, no bar, no timer.
    LoadDataWindowController();

    /// Loads the interface file and starts polling as soon as events are served. `exitProcess` is called with 0 when
    /// the window's close button is pressed.
    explicit LoadDataWindowController(ExitProcess exitProcess);

    ~LoadDataWindowController();
    LoadDataWindowController(const LoadDataWindowController&) = delete;
    LoadDataWindowController& operator=(const LoadDataWindowController&) = delete;

    /// Each null on a placeholder. Bar and label are the window's; the timer, stopped at the end, is kept.
    QWidget* window() const;
    SBProgressBar* progressBar() const { return progressBar_; }
    void setProgressBar(SBProgressBar* bar) { progressBar_ = bar; }
    QLabel* loadDataLabel() const { return loadDataLabel_; }
    void setLoadDataLabel(QLabel* label) { loadDataLabel_ = label; }
    QTimer* timer() const { return timer_.get(); }
    void setTimer(std::unique_ptr<QTimer> timer) { timer_ = std::move(timer); }

    /// Ends the process at once with status 0.
    void exit();

private:
    void windowDidLoad();
    void tick();

    ExitProcess exitProcess_;
    std::unique_ptr<CloseActionWindow> window_;
    SBProgressBar* progressBar_ = nullptr;
    QPointer<QLabel> loadDataLabel_;
    std::unique_ptr<QTimer> timer_;
};

}  // namespace kelvo
