#pragma once

#include <QByteArray>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace kelvo {

/// A progress line on standard error that appears after a second, if standard error is a terminal. Print other output
/// between hide() and the next begin().
class Progress {
public:
    explicit Progress(qsizetype files);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Starts the next file.
    void begin(const QByteArray& file);

    /// Removes the line.
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
