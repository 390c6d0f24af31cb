#include <fcntl.h>
#include <gtest/gtest.h>

#include "UniqueFd.h"

namespace kelvo {
namespace {

int openNull() {
    return ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

TEST(UniqueFd, holdsNothingAtFirst) {
    const UniqueFd fd;
    EXPECT_FALSE(fd);
    EXPECT_EQ(fd.get(), -1);
}

TEST(UniqueFd, closesAtItsEnd) {
    const int number = openNull();
    {
        const UniqueFd fd(number);
        EXPECT_TRUE(fd);
        EXPECT_EQ(fd.get(), number);
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(UniqueFd, holdsNothingWhenOpeningFailed) {
    const UniqueFd fd(::open("/no/such/file", O_RDONLY | O_CLOEXEC));
    EXPECT_FALSE(fd);
}

TEST(UniqueFd, descriptorZeroIsADescriptor) {
    UniqueFd fd(0);
    EXPECT_TRUE(fd);
    fd.reset();
    EXPECT_FALSE(isOpen(0));
    // The lowest free number is what a new one gets.
    fd = UniqueFd(openNull());
    EXPECT_EQ(fd.release(), 0);
}

TEST(UniqueFd, movingHandsTheDescriptorOver) {
    const int number = openNull();
    UniqueFd first(number);
    UniqueFd second(std::move(first));
    EXPECT_EQ(second.get(), number);
    UniqueFd third;
    third = std::move(second);
    EXPECT_EQ(third.get(), number);
    EXPECT_TRUE(isOpen(number));
}

TEST(UniqueFd, assigningClosesWhatWasHeld) {
    const int old = openNull();
    UniqueFd fd(old);
    const int number = openNull();
    fd = UniqueFd(number);
    EXPECT_FALSE(isOpen(old));
    EXPECT_TRUE(isOpen(number));
}

TEST(UniqueFd, resetClosesAndReleaseDoesNot) {
    const int closed = openNull();
    UniqueFd fd(closed);
    fd.reset();
    EXPECT_FALSE(isOpen(closed));
    const int kept = openNull();
    fd.reset(kept);
    EXPECT_EQ(fd.release(), kept);
    EXPECT_EQ(fd.get(), -1);
    EXPECT_TRUE(isOpen(kept));
    ::close(kept);
}

}  // namespace
}  // namespace kelvo
