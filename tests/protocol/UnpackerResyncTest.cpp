#include <algorithm>

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

using Resync = test::UnpackerFixture;
using Commands = std::vector<int>;

TEST_F(Resync, whenTheSecondByteIsTheHeaderItself_deliversTheFrameBehindIt) {
    feed({0xAA, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenTheSecondByteIsNoHeader_startsOverWithinTheSameCall) {
    feed(joined({{0xAA, 0x01}, kConnectFrame}));
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenOnlyTheWrongSecondByteIsThere_waitsForANewFrame) {
    feed({0xAA, 0x01});
    EXPECT_EQ(app.commands(), Commands{});
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenLengthIs1019_rejectsTheHeaderWithoutWaitingForMore) {
    feed({0xAA, 0x55, 0xFB, 0x03});
    EXPECT_EQ(app.commands(), Commands{});
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenLengthIs1019_doesNotDeliverTheFrameThoughItsCrcIsGood) {
    Bytes frame{0xAA, 0x55, 0xFB, 0x03};
    frame.resize(1023, 0x42);
    frame.push_back(0x20);
    frame.push_back(0xD2);
    arrive(frame);
    for (int call = 0; call < 1025; ++call) {
        DUP_Unpack();
    }
    EXPECT_EQ(takeRing(), Bytes{});
    EXPECT_EQ(app.commands(), Commands{});
}

TEST_F(Resync, whenLengthIs65535_rejectsTheHeader) {
    feed(joined({{0xAA, 0x55, 0xFF, 0xFF}, kConnectFrame}));
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenLengthIsTooLong_goesOnAtTheHeaderInItsLowByte) {
    feed({0xAA, 0x55, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenLengthIsTooLong_goesOnAtTheHeaderInItsHighByte) {
    feed({0xAA, 0x55, 0xFB, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenTheCrcIsWrong_deliversNothingOfTheFrame) {
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x24});
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x03, 0x25});
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x01, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{});
    feed(kConnectFrame);
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenTheCrcBytesAreSwapped_deliversNothing) {
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x25, 0x02});
    EXPECT_EQ(app.commands(), Commands{});
}

TEST_F(Resync, whenTheCrcIsWrong_deliversTheNextFrameInTheSameCall) {
    feed(joined({{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x00, 0x00}, kProgressFrame}));
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(Resync, whenTheCrcIsWrong_deliversTheGoodFrameInsideTheBadOne) {
    feed(joined({{0xAA, 0x55, 0x08, 0x00, 0x01, 0x02}, kConnectFrame}));
    EXPECT_EQ(app.commands(), Commands{0xE0});
    feed(kProgressFrame);
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
}

TEST_F(Resync, whenABadFrameHoldsTwoGoodOnes_deliversBoth) {
    feed(joined({{0xAA, 0x55, 0x0E, 0x00}, kConnectFrame, kProgressFrame}));
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
    EXPECT_EQ(app.frames()[1][5], 0xC7);
}

TEST_F(Resync, whenABadFrameHoldsGoodOnesWithAStrayByteBetween_deliversBothInOneCall) {
    feed(joined({{0xAA, 0x55, 0x0F, 0x00}, kConnectFrame, {0x07}, kProgressFrame}));
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
}

TEST_F(Resync, whenABadFrameHoldsGoodOnesWithAStrayHeaderByteBetween_deliversBothInOneCall) {
    feed(joined({{0xAA, 0x55, 0x0F, 0x00}, kConnectFrame, {0xAA}, kProgressFrame}));
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
}

TEST_F(Resync, whenABadFrameHoldsAGoodOneAndHalfOfANext_waitsForTheOtherHalf) {
    feed({0xAA, 0x55, 0x0A, 0x00, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25, 0xAA, 0x55, 0x02, 0x00});
    EXPECT_EQ(app.commands(), Commands{0xE0});
    feed({0xA5, 0xC7, 0x59, 0xB7});
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
}

TEST_F(Resync, whenABadFrameHoldsAGoodOneAndNoFurtherHeader_keepsNothingOfTheRest) {
    feed({0xAA, 0x55, 0x0A, 0x00, 0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25, 0x55, 0x02, 0x00, 0xA5});
    EXPECT_EQ(app.commands(), Commands{0xE0});
    feed({0xC7, 0x59, 0xB7});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, whenABadFrameEndsInAHeaderByte_goesOnThere) {
    feed({0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0xAA});
    EXPECT_EQ(app.commands(), Commands{});
    feed({0x55, 0x02, 0x00, 0xA5, 0xC7, 0x59, 0xB7});
    EXPECT_EQ(app.commands(), Commands{0xA5});
}

TEST_F(Resync, whenTheLongestFrameIsBad_deliversTheFramesInsideIt) {
    Bytes bad = longestFrame();
    std::copy(kConnectFrame.begin(), kConnectFrame.end(), bad.begin() + 100);
    std::copy(kProgressFrame.begin(), kProgressFrame.end(), bad.begin() + 1016);
    feed(bad);
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5}));
    feed(kAcknowledgeFrame);
    EXPECT_EQ(app.commands(), (Commands{0xE0, 0xA5, 0xE1}));
}

TEST_F(Resync, consumesARingFullOfHeaderBytesInOneCall) {
    feed(Bytes(10240, 0xAA));
    EXPECT_EQ(takeRing(), Bytes{});
    feed({0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25});
    EXPECT_EQ(app.commands(), Commands{0xE0});
}

TEST_F(Resync, consumesARingFullOfFalseHeadersThatAnnounceLongFrames) {
    Bytes stream;
    while (stream.size() < 10240) {
        stream.insert(stream.end(), {0xAA, 0x55, 0xFA, 0x03});
    }
    feed(stream);
    EXPECT_EQ(app.commands(), Commands{});
    EXPECT_LT(takeRing().size(), 1024U);
}

TEST_F(Resync, recoversWhenAReportWasLostInTheMiddleOfAFrame) {
    const Bytes frame = longestFrame();
    arrive(Bytes(frame.begin(), frame.begin() + 63));
    feed(Bytes(frame.begin() + 126, frame.end()));  // 63 bytes short: the frame swallows what comes next
    for (int repeat = 0; repeat < 8; ++repeat) {
        feed(kProgressFrame);
    }
    EXPECT_EQ(app.commands(), (Commands{0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5}));
}

}  // namespace
}  // namespace kelvo
