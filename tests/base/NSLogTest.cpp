#include <gtest/gtest.h>
#include <syslog.h>

#include <string>
#include <string_view>

#include "NSLog.h"

namespace kelvo {
namespace {

/// What `NSLog` gives syslog(3), which also writes it to the standard error if it has that priority.
std::string logged(std::string_view line, int priority) {
    openlog("kelvo", LOG_PERROR, LOG_DAEMON);
    setlogmask(LOG_MASK(priority));
    testing::internal::CaptureStderr();
    NSLog(line);
    closelog();
    return testing::internal::GetCapturedStderr();
}

TEST(NSLog, writesExactlyTheLineToTheSystemLog) {
    EXPECT_EQ(logged("100%s %n \xff 27.GREENBACK", LOG_NOTICE), "kelvo: 100%s %n \xff 27.GREENBACK\n");
    EXPECT_EQ(logged(std::string_view("a line").substr(0, 3), LOG_NOTICE), "kelvo: a l\n");
}

TEST(NSLog, isOfPriorityNotice) {
    EXPECT_EQ(logged("a line", LOG_WARNING), "");
    EXPECT_EQ(logged("a line", LOG_INFO), "");
}

}  // namespace
}  // namespace kelvo
