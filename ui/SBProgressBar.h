#pragma once

#include <QColor>
#include <QVariantAnimation>
#include <exception>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "BasicAnimation.h"
#include "Layer.h"
#include "LayerView.h"

namespace kelvo {

/// A progress value outside 0.0 to 1.0, which is a programming error.
class InvalidValue : public std::exception {
public:
    const char* name() const noexcept { return "Invalid value"; }
    const char* reason() const noexcept {
        return "Invalid value passed for `setFloatValue:`. Value must be between 0.0 and 1.0";
    }
    const char* what() const noexcept override { return reason(); }
};

/// The look of the border ring and the highlight. Widths are points.
struct RingLook {
    double borderWidth = 1.0;
    double shadowWidth = 1.0;
    QColor borderColor{};
};

/// A pill-shaped progress bar: a grey trough with a thin border, a light fill whose width follows floatValue, faint
/// diagonal stripes that scroll endlessly over the fill, an optional tint, and a light line just inside the fill's
/// upper edge. The look is a tree of retained layers. All lengths are points, y grows downward.
///
/// Main thread only, except floatValue and setFloatValue. hide() and show() are the base class's and act at once;
/// setHidden fades.
class SBProgressBar : public LayerView {
public:
    /// Sets properties with the animation of defaultAnimationForKey.
    class Animator {
    public:
        explicit Animator(SBProgressBar& bar) : bar_(bar) {}
        /// Animates floatValue to `value`. Throws as the bar's setFloatValue does. A direct change of the value by any
        /// thread ends the animation.
        void setFloatValue(double value) { bar_.animateFloatValue(value); }

    private:
        SBProgressBar& bar_;
    };

    explicit SBProgressBar(QWidget* parent = nullptr);
    /// `clock` is the clock of the layers' animations.
    explicit SBProgressBar(LayerClock clock, QWidget* parent = nullptr);

    /// The fraction shown, 0.0 to 1.0. Any thread.
    double floatValue() const;
    /// Throws InvalidValue, without any change, for a value below 0.0, above 1.0 or not a number. Any thread, as long
    /// as the bar lives. Stores the value at once. The layers change at once on the main thread; after a call from
    /// another thread they change when the main thread next serves events.
    void setFloatValue(double value);
    Animator animator() { return Animator(*this); }

    /// Colour of the layer over the fill; none by default.
    const std::optional<QColor>& colorTint() const { return colorTint_; }
    void setColorTint(std::optional<QColor> color);
    double colorTintOpacity() const { return colorTintOpacity_; }
    void setColorTintOpacity(double opacity);

    /// Whether the stripes scroll. When turned off, they fade out and stop at the end of the fade.
    bool animates() const { return animates_; }
    void setAnimates(bool animates);
    /// Seconds in which the stripes move by one tile.
    double animationDuration() const { return animationDuration_; }
    /// Ignores a value that is not finite.
    void setAnimationDuration(double seconds);

    /// Width of the border line and inset of the fill. Border width, border colour, shadow width and stripes image are
    /// stored at once but show at the next resizeLayers. Ignores widths that are not finite.
    double borderWidth() const { return ring_.borderWidth; }
    /// Also lowers a larger shadowWidth to the new width. With a negative width there is no border, and the fill
    /// extends beyond the bar.
    void setBorderWidth(double width);
    const QColor& borderColor() const { return ring_.borderColor; }
    void setBorderColor(const QColor& color);
    /// Distance of the highlight below the ring.
    double shadowWidth() const { return ring_.shadowWidth; }
    /// Logs a warning and ignores a width above borderWidth.
    void setShadowWidth(double width);
    const LayerImage& stripesImage() const { return stripesImage_; }
    void setStripesImage(LayerImage image);
    /// The trough's gradient, from top to bottom.
    const std::vector<QColor>& backgroundColors() const { return backgroundColors_; }
    void setBackgroundColors(std::vector<QColor> colors);

    /// The hidden state last requested with setHidden.
    bool sb_isHidden() const { return sb_isHidden_; }
    void setSb_isHidden(bool hidden) { sb_isHidden_ = hidden; }
    /// Fades the bar out and then hides it, or shows it and fades it in. A bar that is fading out counts as hidden, so
    /// a show before the end of the fade wins.
    void setHidden(bool hidden);

    Layer& rootLayer() { return rootLayer_; }
    Layer& clipLayer() { return clipLayer_; }
    Layer& backgroundLayer() { return backgroundLayer_; }
    Layer& borderLayer() { return borderLayer_; }
    Layer& innerClipLayer() { return innerClipLayer_; }
    Layer& fillLayer() { return fillLayer_; }
    Layer& stripesLayer() { return stripesLayer_; }
    Layer& innerShadowLayer() { return innerShadowLayer_; }
    Layer& colorTintLayer() { return colorTintLayer_; }

    void reloadColorTint();
    void reloadBackground();
    /// Lays out all layers for the present size.
    void resizeLayers();
    /// Lays out the layers that depend on floatValue. The caller must have an open transaction.
    void resizeInnerLayers();
    /// The bar has moved to a window: adds one more registration for its frame changes.
    void viewDidMoveToWindow();
    /// Called once per registration when the frame has changed.
    virtual void viewResized();

    /// Ease in, ease out for "floatValue"; none for other keys.
    static std::optional<BasicAnimation> defaultAnimationForKey(std::string_view key);
    BasicAnimation stripesAnimation() const;
    BasicAnimation fadeAnimationVisible(bool visible) const;

    /// The stripe tile: white with a black diagonal band.
    static LayerImage stripesImageWithSize(QSizeF size);
    /// The border ring for a layer of `size`, with or without the highlight below it; empty for an empty size. Drawing
    /// reads the bar's current widths and colour, so the bar must outlive the image.
    LayerImage borderImageForSize_withInnerShadow(QSizeF size, bool innerShadow) const;

protected:
    /// Called when the rounded percentage has changed. Notifies assistive tools.
    virtual void announce(int percent);
    bool event(QEvent* event) override;

private:
    static constexpr float kStripesOpacity = 0.04F;

    void setUp();
    // The layers' images, with copies of the current widths and colour. The second one has no ring, which is outside
    // the fill's clip and would show through its soft edge.
    LayerImage borderImageOfNow(QSizeF size) const;
    LayerImage innerShadowOfNow(QSizeF size) const;
    void showFloatValue();
    void animateFloatValue(double value);
    void moveFloatValue(double value);

    mutable std::mutex valueMutex_;
    // Guarded by the mutex:
    double floatValue_ = 0.0;
    bool valueMoves_ = false;
    bool layoutQueued_ = false;
    // Changes floatValue while valueMoves_ is set.
    QVariantAnimation movement_{this};
    int announcedPercent_ = 0;

    std::optional<QColor> colorTint_;
    double colorTintOpacity_ = static_cast<double>(0.2F);
    bool animates_ = false;
    double animationDuration_ = 0.3;
    RingLook ring_;
    LayerImage stripesImage_;
    std::vector<QColor> backgroundColors_;
    bool sb_isHidden_ = false;
    bool fadingOut_ = false;
    int frameRegistrations_ = 0;
    QWidget* knownWindow_ = nullptr;

    Layer rootLayer_{scene()};
    Layer clipLayer_{scene()};
    Layer backgroundLayer_{scene()};
    Layer borderLayer_{scene()};
    Layer innerClipLayer_{scene()};
    Layer fillLayer_{scene()};
    Layer stripesLayer_{scene()};
    Layer innerShadowLayer_{scene()};
    Layer colorTintLayer_{scene()};
};

}  // namespace kelvo
