#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "LayerScene.h"

namespace kelvo {

class Layer;

/// A widget that shows a tree of layers and keeps it moving, at most 60 frames a second. While it is hidden, minimised,
/// not exposed or scrolled away it asks for no frames, and its timer runs only until what ends by itself has ended.
/// Main thread.
class LayerView : public QWidget {
public:
    /// `clock` is the time that the layers' animations run by.
    explicit LayerView(LayerClock clock, QWidget* parent = nullptr);

    LayerScene& scene() { return scene_; }

    /// The layer at the top of the tree, in widget coordinates. It must live as long as the view shows.
    void setLayer(Layer& layer) { scene_.setRoot(&layer); }
    Layer* layer() const { return scene_.root(); }

    /// The opacity of the whole view: its layer's.
    double alphaValue() const;
    void setAlphaValue(double alpha);

    /// The toolkit's hook for a view that refreshes its layer by itself; the layers here need no refresh.
    virtual void updateLayer() {}

    /// Brings the layers to the clock's time. The view's timer calls it; a test that steps the clock does so itself.
    void advance();

    /// Shows the layers as they are now through `painter`, which may draw on any device at any pixel ratio.
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
