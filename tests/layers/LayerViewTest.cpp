#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QExposeEvent>
#include <QImage>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWindow>
#include <functional>
#include <limits>
#include <vector>

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
    QScrollArea window;
    QWidget* const tall = new QWidget;
    CountingView view{[this] { return seconds; }, tall};
    Layer layer{view.scene()};

    LayerViewTest() {
        view.setLayer(layer);
        view.resize(20, 10);
        tall->resize(100, 5000);
        window.setWidget(tall);
        window.resize(200, 100);
    }
    ~LayerViewTest() override { view.setParent(nullptr); }

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
    QList<QAbstractEventDispatcher::TimerInfo> timers() {
        return QAbstractEventDispatcher::instance()->registeredTimers(&view);
    }
    // Whether the view wants another frame after this one.
    bool asksForFrames() {
        view.advance();
        return !timers().isEmpty();
    }

    static constexpr int kPatience = 20000;
};

TEST_F(LayerViewTest, asksForAtMostSixtyFramesASecondWhileItMovesAndIsSeen) {
    moveForEver();
    EXPECT_FALSE(asksForFrames());
    show();
    EXPECT_TRUE(asksForFrames());
    EXPECT_EQ(timers().at(0).interval, 17);
    const std::function<void(bool isSeen)> changes[] = {
        [this](bool isSeen) { view.setVisible(isSeen); },
        [this](bool isSeen) { window.setVisible(isSeen); },
        [this](bool isSeen) { window.setWindowState(isSeen ? Qt::WindowNoState : Qt::WindowMinimized); },
        [this](bool isSeen) { window.verticalScrollBar()->setValue(isSeen ? 0 : 2000); },
    };
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes);
        change(false);
        QCoreApplication::processEvents();
        EXPECT_FALSE(asksForFrames());
        const int before = view.frames;
        change(true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return view.frames >= before + 3; }, kPatience));
    }
    layer.removeAnimation("x");
    EXPECT_FALSE(asksForFrames());
}

// When exposed again, the toolkit itself shows what it has kept of the window, and paints nothing.
TEST_F(LayerViewTest, exposureOrChange_isPaintedWithoutAnAnimation) {
    show();
    QCoreApplication::processEvents();
    const int before = view.frames;
    QExposeEvent exposed(QRegion(window.rect()));
    QCoreApplication::sendEvent(window.windowHandle(), &exposed);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.frames, before + 1);
    layer.setFrame({3, 0, 1, 1});
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.frames == before + 2; }, kPatience));
}

TEST_F(LayerViewTest, hidden_stillEndsWhatEnds) {
    bool ended = false;
    view.scene().begin();
    view.scene().setCompletionBlock([&ended] { ended = true; });
    layer.addAnimation({.keyPath = "opacity", .duration = 0.02}, "a");
    view.scene().commit();
    seconds = 0.02;
    EXPECT_TRUE(QTest::qWaitFor([&ended] { return ended; }, kPatience));
    EXPECT_EQ(view.frames, 0);
}

TEST_F(LayerViewTest, alphaValue_isTheLayersOpacity) {
    view.setAlphaValue(0.5);
    EXPECT_EQ(layer.opacity(), 0.5F);
    EXPECT_EQ(view.alphaValue(), 0.5);
    LayerView empty([] { return 0.0; });
    empty.setAlphaValue(0.5);
    EXPECT_EQ(empty.alphaValue(), 1.0);
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    empty.paintFrame(painter);
    EXPECT_EQ(image.pixel(2, 2), 0U);
}

TEST_F(LayerViewTest, frame_isPaintedFromAWholePixelAtTheResolutionOfTheDevice) {
    const struct {
        QRectF frame;
        double ratio;
        QTransform place;
        std::vector<QPoint> red, blank;
    } rows[] = {
        {{0.5, 0, 1, 10}, 2.0, {}, {{1, 19}, {2, 0}}, {{0, 0}, {3, 0}}},
        {{0, 0, 8, 8}, 1.0, QTransform::fromScale(0.5, 0.5), {{3, 3}}, {{4, 3}}},
        {{0, 0, 4, 4}, 1.0, QTransform::fromTranslate(10, 0).rotate(90), {{8, 2}}, {{4, 2}}},
        {{0, 0, 4, 4}, 1.0, QTransform::fromTranslate(2.75, 1.25), {{3, 1}, {6, 4}}, {{2, 1}, {7, 4}}},
        // A point is 2.5 pixels.
        {{0, 0, 2, 2}, 2.5, QTransform::fromTranslate(1, 1), {{3, 3}, {7, 7}}, {{2, 3}, {3, 2}, {8, 7}, {7, 8}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        layer.setFrame(row.frame);
        layer.setBackground(Layer::Gradient{Qt::red});
        QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(row.ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setWorldTransform(row.place);
        view.paintFrame(painter);
        EXPECT_EQ(painter.worldTransform(), row.place);
        for (const QPoint& at : row.red) {
            EXPECT_EQ(image.pixel(at), 0xffff0000U) << at.x() << ',' << at.y();
        }
        for (const QPoint& at : row.blank) {
            EXPECT_EQ(image.pixel(at), 0U) << at.x() << ',' << at.y();
        }
    }
}

}  // namespace
}  // namespace kelvo
