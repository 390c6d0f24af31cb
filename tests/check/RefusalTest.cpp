// Why a file cannot be read. ReportsTest.cpp has the files that can be read and are refused.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "Refusals.h"

namespace kelvo {
namespace {

TEST(UnreadableFile, isExplainedByTheStepThatFailed) {
    using enum ReadFailure::Step;
    const std::pair<ReadFailure, const char*> rows[] = {
        {{.step = Open, .error = ENOENT}, "it cannot be opened: No such file or directory"},
        {{.step = Open, .error = ENOTDIR}, "it cannot be opened: Not a directory"},
        {{.step = Open, .error = EACCES}, "it cannot be opened: Permission denied"},
        {{.step = Open}, "its name contains a NUL"},
        {{.step = Type, .mode = S_IFDIR | 0755}, "it is a folder, not a regular file"},
        {{.step = Type, .mode = S_IFIFO | 0600}, "it is a pipe, not a regular file"},
        {{.step = Type, .mode = S_IFCHR | 0666}, "it is a device, not a regular file"},
        {{.step = Length, .size = 0x100000000}, "it is 4294967296 bytes long; at most 4294967295 are allowed"},
        {{.step = Read, .size = 8, .held = 5}, "it ended at byte 5 of 8 while it was read"},
        {{.step = Read, .error = EIO, .size = 8, .held = 5}, "it cannot be read: Input/output error"},
    };
    for (const auto& [failure, reason] : rows) {
        EXPECT_EQ(unreadable(failure).toStdString(), reason);
    }
}

}  // namespace
}  // namespace kelvo
