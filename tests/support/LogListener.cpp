#include "LogListener.h"

#include <mutex>
#include <utility>

#include "NSLog.h"

namespace kelvo {
namespace {

std::mutex listenerMutex;
test::LogListener::Listener currentListener;

}  // namespace

// Takes the place of the one in base/, which the linker then leaves in its library. Where there is no system log, each
// line to it opens a socket, which tests that count descriptors would see.
void NSLog(std::string_view message) {
    const std::lock_guard lock(listenerMutex);
    if (currentListener) {
        currentListener(message);
    }
}

namespace test {

LogListener::LogListener(Listener listener) {
    const std::lock_guard lock(listenerMutex);
    previous_ = std::exchange(currentListener, std::move(listener));
}

LogListener::~LogListener() {
    const std::lock_guard lock(listenerMutex);
    currentListener = std::move(previous_);
}

}  // namespace test
}  // namespace kelvo
