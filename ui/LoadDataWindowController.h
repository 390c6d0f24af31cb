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

/// The modal window that shows how much of the device's data has been read. It polls its bar twice a second, shows the
/// value in its label and ends the modal run when the value is exactly 1.0, after painting the full bar and 100%. It
/// does not know the device.
///
/// Main thread, except for the bar's floatValue, which any thread may set.
class LoadDataWindowController {
public:
    using ExitProcess = std::function<void(int status)>;

    /// A placeholder: no window, no bar, no label, no timer.
    LoadDataWindowController();

    /// Loads the interface file. Polling starts as soon as events are served. `exitProcess` is called with 0 when the
    /// window's close button is pressed.
    explicit LoadDataWindowController(ExitProcess exitProcess);

    ~LoadDataWindowController();
    LoadDataWindowController(const LoadDataWindowController&) = delete;
    LoadDataWindowController& operator=(const LoadDataWindowController&) = delete;

    /// All null on a placeholder. The window owns bar and label. The timer stays after it has been stopped.
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
