#include "NSLog.h"

#include <syslog.h>

#include <mutex>
#include <utility>

namespace kelvo {
namespace {

std::mutex listenerMutex;
LogListener::Listener currentListener;

}  // namespace

void NSLog(std::string_view message) {
    const std::lock_guard lock(listenerMutex);
    if (currentListener) {
        currentListener(message);
        return;
    }
    syslog(LOG_USER | LOG_NOTICE, "%s", std::string(message).c_str());
}

LogListener::LogListener(Listener listener) {
    const std::lock_guard lock(listenerMutex);
    previous_ = std::exchange(currentListener, std::move(listener));
}

LogListener::~LogListener() {
    const std::lock_guard lock(listenerMutex);
    currentListener = std::move(previous_);
}

}  // namespace kelvo
