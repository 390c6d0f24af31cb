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

/// Goes through a list of steps on the main thread: waits until a step is ready, does it, continues with the next.
/// Works through modal windows, since it lives on the events that they serve.
class StepDriver {
public:
    struct Step {
        std::string name;
        std::function<bool()> ready;
        std::function<void()> act;
    };

    /// `stuck` is called with a step's name when it does not get ready in time; no step follows it.
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

/// The visible window of its kind that was opened last, null if there is none.
QMessageBox* visibleMessageBox();
QFileDialog* visibleFileDialog();

/// The button with that text in the box, mnemonics aside; null if there is none.
QAbstractButton* buttonOf(const QMessageBox& box, const QString& text);

/// A left click in the middle of a button, and on a row of a table.
void click(QAbstractButton& button);
void clickRow(QTableView& table, int row);

/// Puts the path into the chooser's name field and presses Return.
void enterPath(QFileDialog& dialog, const QString& path);

/// All visible windows as they lie on the screen.
QImage visibleWindows();

}  // namespace kelvo
