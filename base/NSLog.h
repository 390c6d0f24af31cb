#pragma once

#include <string_view>

namespace kelvo {

/// Writes one line to the system log, syslog(3), with priority "notice". `message` is UTF-8 and is never used as a
/// format. Any thread.
void NSLog(std::string_view message);

}  // namespace kelvo
