#pragma once

#include <QByteArray>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace kelvo {

/// A line on the terminal that says how far a long work has got, on standard error, after a second. It is not there
/// where standard error is no terminal. What goes to a terminal otherwise is printed between hide() and the next
/// begin().
class Progress {
public:
    explicit Progress(qsizetype files);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// The work on the next file begins.
    void begin(const QByteArray& file);

    /// Takes the line away.
    void hide();

private:
    void show(const std::stop_token& stop);

    const qsizetype files_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    QByteArray file_;  ///< empty while the line is hidden
    qsizetype number_ = 0;
    bool isShown_ = false;
    std::jthread thread_;
};

}  // namespace kelvo
