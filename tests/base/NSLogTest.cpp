#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "NSLog.h"

namespace kelvo {
namespace {

TEST(NSLog, givesTheListenerEveryLineAsItStands) {
    std::vector<std::string> lines;
    const LogListener listener([&](std::string_view message) { lines.emplace_back(message); });
    NSLog("27.GREENBACK");
    NSLog("100%s %n");
    EXPECT_EQ(lines, (std::vector<std::string>{"27.GREENBACK", "100%s %n"}));
}

TEST(NSLog, returnsToTheEarlierListenerWhenTheNewestEnds) {
    std::vector<std::string> outer;
    const LogListener first([&](std::string_view message) { outer.emplace_back(message); });
    {
        const LogListener second([](std::string_view) {});
        NSLog("inner");
    }
    NSLog("outer");
    EXPECT_EQ(outer, std::vector<std::string>{"outer"});
}

TEST(NSLog, writesToTheSystemLogWithoutAListener) {
    NSLog("a line with %s and \xff in it");
    SUCCEED();
}

}  // namespace
}  // namespace kelvo
