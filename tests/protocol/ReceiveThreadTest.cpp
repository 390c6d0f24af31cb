#include <array>
#include <chrono>
#include <ctime>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "CRC.h"
#include "ScriptedLink.h"
#include "UnpackerFixture.h"

namespace {

std::mutex sleepMutex;
std::vector<std::chrono::nanoseconds> sleeps;  // asked of the system; guarded by sleepMutex

}  // namespace

// The linker's --wrap=nanosleep gives these names. A busy machine makes a sleep longer, but not what was asked for.
extern "C" int __real_nanosleep(const timespec* time, timespec* left);   // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_nanosleep(const timespec* time, timespec* left) {  // NOLINT(bugprone-reserved-identifier)
    {
        const std::lock_guard lock(sleepMutex);
        sleeps.push_back(std::chrono::seconds(time->tv_sec) + std::chrono::nanoseconds(time->tv_nsec));
    }
    return __real_nanosleep(time, left);
}

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using test::Bytes;
using test::joined;
using test::kAcknowledgeFrame;
using test::kConnectFrame;
using test::kProgressFrame;
using test::takeRing;

using Commands = std::vector<int>;
using Sleeps = std::vector<std::chrono::nanoseconds>;

/// The sleeps since the last call.
Sleeps takeSleeps() {
    const std::lock_guard lock(sleepMutex);
    return std::exchange(sleeps, {});
}

/// Notes what surrounds each frame, and answers it.
struct AnsweringApp : test::RecordingApp {
    void CMD_CallBack(FrameView frame) override {
        sleptBefore.push_back(takeSleeps());
        callers.push_back(std::this_thread::get_id());
        SendUartCmd(answer.data());
        RecordingApp::CMD_CallBack(frame);
    }
    std::array<std::uint8_t, 8> answer{0xAA, 0x55, 0x02, 0x00, 0xE1, 0x01};
    std::vector<Sleeps> sleptBefore;
    std::vector<std::thread::id> callers;
};

class ReceiveThreadTest : public testing::Test {
protected:
    ReceiveThreadTest() {
        ClearRx_buffer();
        DUP_init();
        takeSleeps();
    }

    AnsweringApp app;
    test::ScriptedLink link;
};

TEST_F(ReceiveThreadTest, withoutADevice_returns0AfterTenWaitsOfOneMillisecond) {
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 8));
    EXPECT_EQ(ReceiveThread(), 0);
    EXPECT_EQ(takeSleeps(), Sleeps(10, milliseconds(1)));
    EXPECT_EQ(takeRing(), kConnectFrame);
}

TEST_F(ReceiveThreadTest, deliversFramesUntilTheRemoval_andThenEmptiesTheRing) {
    ASSERT_TRUE(link.attach());
    ASSERT_TRUE(link.receive(joined({kProgressFrame, kConnectFrame})));
    std::promise<std::int32_t> result;
    std::thread thread([&] { result.set_value(ReceiveThread()); });
    const std::thread::id receiver = thread.get_id();
    ASSERT_TRUE(app.waitForFrames(2));
    ASSERT_TRUE(link.receive(kAcknowledgeFrame));
    ASSERT_TRUE(app.waitForFrames(3));
    ASSERT_TRUE(link.receive({{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02}}));  // a frame without its last byte
    EXPECT_TRUE(link.detach());
    thread.join();
    EXPECT_EQ(result.get_future().get(), 170);
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_EQ(app.commands(), (Commands{0xA5, 0xE0, 0xE1}));
    EXPECT_EQ(app.callers, std::vector(3, receiver));
    EXPECT_EQ(link.device->sentBytes(), joined({kAcknowledgeFrame, kAcknowledgeFrame, kAcknowledgeFrame}));
}

TEST_F(ReceiveThreadTest, forgetsAnEarlierHalfFrame_andDropsOneStrayBytePerTickOfTenMilliseconds) {
    ASSERT_TRUE(link.attach());
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 4));
    DUP_Unpack();  // holds a header that announces four more bytes
    ASSERT_TRUE(link.receive({{0xE0, 0x00, 0x02, 0x25}}));
    ASSERT_TRUE(link.receive(kProgressFrame));
    auto thread = std::async(std::launch::async, ReceiveThread);
    ASSERT_TRUE(app.waitForFrames(1));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(app.commands(), Commands{0xA5});
    EXPECT_EQ(app.sleptBefore[0], Sleeps(4, milliseconds(10)));
}

}  // namespace
}  // namespace kelvo
