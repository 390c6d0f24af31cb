#pragma once

#include <memory>
#include <thread>

#include "FakeBus.h"
#include "HidManager.h"

namespace kelvo {

/// A setReport that the kernel does not let return: its node is full and nobody takes anything out of the cable.
class BlockedWrite {
public:
    /// Returns when the write is blocked in the kernel. Keeps `device` until the write has returned.
    BlockedWrite(FakeBus& bus, int number, std::shared_ptr<HidDevice> device);
    ~BlockedWrite();

    /// Waits for the write's end and returns what setReport said.
    bool result();

private:
    bool result_ = true;
    std::thread thread_;
};

}  // namespace kelvo
