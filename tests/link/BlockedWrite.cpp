#include "BlockedWrite.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <future>
#include <string>
#include <utility>

#include "SleepingThread.h"
#include "UniqueFd.h"

namespace kelvo {
namespace {

void fill(const std::string& node) {
    const UniqueFd fd(::open(node.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const std::array<char, 1> byte{};
    while (::write(fd.get(), byte.data(), byte.size()) == 1) {
    }
}

}  // namespace

BlockedWrite::BlockedWrite(FakeBus& bus, int number, std::shared_ptr<HidDevice> device) {
    fill(bus.realNode(number));
    std::promise<pid_t> id;
    thread_ = std::thread([this, &id, device = std::move(device)] {
        id.set_value(gettid());
        result_ = device->setReport(Report{});
    });
    waitUntilThreadIsIn(SYS_write, id.get_future().get());
}

BlockedWrite::~BlockedWrite() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool BlockedWrite::result() {
    thread_.join();
    return result_;
}

}  // namespace kelvo
