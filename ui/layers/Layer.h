#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "BasicAnimation.h"
#include "LayerImage.h"
#include "LayerScene.h"

class QPainter;

namespace kelvo {

/// A rectangle of a picture that is kept rather than drawn: a background, contents over it, and sublayers over those.
/// Lengths are points, y grows downward. A change shows at the next frame. Main thread.
class Layer {
public:
    /// Nothing, a plain colour, or an image that is repeated from the bounds' upper left corner.
    using Background = std::variant<std::monostate, QColor, LayerImage>;

    explicit Layer(LayerScene& scene) : scene_(scene) {}
    virtual ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    LayerScene& scene() const { return scene_; }

    /// The rectangle in the superlayer's coordinates. It is computed from the three that follow; setting it moves the
    /// position and sizes the bounds. Sizes below zero count as zero.
    QRectF frame() const;
    void setFrame(const QRectF& frame);
    /// The rectangle in the layer's own coordinates, in which its sublayers lie.
    QRectF bounds() const { return bounds_; }
    void setBounds(const QRectF& bounds);
    /// The point of the bounds that lies at the position, (0, 0) upper left to (1, 1) lower right; (0.5, 0.5) at first.
    QPointF anchorPoint() const { return anchorPoint_; }
    void setAnchorPoint(QPointF anchorPoint) { set(anchorPoint_, anchorPoint); }
    QPointF position() const { return position_; }
    void setPosition(QPointF position) { set(position_, position); }

    /// Rounds the background and, with masksToBounds, the clip; at most half of the shorter side is used.
    double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius) { set(cornerRadius_, radius); }
    /// Whether the sublayers are cut off at the bounds.
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks) { set(masksToBounds_, masks); }

    float opacity() const { return opacity_; }
    /// Fades from what is shown to the new value in LayerScene::kDefaultDuration, unless actions are disabled or the
    /// layer has no superlayer and is not the root. The same value again changes nothing.
    void setOpacity(float opacity);

    const Background& background() const { return background_; }
    void setBackground(Background background);
    const LayerImage& contents() const { return contents_; }
    /// The image, which may be empty, is drawn when it is needed, to fill the bounds.
    void setContents(LayerImage contents) { set(contents_, std::move(contents)); }

    /// Puts the layer above the sublayers that are there, taking it from the superlayer it had.
    void addSublayer(Layer& layer);
    const std::vector<Layer*>& sublayers() const { return sublayers_; }
    Layer* superlayer() const { return superlayer_; }

    /// Starts now; replaces the animation under the same key.
    void addAnimation(BasicAnimation animation, const std::string& key);
    /// The animation under the key as it was added, with its default duration filled in; null if there is none.
    const BasicAnimation* animation(const std::string& key) const;
    void removeAnimation(const std::string& key);
    /// The value that an animation of the key path has now; none if none is running.
    std::optional<double> animatedValue(const std::string& keyPath) const;

    /// What is shown now.
    QPointF shownPosition() const;
    float shownOpacity() const;

    /// Draws the background over the bounds; LayerPainter calls it with the pen off.
    virtual void drawBackground(QPainter& painter) const;

protected:
    template <typename Value>
    void set(Value& property, Value value) {
        property = std::move(value);
        scene_.changed();
    }
    /// Fills the bounds, rounded, with the painter's brush.
    void fillBounds(QPainter& painter) const;

private:
    friend class LayerScene;

    struct Running {
        BasicAnimation animation;
        double begin = 0.0;
        std::shared_ptr<AnimationGroup> group;
        bool ended = false;
    };

    double ownValue(const std::string& keyPath) const;
    void endAnimations(double now, std::vector<std::shared_ptr<AnimationGroup>>& ended);
    bool hasRunning() const;
    std::optional<double> nextEnd() const;

    LayerScene& scene_;
    QRectF bounds_;
    QPointF anchorPoint_{0.5, 0.5};
    QPointF position_;
    double cornerRadius_ = 0.0;
    bool masksToBounds_ = false;
    float opacity_ = 1.0F;
    Background background_;
    // The background's image as it is repeated, at the resolution of the last drawing.
    mutable QImage cell_;
    mutable double cellRatio_ = 0.0;
    LayerImage contents_;
    std::vector<Layer*> sublayers_;
    Layer* superlayer_ = nullptr;
    std::map<std::string, Running> animations_;
};

}  // namespace kelvo
