#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QExposeEvent>
#include <QImage>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QWindow>
#include <limits>

#include "layers/Layer.h"
#include "layers/LayerView.h"

namespace kelvo {
namespace {

class CountingView : public LayerView {
public:
    using LayerView::LayerView;
    int frames = 0;
    std::function<void()> onFrame = [] {};

protected:
    void drawLayers(QPainter& painter, double ratio, const QRect& part) override {
        ++frames;
        LayerView::drawLayers(painter, ratio, part);
        onFrame();
    }
};

class LayerViewTest : public testing::Test {
protected:
    double seconds = 0.0;
    QWidget window;
    CountingView view{[this] { return seconds; }, &window};
    Layer layer{view.scene()};

    LayerViewTest() {
        view.setLayer(layer);
        view.resize(20, 10);
        window.resize(100, 50);
    }
    void moveForEver() {
        layer.addAnimation({.keyPath = "position.x",
                            .fromValue = 0.0,
                            .toValue = 10.0,
                            .duration = 1.0,
                            .repeatCount = std::numeric_limits<double>::infinity()},
                           "x");
        view.scene().commit();
    }
    void show() {
        window.show();
        QCoreApplication::processEvents();
    }
    int timers() { return static_cast<int>(QAbstractEventDispatcher::instance()->registeredTimers(&view).size()); }
    int timerInterval() { return QAbstractEventDispatcher::instance()->registeredTimers(&view).at(0).interval; }
    // Serves events until `done`; a generous limit keeps a failure from hanging.
    static void serveUntil(const std::function<bool()>& done) {
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] { done() ? loop.quit() : void(); });
        poll.start(1);
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        loop.exec();
    }
};

TEST_F(LayerViewTest, movingOnScreen_asksForAtMostSixtyFramesASecond) {
    moveForEver();
    show();
    EXPECT_GE(view.frameInterval(), 17);
    EXPECT_LE(view.frameInterval(), 40);
}

TEST_F(LayerViewTest, framesAreNoFasterThanTheScreenAndNeverMoreThanSixtyASecond) {
    EXPECT_EQ(LayerView::frameIntervalAt(60.0), 17);
    EXPECT_EQ(LayerView::frameIntervalAt(59.94), 17);
    EXPECT_EQ(LayerView::frameIntervalAt(144.0), 17);
    EXPECT_EQ(LayerView::frameIntervalAt(50.0), 20);
    EXPECT_EQ(LayerView::frameIntervalAt(27.0), 38);
    EXPECT_EQ(LayerView::frameIntervalAt(2.0), 500);
    // No screen: it does not tell.
    EXPECT_EQ(LayerView::frameIntervalAt(1.0), 17);
    EXPECT_EQ(LayerView::frameIntervalAt(0.0), 17);
}

TEST_F(LayerViewTest, standingStill_asksForNone) {
    show();
    EXPECT_EQ(view.frameInterval(), 0);
}

TEST_F(LayerViewTest, neverShown_asksForNone) {
    moveForEver();
    EXPECT_EQ(view.frameInterval(), 0);
}

TEST_F(LayerViewTest, hiddenAlone_orWithItsWindow_asksForNone) {
    moveForEver();
    show();
    view.hide();
    EXPECT_EQ(view.frameInterval(), 0);
    view.show();
    EXPECT_GT(view.frameInterval(), 0);
    window.hide();
    EXPECT_EQ(view.frameInterval(), 0);
}

TEST_F(LayerViewTest, minimised_asksForNoneUntilRestored) {
    moveForEver();
    show();
    window.setWindowState(Qt::WindowMinimized);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.frameInterval(), 0);
    window.setWindowState(Qt::WindowNoState);
    QCoreApplication::processEvents();
    EXPECT_GT(view.frameInterval(), 0);
}

TEST_F(LayerViewTest, scrolledAway_asksForNone) {
    moveForEver();
    QScrollArea area;
    auto* const tall = new QWidget;
    tall->resize(100, 5000);
    view.setParent(tall);
    area.setWidget(tall);
    area.resize(200, 100);
    area.show();
    view.show();
    QCoreApplication::processEvents();
    EXPECT_GT(view.frameInterval(), 0);
    area.verticalScrollBar()->setValue(2000);
    EXPECT_EQ(view.frameInterval(), 0);
    area.verticalScrollBar()->setValue(0);
    EXPECT_GT(view.frameInterval(), 0);
    view.setParent(nullptr);
}

TEST_F(LayerViewTest, movingOnScreen_paintsFrameAfterFrameByItself) {
    moveForEver();
    show();
    const int before = view.frames;
    serveUntil([&] { return view.frames >= before + 3; });
    EXPECT_GE(view.frames, before + 3);
}

TEST_F(LayerViewTest, shownAgain_movesOnByItself) {
    moveForEver();
    show();
    view.hide();
    QCoreApplication::processEvents();
    const int before = view.frames;
    view.show();
    serveUntil([&] { return view.frames >= before + 3; });
    EXPECT_GE(view.frames, before + 3);
}

TEST_F(LayerViewTest, restored_movesOnByItself) {
    moveForEver();
    show();
    window.setWindowState(Qt::WindowMinimized);
    QCoreApplication::processEvents();
    view.advance();
    EXPECT_EQ(timers(), 0);
    const int before = view.frames;
    window.setWindowState(Qt::WindowNoState);
    serveUntil([&] { return view.frames >= before + 3; });
    EXPECT_GE(view.frames, before + 3);
}

// The toolkit itself shows again what it has kept of the window, and paints nothing.
TEST_F(LayerViewTest, exposedAgain_isPaintedSoThatItMovesOn) {
    show();
    QCoreApplication::processEvents();
    const int before = view.frames;
    QExposeEvent exposed(QRegion(window.rect()));
    QCoreApplication::sendEvent(window.windowHandle(), &exposed);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.frames, before + 1);
}

TEST_F(LayerViewTest, leavingTheScreen_hasNoTimerAfterOneFrameMore) {
    moveForEver();
    show();
    EXPECT_EQ(timers(), 1);
    view.hide();
    view.advance();
    EXPECT_EQ(timers(), 0);
}

TEST_F(LayerViewTest, hidden_stillEndsWhatEnds) {
    bool ended = false;
    view.scene().begin();
    view.scene().setCompletionBlock([&ended] { ended = true; });
    layer.addAnimation({.keyPath = "opacity", .duration = 0.02}, "a");
    view.scene().commit();
    seconds = 0.02;
    serveUntil([&ended] { return ended; });
    EXPECT_TRUE(ended);
    EXPECT_EQ(view.frames, 0);
}

TEST_F(LayerViewTest, hidden_waitsForTheNextEnd) {
    layer.addAnimation({.keyPath = "opacity", .duration = 0.25}, "a");
    view.advance();
    EXPECT_EQ(timerInterval(), 250);
    seconds = 0.125;
    view.advance();
    EXPECT_EQ(timerInterval(), 125);
}

TEST_F(LayerViewTest, changeOutsideOfATransaction_isTakenUpAtOnce) {
    view.scene().setDisableActions(true);
    layer.setCornerRadius(1.0);
    EXPECT_EQ(timerInterval(), 1);
}

TEST_F(LayerViewTest, hidden_waitsNoLongerThanATimerCan) {
    layer.addAnimation({.keyPath = "opacity", .duration = 3e6}, "a");
    view.advance();
    EXPECT_EQ(timerInterval(), 1'000'000'000);
}

TEST_F(LayerViewTest, change_isPaintedWithoutAnAnimation) {
    show();
    const int before = view.frames;
    layer.setPosition({3, 0});
    serveUntil([&] { return view.frames > before; });
    EXPECT_GT(view.frames, before);
}

TEST_F(LayerViewTest, alphaValue_isTheLayersOpacity) {
    EXPECT_EQ(view.alphaValue(), 1.0);
    view.setAlphaValue(0.5);
    EXPECT_EQ(layer.opacity(), 0.5F);
    EXPECT_EQ(view.alphaValue(), 0.5);
}

TEST(LayerView, withoutALayer_showsNothingAndIsOpaque) {
    LayerView view([] { return 0.0; });
    view.setAlphaValue(0.5);
    EXPECT_EQ(view.alphaValue(), 1.0);
    EXPECT_EQ(view.layer(), nullptr);
    view.resize(4, 4);
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, {});
    EXPECT_EQ(image.pixel(2, 2), 0x00000000U);
}

class PaintedLayerView : public LayerViewTest {
protected:
    static constexpr QRgb kRed = 0xffff0000U;
    static constexpr QRgb kNothing = 0x00000000U;

    /// The view with a red layer there, on a picture of so many pixels per point, by a painter that `place` has moved.
    QImage painted(const QRectF& frame, double ratio, const std::function<void(QPainter& painter)>& place) {
        layer.setFrame(frame);
        layer.setBackground(QColor(Qt::red));
        QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        place(painter);
        const QTransform before = painter.worldTransform();
        view.onFrame = [&] { asked = painter.deviceTransform().m11(); };
        view.paintFrame(painter, view.rect());
        EXPECT_EQ(painter.worldTransform(), before);
        return image;
    }

    double asked = 0.0;
};

TEST_F(PaintedLayerView, atAnyRatio_showsTheLayersAtFullResolution) {
    const QImage image = painted({0.5, 0, 1, 10}, 2.0, [](QPainter&) {});
    EXPECT_EQ(image.pixel(0, 0), kNothing);
    EXPECT_EQ(image.pixel(1, 19), kRed);
    EXPECT_EQ(image.pixel(2, 0), kRed);
    EXPECT_EQ(image.pixel(3, 0), kNothing);
}

TEST_F(PaintedLayerView, smaller_hasThePixelsOfThatSize) {
    const QImage image = painted({0, 0, 8, 8}, 1.0, [](QPainter& painter) { painter.scale(0.5, 0.5); });
    EXPECT_EQ(asked, 1.0);
    EXPECT_EQ(image.pixel(3, 3), kRed);
    EXPECT_EQ(image.pixel(4, 3), kNothing);
}

TEST_F(PaintedLayerView, throughARotation_isThereAllTheSame) {
    const QImage image = painted({0, 0, 4, 4}, 1.0, [](QPainter& painter) {
        painter.translate(10, 0);
        painter.rotate(90);
    });
    EXPECT_EQ(image.pixel(8, 2), kRed);
    EXPECT_EQ(image.pixel(4, 2), kNothing);
}

TEST_F(PaintedLayerView, thatBeginsWithinAPixel_isPaintedFromAWholeOne) {
    const QImage image = painted({0, 0, 4, 4}, 1.0, [](QPainter& painter) { painter.translate(2.75, 1.25); });
    EXPECT_EQ(image.pixel(2, 1), kNothing);
    EXPECT_EQ(image.pixel(3, 1), kRed);
    EXPECT_EQ(image.pixel(6, 4), kRed);
    EXPECT_EQ(image.pixel(7, 4), kNothing);
}

TEST_F(PaintedLayerView, thatBeginsWithinAPixelOfAScaledDisplay_isPaintedFromAWholeOne) {
    // A point is 2.5 pixels.
    const QImage image = painted({0, 0, 2, 2}, 2.5, [](QPainter& painter) { painter.translate(1, 1); });
    EXPECT_EQ(image.pixel(2, 3), kNothing);
    EXPECT_EQ(image.pixel(3, 2), kNothing);
    EXPECT_EQ(image.pixel(3, 3), kRed);
    EXPECT_EQ(image.pixel(7, 7), kRed);
    EXPECT_EQ(image.pixel(8, 7), kNothing);
    EXPECT_EQ(image.pixel(7, 8), kNothing);
}

}  // namespace
}  // namespace kelvo
