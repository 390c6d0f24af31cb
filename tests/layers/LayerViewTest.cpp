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

#include "Layer.h"
#include "LayerView.h"

namespace kelvo {
namespace {

class CountingView : public LayerView {
public:
    using LayerView::LayerView;
    int frames = 0;

protected:
    void paintEvent(QPaintEvent* event) override {
        ++frames;
        LayerView::paintEvent(event);
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
    bool hasTimer() { return !QAbstractEventDispatcher::instance()->registeredTimers(&view).isEmpty(); }
    // Whether the view wants another frame after this one.
    bool asksForFrames() {
        view.advance();
        return hasTimer();
    }
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
    EXPECT_TRUE(asksForFrames());
    EXPECT_EQ(QAbstractEventDispatcher::instance()->registeredTimers(&view).at(0).interval, 17);
}

TEST_F(LayerViewTest, standingStill_asksForNone) {
    show();
    EXPECT_FALSE(asksForFrames());
}

TEST_F(LayerViewTest, neverShown_asksForNone) {
    moveForEver();
    EXPECT_FALSE(asksForFrames());
}

TEST_F(LayerViewTest, hiddenAlone_orWithItsWindow_asksForNone) {
    moveForEver();
    show();
    view.hide();
    EXPECT_FALSE(asksForFrames());
    view.show();
    serveUntil([this] { return hasTimer(); });
    EXPECT_TRUE(asksForFrames());
    window.hide();
    EXPECT_FALSE(asksForFrames());
}

TEST_F(LayerViewTest, minimised_asksForNoneUntilRestored) {
    moveForEver();
    show();
    window.setWindowState(Qt::WindowMinimized);
    QCoreApplication::processEvents();
    EXPECT_FALSE(asksForFrames());
    const int before = view.frames;
    window.setWindowState(Qt::WindowNoState);
    serveUntil([&] { return view.frames >= before + 3; });
    EXPECT_TRUE(asksForFrames());
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
    EXPECT_TRUE(asksForFrames());
    area.verticalScrollBar()->setValue(2000);
    EXPECT_FALSE(asksForFrames());
    area.verticalScrollBar()->setValue(0);
    serveUntil([this] { return hasTimer(); });
    EXPECT_TRUE(asksForFrames());
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

TEST_F(LayerViewTest, change_isPaintedWithoutAnAnimation) {
    show();
    const int before = view.frames;
    layer.setFrame({3, 0, 1, 1});
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

    /// The view with a red layer at `frame`, on a picture of `ratio` pixels per point, by a painter that `place` moved.
    QImage painted(const QRectF& frame, double ratio, const std::function<void(QPainter& painter)>& place) {
        layer.setFrame(frame);
        layer.setBackground(Layer::Gradient{Qt::red});
        QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        place(painter);
        const QTransform before = painter.worldTransform();
        view.paintFrame(painter);
        EXPECT_EQ(painter.worldTransform(), before);
        return image;
    }
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
