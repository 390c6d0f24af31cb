#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "LayerScene.h"

namespace kelvo {

class Layer;

/// A widget that shows and animates a tree of layers with at most 60 frames a second. While it is hidden, minimised,
/// not exposed or scrolled out of view it paints no frames, and its timer runs only until all finite animations have
/// ended. Main thread.
class LayerView : public QWidget {
public:
    /// `clock` is the clock of the layers' animations.
    explicit LayerView(LayerClock clock, QWidget* parent = nullptr);

    LayerScene& scene() { return scene_; }

    /// The layer at the top of the tree, in widget coordinates. It must live as long as the view is shown.
    void setLayer(Layer& layer) { scene_.setRoot(&layer); }
    Layer* layer() const { return scene_.root(); }

    /// The opacity of the view, which is that of its layer.
    double alphaValue() const;
    void setAlphaValue(double alpha);

    /// A hook that refreshes the view's layer. It does nothing, because these layers need no refresh.
    virtual void updateLayer() {}

    /// Updates the layers to the clock's time. The view's timer calls it; so does a test that sets the clock.
    void advance();

    /// Paints the layers as they are now. `painter` may draw on any device at any pixel ratio.
    void paintFrame(QPainter& painter) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool isOnScreen() const;
    void startTimer();

    LayerScene scene_;
    QBasicTimer timer_;
};

}  // namespace kelvo
