#pragma once

#include <QColor>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>
#include <vector>

#include "layers/BasicAnimation.h"
#include "layers/GradientLayer.h"
#include "layers/Layer.h"
#include "layers/LayerView.h"

namespace kelvo {

class SBProgressBarFrame;

/// A progress value outside 0.0 to 1.0. A mistake of the program, not of the user.
class InvalidValue : public std::exception {
public:
    const char* name() const noexcept { return "Invalid value"; }
    const char* reason() const noexcept {
        return "Invalid value passed for `setFloatValue:`. Value must be between 0.0 and 1.0";
    }
    const char* what() const noexcept override { return reason(); }
};

/// How the border ring and the highlight are drawn. Widths in points.
struct RingLook {
    double borderWidth = 1.0;
    double shadowWidth = 1.0;
    QColor borderColor{};
    bool operator==(const RingLook&) const = default;
};

/// A pill-shaped progress bar: a grey trough with a thin border, a light fill whose width follows floatValue, faint
/// diagonal stripes that scroll over the fill without end, an optional tint, and a light line just inside the fill's
/// upper edge. The look is a tree of retained layers; all lengths are points, y grows downward.
///
/// Main thread only, except floatValue and setFloatValue. hide() and show() are the base class's: they act at once,
/// setHidden fades.
class SBProgressBar : public LayerView {
public:
    /// Sets properties the animated way, as defaultAnimationForKey tells.
    class Animator {
    public:
        explicit Animator(SBProgressBar& bar) : bar_(bar) {}
        /// Moves floatValue to `value` over the animation's duration; the value is refused as by setFloatValue. A
        /// direct change of the value, by any thread, ends the movement and stays.
        void setFloatValue(double value) { bar_.animateFloatValue(value); }

    private:
        SBProgressBar& bar_;
    };

    explicit SBProgressBar(QWidget* parent = nullptr);
    /// `clock` is the time that all animation runs by.
    explicit SBProgressBar(LayerClock clock, QWidget* parent = nullptr);
    ~SBProgressBar() override;

    /// The fraction shown, 0.0 to 1.0. Any thread.
    double floatValue() const { return std::abs(floatValue_.load()); }
    /// Throws InvalidValue, and changes nothing, for a value below 0.0, above 1.0 or not a number. Any thread, as long
    /// as the bar lives: the value is stored at once; the layers follow at once on the main thread, and from another
    /// thread at the main thread's next turn.
    void setFloatValue(double value);
    Animator animator() { return Animator(*this); }

    /// Colour of the layer over the fill; none by default.
    const std::optional<QColor>& colorTint() const { return colorTint_; }
    void setColorTint(std::optional<QColor> color);
    double colorTintOpacity() const { return colorTintOpacity_; }
    void setColorTintOpacity(double opacity);

    /// Whether the stripes scroll. Turned off, they fade out and stop when the fade has ended.
    bool animates() const { return animates_; }
    void setAnimates(bool animates);
    /// Seconds in which the stripes move by one tile.
    double animationDuration() const { return animationDuration_; }
    void setAnimationDuration(double seconds);

    /// Width of the border line and inset of the fill. Like border colour, shadow width and stripes image it is stored
    /// at once and shows from the next resizeLayers on.
    double borderWidth() const { return ring_.borderWidth; }
    /// Pulls shadowWidth down with it. A width below zero is ignored, as is, for these two widths and the duration, a
    /// value that is not finite.
    void setBorderWidth(double width);
    const QColor& borderColor() const { return ring_.borderColor; }
    void setBorderColor(const QColor& color);
    /// How far the highlight lies below the ring.
    double shadowWidth() const { return ring_.shadowWidth; }
    /// A width above borderWidth is logged and refused.
    void setShadowWidth(double width);
    const LayerImage& stripesImage() const { return stripesImage_; }
    void setStripesImage(LayerImage image);
    /// The trough's gradient, from top to bottom.
    const std::vector<QColor>& backgroundColors() const { return backgroundColors_; }
    void setBackgroundColors(std::vector<QColor> colors);

    /// The hidden state last asked for with setHidden.
    bool sb_isHidden() const { return sb_isHidden_; }
    void setSb_isHidden(bool hidden) { sb_isHidden_ = hidden; }
    /// Fades the bar out and then hides it, or shows it and fades it in. A bar that is fading out counts as hidden, so
    /// that a show before the end of the fade wins.
    void setHidden(bool hidden);

    Layer& rootLayer() { return rootLayer_; }
    Layer& clipLayer() { return clipLayer_; }
    GradientLayer& backgroundLayer() { return backgroundLayer_; }
    Layer& borderLayer() { return borderLayer_; }
    Layer& innerClipLayer() { return innerClipLayer_; }
    GradientLayer& fillLayer() { return fillLayer_; }
    Layer& stripesLayer() { return stripesLayer_; }
    Layer& innerShadowLayer() { return innerShadowLayer_; }
    Layer& colorTintLayer() { return colorTintLayer_; }

    void reloadColorTint();
    void reloadBackground();
    /// Lays out all layers for the present size.
    void resizeLayers();
    /// Lays out what depends on floatValue. The caller has a transaction open.
    void resizeInnerLayers();
    /// The bar has come into a window: one more registration for its frame changes.
    void viewDidMoveToWindow();
    /// Called once per registration when the frame has changed.
    virtual void viewResized();

    /// Ease in, ease out for "floatValue"; the base class's answer for other keys, which is none.
    static std::optional<BasicAnimation> defaultAnimationForKey(std::string_view key);
    BasicAnimation stripesAnimation() const;
    BasicAnimation fadeAnimationVisible(bool visible) const;

    /// The stripe tile: white with a black diagonal band.
    static LayerImage stripesImageWithSize(QSizeF size);
    /// The border ring for a layer of `size`, with or without the highlight below it; empty for an empty size. The
    /// image draws with the bar's widths and colour of the moment, so it must not be drawn after the bar's end.
    LayerImage borderImageForSize_withInnerShadow(QSizeF size, bool innerShadow) const;

    /// The ring's look when the fill was last laid out.
    const RingLook& shownRing() const { return shownRing_; }
    /// The layers' revision, not counting the changes that only followed floatValue.
    std::uint64_t lookRevision() const { return scene().revision() - layoutRevisions_; }

    QRect animatedRect() const override;
    QSize sizeHint() const override;

protected:
    void drawLayers(QPainter& painter, double ratio, const QRect& part) override;
    void layersAdvanced() override;
    /// Called when the whole percentage has changed; tells assistive tools.
    virtual void announce(int percent);
    bool event(QEvent* event) override;

private:
    static constexpr float kStripesOpacity = 0.04F;

    void setUp();
    /// The border images as a layer keeps them, with the widths and colour of this moment. Of the second one only what
    /// falls inside the ring: the ring itself would show through the soft edge of the fill's clip.
    LayerImage keptBorderImage(QSizeF size) const;
    LayerImage keptInnerShadow(QSizeF size) const;
    bool alphaIsFading() const;
    void showFloatValue();
    void animateFloatValue(double value);
    void hideFading();
    void showFading();

    // Negative, also at zero, while it is what an animation stored: a direct set to the same value tells itself.
    std::atomic<double> floatValue_ = 0.0;
    std::atomic<bool> layoutQueued_ = false;
    std::thread::id mainThread_ = std::this_thread::get_id();
    std::optional<QColor> colorTint_;
    double colorTintOpacity_ = static_cast<double>(0.2F);
    bool animates_ = false;
    double animationDuration_ = 0.3;
    RingLook ring_;
    RingLook shownRing_;
    LayerImage stripesImage_;
    std::vector<QColor> backgroundColors_;
    bool sb_isHidden_ = false;
    bool fadingOut_ = false;
    int frameRegistrations_ = 0;
    QWidget* knownWindow_ = nullptr;
    int announcedPercent_ = 0;
    std::uint64_t layoutRevisions_ = 0;
    // What the running animation of floatValue stored last.
    double animatedValue_ = 0.0;

    Layer rootLayer_{scene()};
    Layer clipLayer_{scene()};
    GradientLayer backgroundLayer_{scene()};
    Layer borderLayer_{scene()};
    Layer innerClipLayer_{scene()};
    GradientLayer fillLayer_{scene()};
    Layer stripesLayer_{scene()};
    Layer innerShadowLayer_{scene()};
    Layer colorTintLayer_{scene()};
    std::unique_ptr<SBProgressBarFrame> frame_;
};

}  // namespace kelvo
