#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <map>
#include <stop_token>
#include <thread>

namespace kelvo {

/// Threads for reads that may hang: one for each folder at a time, so that a folder that does not answer holds up
/// nothing else. Main thread.
class FolderReaders {
public:
    /// Runs on the main thread with what was read.
    using Result = std::function<void()>;
    /// Runs on the folder's thread; its result is dropped once `stop` is requested.
    using Read = std::function<Result(const std::stop_token& stop)>;

    FolderReaders() = default;
    FolderReaders(const FolderReaders&) = delete;
    FolderReaders& operator=(const FolderReaders&) = delete;
    /// Requests all reads to stop and waits for the threads. The program itself never does: it ends with them running.
    ~FolderReaders();

    /// Starts the read as soon as earlier ones of the folder are over. The source of its stop token.
    std::stop_source start(const QString& folder, Read read);

private:
    struct Order {
        std::stop_source stop;
        Read read;
    };
    void runNext(const QString& folder);
    void isOver(const QString& folder, const std::stop_token& stop, const Result& result);

    QObject context_;
    std::map<QString, std::deque<Order>> orders_;  // of which the first is running
    std::map<QString, std::jthread> threads_;
};

}  // namespace kelvo
