#include "NSLog.h"

#include <syslog.h>

#include <string>

namespace kelvo {

void NSLog(std::string_view message) {
    syslog(LOG_USER | LOG_NOTICE, "%s", std::string(message).c_str());
}

}  // namespace kelvo
