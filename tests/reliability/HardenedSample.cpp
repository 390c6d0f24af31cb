// Something for each of the build's defences to show in a binary: a buffer on the stack that is filled to a length from
// outside, and a container with an index from outside.

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

int main(int argc, char** argv) {
    std::array<char, 16> buffer{};
    const auto size = static_cast<std::size_t>(argc > 1 ? std::atoi(argv[1]) : 0);
    const std::vector<char> letters(4, 'k');
    // A copy, for clang++ checks those of the compiler's own functions only.
    std::memcpy(buffer.data(), argv[0], size);
    return letters[size] == 'k' ? buffer[size] : 1;
}
