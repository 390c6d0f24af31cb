#include "BlockedWrite.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <future>
#include <utility>

#include "SleepingThread.h"

namespace kelvo {

BlockedWrite::BlockedWrite(std::shared_ptr<HidDevice> device) {
    std::promise<pid_t> id;
    thread_ = std::thread([&id, device = std::move(device)] {
        id.set_value(gettid());
        while (device->setReport(Report{})) {
        }
    });
    waitUntilThreadIsIn(SYS_write, id.get_future().get());
}

BlockedWrite::~BlockedWrite() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BlockedWrite::waitForRefusal() {
    thread_.join();
}

}  // namespace kelvo
