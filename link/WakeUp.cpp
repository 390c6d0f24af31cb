#include "WakeUp.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace kelvo {

WakeUp::WakeUp() : fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!fd_) {
        throw std::runtime_error("eventfd: " + std::generic_category().message(errno));
    }
}

// Neither call can fail in a way that matters: a full counter is still readable, an empty one is already clear.
void WakeUp::signal() const {
    eventfd_write(fd_.get(), 1);
}

void WakeUp::clear() const {
    eventfd_t count = 0;
    eventfd_read(fd_.get(), &count);
}

}  // namespace kelvo
