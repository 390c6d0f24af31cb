#include <algorithm>

#include "Allocations.h"
#include "UnpackerFixture.h"

namespace kelvo {
namespace {

using test::Bytes;
using test::joined;
using test::kAcknowledgeFrame;
using test::kConnectFrame;
using test::kProgressFrame;
using test::longestFrame;
using test::takeRing;

using Unpacker = test::UnpackerFixture;
using Commands = std::vector<int>;

Bytes firstBytes(const test::RecordingApp::Frame& frame, std::ptrdiff_t count) {
    return {frame.begin(), frame.begin() + count};
}

TEST_F(Unpacker, deliversTheStartUpFrameOnce) {
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    DUP_Unpack();
    ASSERT_EQ(app.commands(), Commands{0xE0});
    EXPECT_EQ(firstBytes(app.frames()[0], 8), (Bytes{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25}));
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST_F(Unpacker, takesNoMemory) {
    struct CountingApp : AppClass {
        CountingApp() { AppClassPoint = this; }
        ~CountingApp() override { AppClassPoint = nullptr; }
        void CMD_CallBack(FrameView) override { ++frames; }
        void exitApp() override {}
        int frames = 0;
    };
    CountingApp counting;
    // Every state: stray bytes, a wrong second header byte, a LENGTH too great, a wrong CRC, a frame found inside.
    arrive(joined({{0x01, 0xAA, 0xAA, 0x55, 0xFF, 0xFF, 0xAA, 0x55, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00},
                   kConnectFrame,
                   {0xAA, 0x55, 0x09, 0x00},
                   kProgressFrame,
                   kAcknowledgeFrame}));
    const std::size_t before = test::allocations();
    for (int tick = 0; tick < 20; ++tick) {
        DUP_Unpack();
    }
    EXPECT_EQ(test::allocations(), before);
    EXPECT_EQ(counting.frames, 3);
}

TEST_F(Unpacker, deliversNothingFromAnEmptyRing) {
    DUP_Unpack();
    EXPECT_EQ(app.commands(), Commands{});
}

TEST_F(Unpacker, deliversAllBufferedFramesInOneCallAndInOrder) {
    feed(joined({kConnectFrame, kProgressFrame, kAcknowledgeFrame}));
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5, 0xE1}));
}

TEST_F(Unpacker, outsideAFrame_dropsOneStrayBytePerCall) {
    arrive({0x01, 0x55, 0xFF, 0x00});
    DUP_Unpack();
    DUP_Unpack();
    EXPECT_EQ(app.commands(), Commands{});
    EXPECT_EQ(takeRing(), (Bytes{0xFF, 0x00}));
}

TEST_F(Unpacker, drainsGarbageWithoutAHeaderAtOneBytePerCall) {
    arrive(Bytes(100, 0x20));
    for (int call = 0; call < 99; ++call) {
        DUP_Unpack();
    }
    EXPECT_EQ(takeRing(), Bytes{0x20});
    EXPECT_EQ(app.commands(), Commands{});
}

TEST_F(Unpacker, findsTheFrameBehindStrayBytes) {
    feed(joined({{0x01, 0x02}, kConnectFrame}));
    EXPECT_EQ(app.commands(), Commands{});
    DUP_Unpack();
    EXPECT_EQ(app.commands(), Commands{});
    DUP_Unpack();
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, withTheFirstHeaderByteOnly_waits) {
    feed({0xAA});
    EXPECT_EQ(takeRing(), Bytes{});
    DUP_Unpack();
    feed({0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, withHalfOfLength_leavesItInTheRing) {
    feed({0xAA, 0x55, 0x02});
    EXPECT_EQ(takeRing(), Bytes{0x02});
    feed({0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, withPartOfTheRest_leavesItInTheRing) {
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02});
    EXPECT_EQ(app.commands(), Commands{});
    EXPECT_EQ(takeRing(), (Bytes{0xE0, 0x00, 0x02}));
    feed({0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, deliversAFrameCutAtAnyPlaceWhenItsLastByteArrives) {
    for (std::ptrdiff_t cut = 1; cut < 8; ++cut) {
        const std::size_t before = app.frames().size();
        feed(Bytes(kConnectFrame.begin(), kConnectFrame.begin() + cut));
        EXPECT_EQ(app.frames().size(), before) << "cut at " << cut;
        feed(Bytes(kConnectFrame.begin() + cut, kConnectFrame.end()));
        EXPECT_EQ(app.frames().size(), before + 1) << "cut at " << cut;
    }
}

TEST_F(Unpacker, deliversAFrameThatArrivesByteByByteOnce) {
    for (std::size_t i = 0; i < 7; ++i) {
        feed({kProgressFrame[i]});
        DUP_Unpack();
    }
    EXPECT_EQ(app.commands(), Commands{});
    feed({0xB7});
    DUP_Unpack();
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(Unpacker, acceptsLength0_andTheCommandByteIsThenTheCrcsHighByte) {
    feed({0xAA, 0x55, 0x00, 0x00, 0xFF, 0xFF});
    EXPECT_EQ(app.commands(), Commands{0xFF});
    EXPECT_EQ(firstBytes(app.frames()[0], 6), (Bytes{0xAA, 0x55, 0x00, 0x00, 0xFF, 0xFF}));
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), (Commands{0xFF, 0xE0}));
}

TEST_F(Unpacker, acceptsLength1) {
    feed({0xAA, 0x55, 0x01, 0x00, 0xA5, 0x2D, 0x80});
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(Unpacker, acceptsLength1018WhichFillsTheFrameBuffer) {
    feed(joined({longestFrame(), kConnectFrame}));
    ASSERT_EQ(app.commands(), (Commands{0x42, 0xE0}));
    const Bytes frame = firstBytes(app.frames()[0], 1024);
    EXPECT_EQ(frame, longestFrame());
}

TEST_F(Unpacker, handsOnWhatEarlierFramesLeftBehindAShortOne) {
    feed(longestFrame());
    feed(kConnectFrame);
    ASSERT_EQ(app.frames().size(), 2U);
    const auto frame = app.frames()[1];
    EXPECT_EQ(firstBytes(frame, 9), (Bytes{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25, 0x42}));
    EXPECT_EQ(std::count(frame.begin() + 8, frame.begin() + 1022, 0x42), 1014);
    EXPECT_EQ(frame[1022], 0x5C);
    EXPECT_EQ(frame[1023], 0xF5);
}

TEST_F(Unpacker, deliversTheSameFrameAgainWhenItArrivesAgain) {
    feed(joined({kConnectFrame, kConnectFrame}));
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xE0}));
}

TEST_F(Unpacker, afterInit_forgetsTheBeginningOfAFrame) {
    feed({0xAA, 0x55, 0x02, 0x00});
    DUP_init();
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Unpacker, withoutInit_takesTheNextHeaderForTheRestOfTheFrame) {
    feed({0xAA, 0x55, 0x02, 0x00});
    feed(kConnectFrame);  // its first four bytes make a frame with a bad CRC, and are searched for a header
    EXPECT_EQ(app.commands(), Commands{0xE0});
    EXPECT_EQ(app.frames()[0][7], 0x25);
}

TEST(UnpackerWithoutApplication, takesTheFrameAndDoesNothing) {
    ClearRx_buffer();
    DUP_init();
    ASSERT_EQ(AppClassPoint.load(), nullptr);
    ASSERT_TRUE(putRX_buffer(kConnectFrame.data(), 8));
    DUP_Unpack();
    EXPECT_EQ(takeRing(), Bytes{});
}

TEST(CCmdCallBack, handsAll1024BytesToTheApplication) {
    test::RecordingApp app;
    test::RecordingApp::Frame frame{};
    frame[0] = 0x11;
    frame[1023] = 0x99;
    C_CMD_CallBack(frame.data());
    ASSERT_EQ(app.frames().size(), 1U);
    EXPECT_EQ(app.frames()[0], frame);
}

TEST(CCmdCallBack, doesNothingWithoutAnApplication) {
    ASSERT_EQ(AppClassPoint.load(), nullptr);
    const test::RecordingApp::Frame frame{};
    EXPECT_NO_FATAL_FAILURE(C_CMD_CallBack(frame.data()));
}

TEST(QuitWindow, tellsTheApplicationThatTheDeviceHasGone) {
    test::RecordingApp app;
    quitWindow();
    EXPECT_EQ(app.exits(), 1);
}

TEST(QuitWindow, doesNothingWithoutAnApplication) {
    ASSERT_EQ(AppClassPoint.load(), nullptr);
    EXPECT_NO_FATAL_FAILURE(quitWindow());
}

}  // namespace
}  // namespace kelvo
