#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <utility>

#include "UniqueFd.h"

namespace kelvo {
namespace {

int openNull() {
    return ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

TEST(UniqueFd, ownsNothing_orADescriptorUntilItsEnd) {
    EXPECT_FALSE(UniqueFd());
    EXPECT_EQ(UniqueFd().get(), -1);
    const int number = openNull();
    {
        const UniqueFd fd(number);
        EXPECT_TRUE(fd);
        EXPECT_EQ(fd.get(), number);
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(UniqueFd, descriptorZeroIsADescriptor) {
    const UniqueFd input(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3));
    UniqueFd fd(0);
    EXPECT_TRUE(fd);
    fd.reset();
    EXPECT_FALSE(isOpen(0));
    dup2(input.get(), STDIN_FILENO);
}

TEST(UniqueFd, handsItsDescriptorOver) {
    const int number = openNull();
    UniqueFd first(number);
    UniqueFd second(std::move(first));
    EXPECT_EQ(second.get(), number);
    const int old = openNull();
    UniqueFd third(old);
    third = std::move(second);
    EXPECT_FALSE(isOpen(old));
    EXPECT_EQ(third.release(), number);
    EXPECT_EQ(third.get(), -1);
    EXPECT_TRUE(isOpen(number));
    third.reset(number);
    third.reset();
    EXPECT_FALSE(isOpen(number));
}

}  // namespace
}  // namespace kelvo
