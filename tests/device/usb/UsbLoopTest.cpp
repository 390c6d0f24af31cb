#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cctype>
#include <condition_variable>
#include <csignal>
#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "UsbLoop.h"
#include "UsbTesting.h"

namespace kelvo {
namespace {

using testing::ElementsAre;

std::pair<UniqueFd, UniqueFd> socketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::runtime_error("no socket pair");
    }
    return {UniqueFd(ends[0]), UniqueFd(ends[1])};
}

/// kr310-usb with a test in place of the kernel and of the keyboard.
class RunningLoop : public testing::Test {
protected:
    RunningLoop() {
        std::tie(keyboard, commands) = socketPair();
        thread = std::thread([this] { runUsbLoop(commands.get(), console, cable, note()); });
    }
    /// The end of the commands ends the loop.
    ~RunningLoop() override {
        shutdown(keyboard.get(), SHUT_WR);
        if (thread.joinable()) {
            thread.join();
        }
    }

    UsbConsole::LineSink note() {
        return [this](std::string_view line) {
            const std::lock_guard lock(mutex);
            lines.emplace_back(line);
            changed.notify_all();
        };
    }

    void type(std::string_view text) const {
        ASSERT_EQ(write(keyboard.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    /// The lines since the last call, once there are n.
    std::vector<std::string> said(std::size_t n) {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::seconds(10), [&] { return lines.size() >= n; });
        return std::exchange(lines, {});
    }

    /// Types a command and waits for the answer.
    std::vector<std::string> asked(const std::string& command, std::size_t n = 1) {
        type(command + '\n');
        return said(n);
    }

    void sendToDevice(const Bytes& bytes) const {
        ASSERT_EQ(send(host.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
    }

    /// n bytes from the device; fewer when it has closed its end.
    std::string fromDevice(std::size_t n) const {
        Bytes bytes(n);
        std::size_t got = 0;
        for (ssize_t length = 1; got < n && length > 0; got += static_cast<std::size_t>(std::max<ssize_t>(length, 0))) {
            length = recv(host.get(), bytes.data() + got, n - got, 0);
        }
        bytes.resize(got);
        return hex(bytes);
    }

    UniqueFd makeCable() {
        if (!hasPort) {
            throw std::runtime_error("no port");
        }
        auto [deviceEnd, hostEnd] = socketPair();
        host = std::move(hostEnd);
        return std::move(deviceEnd);
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> lines;
    bool hasPort = true;

    VirtualKr310 pedal;
    UsbKr310 device{pedal};
    UsbCable cable{device};
    UsbConsole console{pedal, device, cable, [this] { return makeCable(); }, note()};
    UniqueFd keyboard;
    UniqueFd commands;
    UniqueFd host;
    std::thread thread;
};

class PluggedLoop : public RunningLoop {
protected:
    PluggedLoop() { EXPECT_THAT(asked("plug"), ElementsAre("plugged")); }
};

TEST_F(RunningLoop, answersEachCommandWithItsLine) {
    for (const auto& [command, answer] : {std::pair{"plug", "plugged"},
                                          {"plug", "plugged"},
                                          {"hang", "hanging"},
                                          {"stall", "stalling"},
                                          {"go", "going"},
                                          {"unplug", "unplugged"},
                                          {"unplug", "unplugged"},
                                          {"jump", "error: unknown command: jump; help lists them"},
                                          {"", "error: unknown command: ; help lists them"},
                                          {"plug ", "error: unknown command: plug ; help lists them"},
                                          {"fault", "error: fault wants NAME[=N]"},
                                          {"fault nix", "error: there is no fault 'nix'"},
                                          {"pace", "error: pace wants MS"},
                                          {"pace ", "error: pace wants MS"},
                                          {"pace 0", "pace 0"},
                                          {"pace 10000", "pace 10000"},
                                          {"pace 10001", "error: pace wants 0 to 10000, got '10001'"},
                                          {"pace -1", "error: pace wants 0 to 10000, got '-1'"},
                                          {"pace 1x", "error: pace wants 0 to 10000, got '1x'"}}) {
        EXPECT_THAT(asked(command), ElementsAre(answer)) << command;
    }
}

TEST_F(RunningLoop, listsTheMemoryTheFaultsAndTheCommands) {
    for (const auto& [command, count, first, third] :
         {std::tuple{"memory", 21U, "CAB 27 \"OPEN 1X12\" crc32 f1cf3378", "CAB 29 \"VINTAGE412\" crc32 f1cf3378"},
          {"faults", 23U, "silent=N from phase, 0 to 5", "duplicate-ack"},
          {"help", 14U, "plug: plugs the pedal in, freshly powered up", "hang: the pedal takes no output report"}}) {
        const auto list = asked(command, count);
        ASSERT_EQ(list.size(), count);
        EXPECT_EQ(list[0], first);
        EXPECT_EQ(list[2], third);
        EXPECT_EQ(list.back(), "listed");
    }
}

TEST_F(RunningLoop, switchesFaultsOnAndOff) {
    EXPECT_THAT(asked("fault split=5"), ElementsAre("fault split=5"));
    EXPECT_THAT(asked("fault merge"), ElementsAre("fault merge"));
    EXPECT_THAT(asked("fault split=64"), ElementsAre("error: split wants 1 to 63, got '64'"));
    EXPECT_EQ(pedal.faults().splitReports, 5U);
    EXPECT_TRUE(pedal.faults().mergedReports);
    EXPECT_THAT(asked("sound"), ElementsAre("sound"));
    EXPECT_EQ(pedal.faults().splitReports, 0U);
}

TEST_F(PluggedLoop, printsEachOutputReportOnRequest) {
    sendToDevice(outRequest(1, Bytes(64, 0x11)));
    EXPECT_EQ(fromDevice(48), answer(1, 64));
    EXPECT_THAT(asked("reports"), ElementsAre("reporting"));
    sendToDevice(outRequest(1, Bytes(2, 0xA5)));
    EXPECT_THAT(said(1), ElementsAre("report a5a5"));
}

TEST_F(RunningLoop, obeysCommandsThatComeInPiecesAndTogether) {
    type("ha");
    type("ng\nstall\ngo");
    type("\nmem");
    EXPECT_THAT(said(3), ElementsAre("hanging", "stalling", "going"));
}

TEST_F(RunningLoop, refusesALineOfMoreThan256Bytes) {
    const std::string longest = "fault " + std::string(250, 'x');
    EXPECT_THAT(asked(longest), ElementsAre("error: there is no fault '" + std::string(250, 'x') + "'"));
    EXPECT_THAT(asked(longest + 'x'), ElementsAre("error: a command has at most 256 bytes"));
    type(std::string(100'000, 'x'));
    EXPECT_THAT(asked("\ngo", 2), ElementsAre("error: a command has at most 256 bytes", "going"));
}

TEST_F(PluggedLoop, stallsHangsAndContinuesOnCommand) {
    EXPECT_THAT(asked("stall"), ElementsAre("stalling"));
    sendToDevice(outRequest(1, Bytes(64)));
    EXPECT_EQ(fromDevice(48), failure(1, kStalled));
    EXPECT_THAT(asked("hang"), ElementsAre("hanging"));
    sendToDevice(join({outRequest(1, Bytes(64)), unlinkRequest(2, 1)}));
    EXPECT_EQ(fromDevice(48), unlinkAnswer(2, kUnlinked));
    EXPECT_THAT(asked("go"), ElementsAre("going"));
    sendToDevice(outRequest(1, Bytes(64)));
    EXPECT_EQ(fromDevice(48), answer(1, 64));
}

TEST_F(RunningLoop, deliversReportsAtThePaceThatIsSet_andObeysMeanwhile) {
    EXPECT_THAT(asked("pace 1100"), ElementsAre("pace 1100"));
    EXPECT_THAT(asked("plug"), ElementsAre("plugged"));
    const auto start = std::chrono::steady_clock::now();
    sendToDevice(join({outRequest(1, connectReport()), inRequest(2, 9), inRequest(3, 9)}));
    EXPECT_EQ(fromDevice(48 + 57), answer(1, 64) + ' ' + answer(2, 9, unhex("08 AA 55 02 00 A5 00 F0 1C")));
    EXPECT_THAT(asked("go"), ElementsAre("going"));
    EXPECT_EQ(fromDevice(57), answer(3, 9, unhex("08 AA 55 02 00 A5 01 E0 3D")));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1100));
}

TEST_F(PluggedLoop, saysWhyItIsNotPluggedIn) {
    host.reset();
    EXPECT_THAT(said(1), ElementsAre("unplugged: the host has closed the connection"));
    EXPECT_THAT(asked("plug"), ElementsAre("plugged"));
    sendToDevice(Bytes(48, 0));
    EXPECT_THAT(said(1), ElementsAre("unplugged: the host sent a USB/IP header with command 0"));
    EXPECT_EQ(fromDevice(1), "");
    EXPECT_THAT(asked("fault unplug=2"), ElementsAre("fault unplug=2"));
    EXPECT_THAT(asked("plug"), ElementsAre("plugged"));
    sendToDevice(join({outRequest(1, Bytes(64)), outRequest(2, Bytes(64))}));
    EXPECT_THAT(said(1), ElementsAre("unplugged: by a fault"));
    EXPECT_EQ(fromDevice(49), answer(1, 64)) << "earlier answers come first";
    hasPort = false;
    EXPECT_THAT(asked("plug"), ElementsAre("error: no port"));
}

TEST_F(PluggedLoop, keepsAnswersForAHostThatDoesNotReadYet) {
    // More answers than a socket holds.
    constexpr std::size_t requests = 20000;
    for (std::size_t i = 0; i < requests; ++i) {
        sendToDevice(usbIp({1, 1, 0x10002, 0, 2}));
    }
    EXPECT_THAT(asked("go"), ElementsAre("going"));
    for (std::size_t i = 0; i < requests; ++i) {
        ASSERT_EQ(fromDevice(48), failure(1, kStalled)) << i;
    }
}

TEST_F(RunningLoop, continuesAfterASignal) {
    static std::atomic<bool> handled = false;
    std::signal(SIGUSR1, [](int) {
        handled = true;
        handled.notify_all();
    });
    EXPECT_THAT(asked("plug"), ElementsAre("plugged"));
    pthread_kill(thread.native_handle(), SIGUSR1);
    handled.wait(false);
    std::signal(SIGUSR1, SIG_DFL);
    EXPECT_THAT(asked("go"), ElementsAre("going"));
}

TEST_F(PluggedLoop, sleepsWhileThereIsNothingToDo) {
    sendToDevice(inRequest(2));
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the idle time that is measured
    getrusage(RUSAGE_SELF, &after);
    // This thread's own sleep is one of them.
    EXPECT_LE(after.ru_nvcsw - before.ru_nvcsw, 3);
}

// A poll(2) over more descriptors than the process may have fails, each time.
TEST_F(PluggedLoop, endsWithALineWhenItCannotWait) {
    // UndefinedBehaviorSanitizer learns the types of objects with descriptors, which are gone then.
    static_cast<void>(std::generic_category().message(0));
    type("");
    rlimit old{};
    getrlimit(RLIMIT_NOFILE, &old);
    const rlimit one{.rlim_cur = 1, .rlim_max = old.rlim_max};
    setrlimit(RLIMIT_NOFILE, &one);
    type("go\n");
    thread.join();
    setrlimit(RLIMIT_NOFILE, &old);
    // The command may have been obeyed before.
    EXPECT_EQ(said(1).back(), "error: nothing can be waited for: Invalid argument");
    EXPECT_EQ(fromDevice(1), "");
}

TEST_F(PluggedLoop, pullsTheCableOnQuit) {
    type("quit\nplug\n");
    EXPECT_EQ(fromDevice(1), "");
    thread.join();
    EXPECT_TRUE(lines.empty());
}

TEST_F(RunningLoop, helpsAsTheManualPageDoes) {
    std::ostringstream page;
    page << std::ifstream(KELVO_MANUAL_PAGE).rdbuf();
    std::vector<std::string> help = asked("help", 14);
    help.pop_back();
    for (const std::string& line : help) {
        const std::size_t colon = line.find(": ");
        std::string text = line.substr(colon + 2);
        text[0] = static_cast<char>(std::toupper(text[0]));
        EXPECT_THAT(page.str(), testing::HasSubstr(".TP\n.B " + line.substr(0, colon) + '\n' + text + ".\n"));
    }
}

}  // namespace
}  // namespace kelvo
