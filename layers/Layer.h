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

/// A rectangle that keeps its painted picture: a background and contents over it. Its sublayers lie over both. Lengths
/// are points, y grows downward. A change shows at the next frame. Main thread.
class Layer {
public:
    /// A gradient from top to bottom with its colours at even distances. One colour is plain, none is no background.
    using Gradient = std::vector<QColor>;
    /// An image is repeated from the upper left corner.
    using Background = std::variant<Gradient, LayerImage>;

    explicit Layer(LayerScene& scene) : scene_(scene) {}
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    /// The rectangle in the superlayer's coordinates. Setting it places the anchor point; sizes below zero count as
    /// zero.
    QRectF frame() const;
    void setFrame(const QRectF& frame);
    /// The rectangle in the layer's own coordinates, in which its sublayers lie. It begins at (0, 0).
    QRectF bounds() const { return {{}, size_}; }
    /// The point of the bounds that lies at the position, from (0, 0) for the upper left to (1, 1) for the lower right
    /// corner; (0.5, 0.5) at first.
    QPointF anchorPoint() const { return anchorPoint_; }
    void setAnchorPoint(QPointF anchorPoint) { set(anchorPoint_, anchorPoint); }
    QPointF position() const { return position_; }

    /// Rounds the background and, with masksToBounds, the clip; at most half of the shorter side is used.
    double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius);
    /// Whether the layer and its sublayers are cut off at the bounds.
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);

    float opacity() const { return opacity_; }
    /// Fades from what is shown to the new value in LayerScene::kDefaultDuration, unless actions are disabled or the
    /// layer has no superlayer and is not the root. The same value again changes nothing.
    void setOpacity(float opacity);

    const Background& background() const { return background_; }
    void setBackground(Background background);
    const LayerImage& contents() const { return contents_; }
    /// The image, which may be empty, is stretched over the bounds.
    void setContents(LayerImage contents);

    /// Puts the layer above the sublayers that are there. It leaves the superlayer it had.
    void addSublayer(Layer& layer);
    const std::vector<Layer*>& sublayers() const { return sublayers_; }
    Layer* superlayer() const { return superlayer_; }

    /// Starts now; replaces the animation under the same key.
    void addAnimation(BasicAnimation animation, const std::string& key);
    /// The animation under the key as it was added, with its default duration filled in; null if there is none.
    const BasicAnimation* animation(const std::string& key) const;
    void removeAnimation(const std::string& key);

    /// What is shown now.
    QRectF shownFrame() const { return frame().translated(shownPosition() - position_); }
    QPointF shownPosition() const;
    float shownOpacity() const;

    /// Background and contents at `ratio` pixels per point. They are painted when they are first asked for and kept
    /// until they change. Null if there is nothing to see.
    const QImage& picture(double ratio) const;
    /// How much of each pixel the layer lets through, kept in the same way.
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
