#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>

#include "HidrawManager.h"

namespace kelvo::test {

/// A HidrawManager that serves the real cable on a separate thread, and counts what it reports. Stops and ends with
/// the object.
class CableLink {
public:
    struct Counts {
        std::size_t arrivals = 0;
        std::size_t removals = 0;
        std::size_t reports = 0;
    };

    CableLink();
    ~CableLink();
    CableLink(const CableLink&) = delete;
    CableLink& operator=(const CableLink&) = delete;

    /// Waits for the n-th of each, at most 20 s; false when it did not come.
    [[nodiscard]] bool waitForArrival(std::size_t n);
    [[nodiscard]] bool waitForRemoval(std::size_t n);
    [[nodiscard]] bool waitForReports(std::size_t n);

    [[nodiscard]] Counts counts();
    /// The device that arrived last; null once it was removed.
    [[nodiscard]] std::shared_ptr<HidDevice> device();

private:
    [[nodiscard]] bool waitFor(std::size_t Counts::*what, std::size_t n);

    std::mutex mutex_;
    std::condition_variable changed_;
    Counts counts_;
    std::shared_ptr<HidDevice> device_;
    HidrawManager manager_;
    std::thread thread_;
};

}  // namespace kelvo::test
