#include <array>
#include <chrono>
#include <future>

#include "CRC.h"
#include "ScriptedLink.h"
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
    const auto start = steady_clock::now();
    EXPECT_EQ(ReceiveThread(), 0);
    const auto elapsed = steady_clock::now() - start;
    EXPECT_GE(elapsed, milliseconds(10));
    EXPECT_LT(elapsed, milliseconds(2000));
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
    auto thread = startReceiveThread();
    const auto start = steady_clock::now();
    ASSERT_TRUE(link.receive(joined({{0x01, 0x02, 0x03}, kProgressFrame})));
    ASSERT_TRUE(app.waitForFrames(1));
    EXPECT_GE(steady_clock::now() - start, milliseconds(30));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
}

TEST_F(ReceiveThreadTest, getsThroughThirtyStrayBytesInTenMillisecondsToWellUnderASecondEach) {
    auto thread = startReceiveThread();
    const auto start = steady_clock::now();
    ASSERT_TRUE(link.receive(joined({Bytes(30, 0x01), kProgressFrame})));
    ASSERT_TRUE(app.waitForFrames(1));
    const auto elapsed = steady_clock::now() - start;
    EXPECT_GE(elapsed, milliseconds(300));
    EXPECT_LT(elapsed, milliseconds(15000));
    EXPECT_TRUE(link.detach());
    EXPECT_EQ(thread.get(), 170);
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

TEST(DelayMs, lastsAtLeastItsTime) {
    const auto start = steady_clock::now();
    Delay_ms(10);
    EXPECT_GE(steady_clock::now() - start, milliseconds(10));
}

}  // namespace
}  // namespace kelvo
