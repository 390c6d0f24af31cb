// Something for each of the build's defences to show in a binary: a buffer on the stack that the system fills, and a
// container with an index from outside.

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv) {
    std::array<char, 16> buffer{};
    const auto size = static_cast<std::size_t>(argc > 1 ? std::atoi(argv[1]) : 0);
    const std::vector<char> letters(4, 'k');
    const bool read = ::read(STDIN_FILENO, buffer.data(), size) >= 0;
    return read && letters[size] == 'k' ? buffer[size] : 1;
}
