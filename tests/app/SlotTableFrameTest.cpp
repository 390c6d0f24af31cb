#include <gtest/gtest.h>

#include <QLayout>
#include <QTest>

#include "AppHarness.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

/// Before the application is made, for this program alone: the toolkit takes a scale but once.
const bool isScaled = qputenv("QT_SCALE_FACTOR", "1.5");

/// How many pixels of a table's four sides, from corner to corner, are of another colour than its upper left corner.
int gapsInTheFrame(QWidget& window, const SlotTableView& table) {
    const QImage picture = window.grab().toImage();
    const double scale = picture.devicePixelRatio();
    const QRectF points(table.mapTo(&window, QPoint()), table.size());
    const QRect frame(qRound(points.left() * scale), qRound(points.top() * scale), qRound(points.width() * scale),
                      qRound(points.height() * scale));
    const QRgb line = picture.pixel(frame.topLeft());
    int gaps = 0;
    for (int x = frame.left(); x <= frame.right(); ++x) {
        gaps += (picture.pixel(x, frame.top()) != line) + (picture.pixel(x, frame.bottom()) != line);
    }
    for (int y = frame.top(); y <= frame.bottom(); ++y) {
        gaps += (picture.pixel(frame.left(), y) != line) + (picture.pixel(frame.right(), y) != line);
    }
    return gaps;
}

// Half of the whole points lie between two pixels, so where the window's margins put the table matters.
TEST(SlotTableFrame, hasFourSidesAtAScaleOfOneAndAHalf) {
    ASSERT_TRUE(isScaled);
    RunningApp app;
    app.start();
    QWidget& window = app.controller.window();
    ASSERT_EQ(window.devicePixelRatio(), 1.5);
    for (const QPoint margin : {QPoint(12, 12), QPoint(13, 12), QPoint(12, 13), QPoint(13, 13)}) {
        window.layout()->setContentsMargins(margin.x(), margin.y(), 12, 12);
        const SlotTableView& table = app.controller.ImportIRTableV();
        ASSERT_TRUE(serveUntil([&] { return table.mapTo(&window, QPoint()).x() == margin.x(); }));
        EXPECT_EQ(gapsInTheFrame(window, table), 0) << "with margins of " << margin.x() << " and " << margin.y();
        EXPECT_EQ(gapsInTheFrame(window, app.controller.ImportCabTableV()), 0);
    }
}

}  // namespace
}  // namespace kelvo::test
