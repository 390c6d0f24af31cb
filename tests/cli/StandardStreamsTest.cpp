#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "StandardStreams.h"
#include "UniqueFd.h"

namespace kelvo::test {
namespace {

TEST(KeepStandardStreams, closedStreams_becomeDevNull) {
    std::array<UniqueFd, 3> kept;
    for (int fd = 0; fd < 3; ++fd) {
        kept[static_cast<std::size_t>(fd)] = UniqueFd(fcntl(fd, F_DUPFD, 10));
        close(fd);
    }
    keepStandardStreams();
    const UniqueFd next(open("/dev/null", O_RDONLY));
    char byte = 0;
    const auto given = read(0, &byte, 1);
    const auto taken = write(1, &byte, 1);
    const int error = errno;
    const auto takenByTheThird = write(2, &byte, 1);
    for (int fd = 0; fd < 3; ++fd) {
        dup2(kept[static_cast<std::size_t>(fd)].get(), fd);
    }
    EXPECT_GT(next.get(), 2);
    EXPECT_EQ(given, 0);
    EXPECT_EQ(taken, -1);
    EXPECT_EQ(error, EBADF);
    EXPECT_EQ(takenByTheThird, -1);
}

TEST(KeepStandardStreams, makesALeavingReaderAnErrorOfTheWriteAndKeepsOpenStreams) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    close(ends[0]);
    const UniqueFd writer(ends[1]);
    keepStandardStreams();
    EXPECT_EQ(write(writer.get(), "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
    EXPECT_NE(fcntl(1, F_GETFL) & O_ACCMODE, O_RDONLY);  // an open stream stays
}

}  // namespace
}  // namespace kelvo::test
