#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "LayerScene.h"

namespace kelvo {

class Layer;

/// A widget that shows a tree of layers and keeps it moving. While something moves and can be seen it asks for a frame
/// at the display's rate, at most 60 times a second; hidden, minimised, not exposed or scrolled away it
/// asks for none, and wakes only to end what ends. Main thread.
class LayerView : public QWidget {
public:
    /// `clock` is the time that the layers' animations run by.
    explicit LayerView(LayerClock clock, QWidget* parent = nullptr);

    LayerScene& scene() { return scene_; }
    const LayerScene& scene() const { return scene_; }

    /// The layer at the top of the tree, in widget coordinates. It must live as long as the view shows.
    void setLayer(Layer& layer) { scene_.setRoot(&layer); }
    Layer* layer() const { return scene_.root(); }

    /// The whole view's opacity: its layer's.
    double alphaValue() const;
    void setAlphaValue(double alpha);

    /// The toolkit's hook for a view that refreshes its layer by itself; the layers here need no refresh.
    virtual void updateLayer() {}

    /// Brings the layers to the clock's time. The view's timer calls it; a test that steps the clock does so itself.
    void advance();

    /// Milliseconds from frame to frame on a screen of so many hertz: at most 60 frames a second, and as many where a
    /// screen does not tell its rate.
    static int frameIntervalAt(double refreshRate);
    /// The same on the view's screen while the view is moving and can be seen; 0 if no frames are asked for.
    int frameInterval() const;

    /// The part of the widget that running animations change.
    virtual QRect animatedRect() const { return rect(); }

    /// Shows the layers as they are now through `painter`, which may draw on any device at any pixel ratio. Nothing
    /// outside `part` need be drawn.
    void paintFrame(QPainter& painter, const QRect& part);

protected:
    /// Draws the layers; `painter` works in device pixels, `ratio` of them per point. `part` as for paintFrame.
    virtual void drawLayers(QPainter& painter, double ratio, const QRect& part);
    /// Called by advance when the animations have been brought to the clock's time.
    virtual void layersAdvanced() {}

    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool isOnScreen() const;
    void schedule();

    LayerScene scene_;
    QBasicTimer timer_;
    int interval_ = 0;
};

}  // namespace kelvo
