#include "PluggedPedal.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "SleepingThread.h"

namespace kelvo::test {
namespace {

std::array<UniqueFd, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {UniqueFd(ends[0]), UniqueFd(ends[1])};
}

constexpr std::chrono::seconds kPatience{20};

}  // namespace

std::string hidrawNode() {
    for (const auto& entry : std::filesystem::directory_iterator("/sys/class/hidraw")) {
        const std::string node = "/dev/" + entry.path().filename().string();
        if (std::filesystem::exists(node)) {
            return node;
        }
    }
    return {};
}

PluggedPedal::PluggedPedal() {
    start();
    reader_ = std::thread([this] { collect(); });
    plug();
}

PluggedPedal::~PluggedPedal() {
    commands_.reset();
    waitpid(process_, nullptr, 0);
    reader_.join();
}

void PluggedPedal::start() {
    auto [commandsOut, commandsIn] = makePipe();
    auto [answersOut, answersIn] = makePipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, commandsOut.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, answersIn.get(), STDOUT_FILENO);
    std::string program = KELVO_KR310_USB;
    std::array<char*, 2> arguments{program.data(), nullptr};
    const int error = posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + program);
    }
    commands_ = std::move(commandsIn);
    answers_ = std::move(answersOut);
}

void PluggedPedal::collect() {
    std::string held;
    std::array<char, 4096> buffer{};
    for (ssize_t length = 1; length > 0;) {
        length = read(answers_.get(), buffer.data(), buffer.size());
        held.append(buffer.data(), static_cast<std::size_t>(length > 0 ? length : 0));
        const std::lock_guard lock(mutex_);
        for (std::size_t end = held.find('\n'); end != std::string::npos; end = held.find('\n')) {
            lines_.push_back(held.substr(0, end));
            held.erase(0, end + 1);
        }
        changed_.notify_all();
    }
}

std::size_t PluggedPedal::write(const std::string& command) {
    const std::string line = command + '\n';
    std::size_t before = 0;
    {
        const std::lock_guard lock(mutex_);
        before = lines_.size();
    }
    if (::write(commands_.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw std::runtime_error("kr310-usb takes no command");
    }
    return before;
}

std::vector<std::string> PluggedPedal::linesUpTo(std::size_t first, const std::string& last) {
    std::unique_lock lock(mutex_);
    const auto isEnd = [&](const std::string& line) { return line == last || line.starts_with("error: "); };
    std::size_t end = first;
    const bool came = changed_.wait_for(lock, kPatience, [&] {
        while (end < lines_.size() && !isEnd(lines_[end])) {
            ++end;
        }
        return end < lines_.size();
    });
    if (!came || lines_[end] != last) {
        throw std::runtime_error("instead of \"" + last + "\" kr310-usb says " + (came ? lines_[end] : "nothing"));
    }
    return {lines_.begin() + static_cast<std::ptrdiff_t>(first), lines_.begin() + static_cast<std::ptrdiff_t>(end)};
}

void PluggedPedal::tell(const std::string& command, const std::string& answer) {
    static_cast<void>(linesUpTo(write(command), answer));
}

void PluggedPedal::plug() {
    tell("plug", "plugged");
    waitUntil([] { return !hidrawNode().empty(); }, "the kernel's node");
}

bool PluggedPedal::says(const std::string& line) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience,
                             [&] { return std::find(lines_.begin(), lines_.end(), line) != lines_.end(); });
}

std::vector<std::string> PluggedPedal::memory() {
    return linesUpTo(write("memory"), "listed");
}

}  // namespace kelvo::test
