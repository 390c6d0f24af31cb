#pragma once

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "AppClassPoint.h"
#include "ScriptedHid.h"

namespace kelvo::test {

/// The application while it lives: keeps what it is given. Thread-safe.
class RecordingApp : public AppClass {
public:
    using Frame = std::array<std::uint8_t, kFrameBufferSize>;

    RecordingApp() { AppClassPoint = this; }
    ~RecordingApp() override { AppClassPoint = nullptr; }
    RecordingApp(const RecordingApp&) = delete;
    RecordingApp& operator=(const RecordingApp&) = delete;

    void CMD_CallBack(FrameView frame) override {
        const std::lock_guard lock(mutex_);
        std::copy(frame.begin(), frame.end(), frames_.emplace_back().begin());
        changed_.notify_all();
    }
    void exitApp() override {
        const std::lock_guard lock(mutex_);
        ++exits_;
        changed_.notify_all();
    }

    [[nodiscard]] std::vector<Frame> frames() const {
        const std::lock_guard lock(mutex_);
        return frames_;
    }
    /// The command bytes of the frames, in order of arrival.
    [[nodiscard]] std::vector<int> commands() const {
        std::vector<int> commands;
        for (const Frame& frame : frames()) {
            commands.push_back(frame[4]);
        }
        return commands;
    }
    [[nodiscard]] int exits() const {
        const std::lock_guard lock(mutex_);
        return exits_;
    }
    [[nodiscard]] bool waitForFrames(std::size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kPatience, [&] { return frames_.size() >= count; });
    }

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Frame> frames_;
    int exits_ = 0;
};

}  // namespace kelvo::test
