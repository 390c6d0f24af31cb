// Runs a fuzz target over files instead of generated inputs: every file named, and every file in a directory named.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void run(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> text(std::istreambuf_iterator<char>(file), {});
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    // The name comes first: it is the last line when the input ends the process.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<std::filesystem::path> files{argv[i]};
        if (std::filesystem::is_directory(argv[i])) {
            const std::filesystem::directory_iterator entries(argv[i]);
            files.assign(begin(entries), end(entries));
            std::sort(files.begin(), files.end());
        }
        std::for_each(files.begin(), files.end(), run);
        count += files.size();
    }
    std::printf("%zu inputs\n", count);
    return count == 0 ? 1 : 0;
}
