#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "BasicAnimation.h"
#include "LayerImage.h"
#include "LayerScene.h"

namespace kelvo {

/// A rectangle with a background, contents over it and sublayers over both. Keeps the painted picture of background and
/// contents. Lengths are points, y grows downward. A change shows at the next frame. Main thread.
class Layer {
public:
    /// A gradient from top to bottom with evenly spaced colours. One colour is solid, none is no background.
    using Gradient = std::vector<QColor>;
    /// An image is repeated from the upper left corner.
    using Background = std::variant<Gradient, LayerImage>;

    explicit Layer(LayerScene& scene) : scene_(scene) {}
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    /// The rectangle in the superlayer's coordinates. Setting it moves the anchor point. Negative sizes count as zero.
    QRectF frame() const;
    void setFrame(const QRectF& frame);
    /// The rectangle in the layer's own coordinates, in which its sublayers lie. It begins at (0, 0).
    QRectF bounds() const { return {{}, size_}; }
    /// The point of the bounds at the layer's position, from (0, 0) for the upper left to (1, 1) for the lower right
    /// corner; initially (0.5, 0.5).
    QPointF anchorPoint() const { return anchorPoint_; }
    void setAnchorPoint(QPointF anchorPoint) { set(anchorPoint_, anchorPoint); }
    QPointF position() const { return position_; }

    /// Rounds the background and, with masksToBounds, the clip. Limited to half of the shorter side.
    double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius);
    /// Whether the layer and its sublayers are clipped to the bounds.
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);

    float opacity() const { return opacity_; }
    /// Fades from the shown opacity to the new value in LayerScene::kDefaultDuration, unless actions are disabled or
    /// the layer is outside the tree. Setting the current value has no effect.
    void setOpacity(float opacity);

    const Background& background() const { return background_; }
    void setBackground(Background background);
    const LayerImage& contents() const { return contents_; }
    /// The image, which may be empty, is stretched over the bounds.
    void setContents(LayerImage contents);

    /// Adds the layer above the existing sublayers and removes it from its previous superlayer.
    void addSublayer(Layer& layer);
    const std::vector<Layer*>& sublayers() const { return sublayers_; }
    Layer* superlayer() const { return superlayer_; }

    /// Starts the animation now and replaces the one under the same key.
    void addAnimation(BasicAnimation animation, const std::string& key);
    /// The animation under the key, with its default duration filled in; null if there is none.
    const BasicAnimation* animation(const std::string& key) const;
    void removeAnimation(const std::string& key);

    /// What is shown now.
    QRectF shownFrame() const { return frame().translated(shownPosition() - position_); }
    QPointF shownPosition() const;
    float shownOpacity() const;

    /// Background and contents at `ratio` pixels per point, painted when first needed and kept until they change. Null
    /// if both are empty.
    const QImage& picture(double ratio) const;
    /// The layer's coverage of each pixel, kept in the same way. See paintMask.
    const QImage& mask(QSize size, const QRectF& shape, double ratio) const;

private:
    friend class LayerScene;

    struct Running {
        BasicAnimation animation;
        double begin = 0.0;
        LayerCompletion completion;
        bool ended = false;
    };

    template <typename Value>
    void set(Value& property, Value value) {
        property = std::move(value);
        scene_.changed_();
    }
    void leaveSuperlayer();
    std::optional<double> animatedValue(const std::string& keyPath) const;
    void endAnimations(std::vector<LayerCompletion>& ended);
    bool isAnimating(bool endlessToo) const;

    LayerScene& scene_;
    QSizeF size_{0.0, 0.0};
    QPointF anchorPoint_{0.5, 0.5};
    QPointF position_;
    double cornerRadius_ = 0.0;
    bool masksToBounds_ = false;
    float opacity_ = 1.0F;
    Background background_;
    LayerImage contents_;
    mutable QImage picture_;
    mutable double pictureRatio_ = 0.0;
    mutable QImage mask_;
    mutable QRectF maskShape_;
    std::vector<Layer*> sublayers_;
    Layer* superlayer_ = nullptr;
    std::map<std::string, Running> animations_;
};

}  // namespace kelvo
