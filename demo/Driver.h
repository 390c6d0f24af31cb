#pragma once

#include <QImage>
#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

class QAbstractButton;
class QFileDialog;
class QMessageBox;
class QTableView;

namespace kelvo {

/// Runs a list of steps in order on the main thread: waits until a step is ready, then does it. Also runs while modal
/// windows serve events.
class StepDriver {
public:
    struct Step {
        std::string name;
        std::function<bool()> ready;
        std::function<void()> act;
    };

    /// Called with the name of a step that is not ready in time. No step follows it.
    using Stuck = std::function<void(const std::string& name)>;

    StepDriver(std::vector<Step> steps, Stuck stuck, std::chrono::milliseconds patience = std::chrono::seconds(20));

    void start();
    bool finished() const { return next_ == steps_.size(); }

private:
    void poll();

    std::vector<Step> steps_;
    Stuck stuck_;
    std::chrono::milliseconds patience_;
    std::chrono::steady_clock::time_point since_;
    std::size_t next_ = 0;
    QTimer timer_;
};

/// The visible window of this type that was opened last; null if there is none.
QMessageBox* visibleMessageBox();
QFileDialog* visibleFileDialog();

/// The button with that text in the box, mnemonics aside; null if there is none.
QAbstractButton* buttonOf(const QMessageBox& box, const QString& text);

/// Sends a left click to the middle of a button or of a table's row.
void click(QAbstractButton& button);
void clickRow(QTableView& table, int row);

/// Puts the path into the chooser's name field and presses Return.
void enterPath(QFileDialog& dialog, const QString& path);

/// A picture of all visible windows, placed as on the screen.
QImage visibleWindows();

}  // namespace kelvo
