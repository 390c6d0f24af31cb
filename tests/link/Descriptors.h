#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

namespace kelvo {

/// This process's open descriptors and what they are open on.
inline std::map<int, std::string> openDescriptors() {
    std::map<int, std::string> open;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;  // the descriptor that lists the directory is in the list
        const auto target = std::filesystem::read_symlink(entry.path(), gone);
        if (!gone && target.string().find("/fd") == std::string::npos) {
            open[std::stoi(entry.path().filename())] = target;
        }
    }
    return open;
}

/// How many descriptors are open on a node of the fake bus, which is the end of a pseudo-terminal.
inline std::ptrdiff_t openNodes() {
    return std::ranges::count_if(openDescriptors(), [](const auto& descriptor) {
        return descriptor.second.starts_with("/dev/pts/") && !descriptor.second.ends_with("ptmx");
    });
}

}  // namespace kelvo
