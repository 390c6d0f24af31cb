#pragma once

#include <memory>
#include <thread>

#include "HidManager.h"

namespace kelvo {

/// Reports that are written until one is refused. Nothing reads from the cable, so a write is soon one that
/// the kernel does not let return.
class BlockedWrite {
public:
    /// Returns when a write is blocked in the kernel. Keeps `device` until it has returned.
    explicit BlockedWrite(std::shared_ptr<HidDevice> device);
    ~BlockedWrite();

    /// Waits until a write has been refused.
    void waitForRefusal();

private:
    std::thread thread_;
};

}  // namespace kelvo
