#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <map>
#include <stop_token>
#include <thread>

namespace kelvo {

/// Threads for reads that may hang: one for each folder at a time, so that a folder that does not answer delays no
/// other. Main thread.
class FolderReaders {
public:
    /// Runs on the main thread after a read.
    using Result = std::function<void()>;
    /// Runs on the folder's thread; its result is dropped once `stop` is requested.
    using Read = std::function<Result(const std::stop_token& stop)>;

    FolderReaders() = default;
    FolderReaders(const FolderReaders&) = delete;
    FolderReaders& operator=(const FolderReaders&) = delete;
    /// Requests all reads to stop and waits for the threads. Only tests get here: the program ends with them running.
    ~FolderReaders();

    /// Starts the read when earlier ones of the folder have ended. Returns the source of its stop token.
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
