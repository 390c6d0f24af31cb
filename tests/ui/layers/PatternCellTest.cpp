#include <gtest/gtest.h>

#include <QPainter>

#include "layers/PatternCell.h"

namespace kelvo {
namespace {

LayerImage tile(double width, double height) {
    return {{width, height}, [width, height](QPainter& painter) {
                painter.fillRect(QRectF(0, 0, width, height), Qt::white);
                painter.fillRect(QRectF(0, 0, width / 2, height), Qt::black);
            }};
}

TEST(PatternCell, whereATileFillsWholePixels_isOneTile) {
    EXPECT_EQ(patternCell(tile(30, 20), 1.0).size(), QSize(30, 20));
    EXPECT_EQ(patternCell(tile(30, 20), 1.5).size(), QSize(45, 30));
    EXPECT_EQ(patternCell(tile(30, 20), 2.0).size(), QSize(60, 40));
}

TEST(PatternCell, whereATileEndsWithinAPixel_isAsManyTilesAsFillWholePixels) {
    EXPECT_EQ(patternCell(tile(30, 20), 1.25).size(), QSize(75, 25));
    EXPECT_EQ(patternCell(tile(10, 10), 1.125).size(), QSize(45, 45));
}

TEST(PatternCell, whereNoFewTilesFillWholePixels_isEightTilesNearEnough) {
    EXPECT_EQ(patternCell(tile(10, 10), 1.01).size(), QSize(81, 81));
}

TEST(PatternCell, tilesThatMeetWithinAPixel_leaveNoGapThere) {
    const QImage cell = patternCell(tile(30, 20), 1.25);
    for (int x = 0; x < cell.width(); ++x) {
        EXPECT_EQ(qAlpha(cell.pixel(x, 12)), 255) << x;
    }
    // The second tile begins in the middle of pixel 37: half white, half black.
    EXPECT_EQ(cell.pixel(36, 12), 0xffffffffU);
    EXPECT_NEAR(qRed(cell.pixel(37, 12)), 128, 2);
    EXPECT_EQ(cell.pixel(38, 12), 0xff000000U);
}

TEST(PatternCell, tilesThatMeetWithinAPixel_standBelowEachOtherToo) {
    const LayerImage upperHalf({10, 10}, [](QPainter& painter) { painter.fillRect(0, 0, 10, 5, Qt::black); });
    const QImage cell = patternCell(upperHalf, 1.25);
    ASSERT_EQ(cell.size(), QSize(25, 25));
    for (const int y : {3, 15}) {
        EXPECT_EQ(cell.pixel(12, y), 0xff000000U) << y;
    }
    for (const int y : {9, 22}) {
        EXPECT_EQ(cell.pixel(12, y), 0x00000000U) << y;
    }
}

TEST(PatternCell, drawingOutsideOfTheTile_isCutOff) {
    const LayerImage wide({2, 2}, [](QPainter& painter) { painter.fillRect(-9, -9, 10, 20, Qt::red); });
    const QImage cell = patternCell(wide, 1.0);
    EXPECT_EQ(cell.size(), QSize(2, 2));
    EXPECT_EQ(cell.pixel(0, 0), 0xffff0000U);
    EXPECT_EQ(cell.pixel(1, 0), 0x00000000U);
}

TEST(PatternCell, drawingOutsideOfTheTile_doesNotReachTheTileBeside) {
    const LayerImage wide({30, 20}, [](QPainter& painter) { painter.fillRect(-5, -5, 10, 10, Qt::red); });
    const QImage cell = patternCell(wide, 1.25);
    EXPECT_EQ(cell.pixel(40, 2), 0xffff0000U);
    EXPECT_EQ(cell.pixel(34, 2), 0x00000000U);  // four points to the left of the second tile
}

TEST(PatternCell, emptyImage_hasNoCell) {
    EXPECT_TRUE(patternCell({}, 1.0).isNull());
    EXPECT_TRUE(patternCell(tile(0, 20), 1.0).isNull());
    EXPECT_TRUE(patternCell(tile(20, -1), 1.0).isNull());
}

TEST(PatternCell, tileOfLessThanAPixel_stillHasOne) {
    EXPECT_EQ(patternCell(tile(0.01, 0.01), 1.0).size(), QSize(1, 1));
}

}  // namespace
}  // namespace kelvo
