#include <array>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

#include "CRC.h"
#include "ScriptedLink.h"
#include "SleepRecord.h"
#include "UnpackerFixture.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::Bytes;
using test::joined;
using test::kConnectFrame;
using test::kProgressFrame;
using test::takeRing;

using Commands = std::vector<int>;
using Sleeps = std::vector<std::chrono::nanoseconds>;

std::future<std::int32_t> startReceiveThread() {
    return std::async(std::launch::async, ReceiveThread);
}

class ReceiveThreadTest : public testing::Test {
protected:
    void SetUp() override {
        ClearRx_buffer();
        DUP_init();
        ASSERT_TRUE(link.attach());
    }

    test::RecordingApp app;
    test::ScriptedLink link;
};

TEST(ReceiveThreadWithoutDevice, returns0AfterTenWaitsOfOneMillisecond) {
    ASSERT_FALSE(isOpenDevice);
    const test::SleepRecord sleeps;
    EXPECT_EQ(ReceiveThread(), 0);
    EXPECT_EQ(sleeps.times(), Sleeps(10, milliseconds(1)));
}

TEST(ReceiveThreadWithoutDevice, leavesTheRingAsItIs) {
    ClearRx_buffer();
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 8));
    EXPECT_EQ(ReceiveThread(), 0);
    EXPECT_EQ(takeRing(), kConnectFrame);
}

TEST_F(ReceiveThreadTest, deliversWhatArrivedBeforeItStarted) {
    ASSERT_TRUE(link.receive(joined({kProgressFrame, kConnectFrame})));
    auto thread = startReceiveThread();
    ASSERT_TRUE(app.waitForFrames(2));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(app.commands(), (Commands{0xA5, 0xE0}));
}

TEST_F(ReceiveThreadTest, deliversAFrameSplitOverReportsOnce) {
    auto thread = startReceiveThread();
    const Bytes longest = test::longestFrame();
    ASSERT_TRUE(link.receive(longest));
    ASSERT_TRUE(app.waitForFrames(1));
    ASSERT_TRUE(link.receive(kProgressFrame));
    ASSERT_TRUE(app.waitForFrames(2));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(app.commands(), (Commands{0x42, 0xA5}));
    const auto frame = app.frames()[0];
    EXPECT_EQ(Bytes(frame.begin(), frame.end()), longest);
}

TEST_F(ReceiveThreadTest, afterRemoval_returns170AndEmptiesTheRing) {
    auto thread = startReceiveThread();
    ASSERT_TRUE(link.receive(kProgressFrame));
    ASSERT_TRUE(app.waitForFrames(1));
    ASSERT_TRUE(link.receive({{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02}}));  // a frame without its last byte
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(ReceiveThreadTest, forgetsTheHalfFrameOfAnEarlierRun) {
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 4));
    DUP_Unpack();  // holds a header that announces four more bytes
    ASSERT_TRUE(link.receive({{0xE0, 0x00, 0x02, 0x25}}));
    ASSERT_TRUE(link.receive(kProgressFrame));
    auto thread = startReceiveThread();
    ASSERT_TRUE(app.waitForFrames(1));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(ReceiveThreadTest, dropsOneStrayBytePerTickOfTenMilliseconds) {
    struct SleptApp : test::RecordingApp {
        void CMD_CallBack(FrameView frame) override {
            sleptBefore = sleeps.times();
            RecordingApp::CMD_CallBack(frame);
        }
        test::SleepRecord sleeps;
        Sleeps sleptBefore;
    };
    SleptApp slept;
    ASSERT_TRUE(link.receive(joined({{0x01, 0x02, 0x03}, kProgressFrame})));
    auto thread = startReceiveThread();
    ASSERT_TRUE(slept.waitForFrames(1));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
    EXPECT_EQ(slept.sleptBefore, Sleeps(3, milliseconds(10)));
}

TEST_F(ReceiveThreadTest, handsFramesOnItself) {
    struct ThreadApp : test::RecordingApp {
        void CMD_CallBack(FrameView frame) override {
            callers.push_back(std::this_thread::get_id());
            RecordingApp::CMD_CallBack(frame);
        }
        std::vector<std::thread::id> callers;
    };
    ThreadApp asked;
    ASSERT_TRUE(link.receive(joined({kProgressFrame, kConnectFrame})));
    std::thread receiveThread(ReceiveThread);
    const std::thread::id receiver = receiveThread.get_id();
    ASSERT_TRUE(asked.waitForFrames(2));
    EXPECT_TRUE(link.detach());
    receiveThread.join();
    EXPECT_EQ(asked.callers, (std::vector{receiver, receiver}));
}

TEST_F(ReceiveThreadTest, letsTheApplicationAnswerAFrameFromItsHandler) {
    struct AnsweringApp : test::RecordingApp {
        void CMD_CallBack(FrameView frame) override {
            answer = {0xAA, 0x55, 0x02, 0x00, 0xE1, frame[5]};
            SendUartCmd(answer.data());
            RecordingApp::CMD_CallBack(frame);
        }
        std::array<std::uint8_t, 8> answer{};
    };
    AnsweringApp answering;
    auto thread = startReceiveThread();
    ASSERT_TRUE(link.receive(test::kAcknowledgeFrame));
    ASSERT_TRUE(link.device->waitForReports(1));
    EXPECT_EQ(link.device->sentBytes(), (Bytes{0xAA, 0x55, 0x02, 0x00, 0xE1, 0x01, 0x21, 0x35}));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
}

TEST(DelayMs, asksForItsTime) {
    const test::SleepRecord sleeps;
    Delay_ms(1);
    Delay_ms(10);
    EXPECT_EQ(sleeps.times(), (Sleeps{milliseconds(1), milliseconds(10)}));
}

TEST(DelayMs, lastsAtLeastItsTime) {
    const auto start = steady_clock::now();
    Delay_ms(10);
    EXPECT_GE(steady_clock::now() - start, milliseconds(10));
}

}  // namespace
}  // namespace kelvo
