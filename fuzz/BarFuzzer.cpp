// The progress bar and the layers below it under random operations on a clock that the fuzzer steps.

#include <QPainter>
#include <cmath>
#include <limits>
#include <memory>

#include "FuzzInput.h"
#include "FuzzedController.h"
#include "SBProgressBarStage.h"

using kelvo::fuzz::check;
using kelvo::fuzz::FuzzInput;

namespace {

double strangeNumber(FuzzInput& input) {
    constexpr double kStrange[] = {0.0,
                                   -0.0,
                                   1.0,
                                   1.01,
                                   -0.01,
                                   0.5,
                                   1e-300,
                                   1e300,
                                   std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   3.0,
                                   -3.0};
    const std::size_t choice = input.below(32);
    return choice < std::size(kStrange) ? kStrange[choice] : input.byte() / 255.0;
}

class BarRun {
public:
    explicit BarRun(FuzzInput input) : input_(input) {
        while (!input_.empty()) {
            step();
            checkLook();
        }
        QCoreApplication::processEvents();
        checkLook();
    }

private:
    kelvo::SBProgressBar& bar() { return stage_.bar; }

    void step() {
        switch (input_.below(16)) {
            case 0:
                return setValue(strangeNumber(input_), false);
            case 1:
                return setValue(strangeNumber(input_), true);
            case 2:
                return bar().setHidden(input_.below(2) == 0);
            case 3:
                return bar().setAnimates(input_.below(2) == 0);
            case 4:
                return bar().setAnimationDuration(strangeNumber(input_));
            case 5:
                return bar().setBorderWidth(strangeNumber(input_));
            case 6:
                return bar().setShadowWidth(strangeNumber(input_));
            case 7:
                return bar().setColorTint(
                    input_.below(2) == 0 ? std::nullopt : std::optional(QColor(0, 0, input_.byte(), input_.byte())));
            case 8:
                return bar().setColorTintOpacity(strangeNumber(input_));
            case 9:
                return bar().setBackgroundColors(std::vector<QColor>(input_.below(4), QColor(input_.byte(), 0, 0)));
            case 10:
                bar().resize(static_cast<int>(input_.below(100)), static_cast<int>(input_.below(30)));
                return bar().resizeLayers();
            case 11:
                return bar().setStripesImage(kelvo::SBProgressBar::stripesImageWithSize(
                    {static_cast<double>(input_.below(40)), static_cast<double>(input_.below(40))}));
            case 12:
                stage_.shot(0.5 + static_cast<double>(input_.below(4)) / 2);
                return;
            case 13:
                bar().setVisible(input_.below(2) == 0);
                return;
            case 14:
                QCoreApplication::processEvents();
                return;
            default:
                return stage_.step(static_cast<double>(input_.byte()) / 100.0);
        }
    }
    void setValue(double value, bool animated) {
        const double before = bar().floatValue();
        try {
            animated ? bar().animator().setFloatValue(value) : bar().setFloatValue(value);
            check(value >= 0.0 && value <= 1.0, "a value out of range is refused");
            check(animated || bar().floatValue() == value, "a value in range is stored");
        } catch (const kelvo::InvalidValue&) {
            check(!(value >= 0.0 && value <= 1.0), "only a value out of range is refused");
            check(bar().floatValue() == before, "a refused value changes nothing");
        }
    }
    void checkLook() {
        check(bar().floatValue() >= 0.0 && bar().floatValue() <= 1.0, "the value stays in range");
        const kelvo::RingLook ring = {.borderWidth = bar().borderWidth(), .shadowWidth = bar().shadowWidth()};
        check(std::isfinite(ring.borderWidth) && std::isfinite(ring.shadowWidth), "widths stay finite");
        check(ring.shadowWidth <= ring.borderWidth, "the shadow is never wider than the border");
        for (kelvo::Layer* const layer :
             {&bar().rootLayer(), &bar().clipLayer(), &bar().innerClipLayer(), &bar().stripesLayer()}) {
            const QRectF frame = layer->frame();
            check(std::isfinite(frame.x()) && std::isfinite(frame.width()) && frame.width() >= 0.0,
                  "frames stay finite");
        }
    }

    FuzzInput input_;
    /// Small, because more pixels cost time and reveal no more errors.
    kelvo::BarStage stage_{60, 12};
};

class LayerRun {
public:
    explicit LayerRun(FuzzInput input) : input_(input) {
        for (auto& layer : layers_) {
            layer = std::make_unique<kelvo::Layer>(scene_);
        }
        scene_.setRoot(layers_[0].get());
        while (!input_.empty()) {
            step();
        }
        scene_.update();
        // Each completion block starts another fade with a completion block, so they never end.
        for (int i = 0; i < 100 && scene_.isEnding(); ++i) {
            seconds_ += 1e6;
            scene_.update();
        }
        check(completed_ <= blocks_, "no completion block runs twice");
    }

private:
    /// Layer 0 is the root. A superlayer always has a smaller number, so there is never a cycle.
    kelvo::Layer& layer(std::size_t number) { return *layers_[number]; }

    void step() {
        const std::size_t number = input_.below(layers_.size());
        kelvo::Layer& target = layer(number);
        switch (input_.below(14)) {
            case 0:
                return scene_.begin();
            case 1:
                return scene_.commit();
            case 2:
                return scene_.setDisableActions(input_.below(2) == 0);
            case 3:
                ++blocks_;
                return scene_.setCompletionBlock([this, id = blocks_] { complete(id); });
            case 4:
                return target.setOpacity(static_cast<float>(strangeNumber(input_)));
            case 5:
                return target.setFrame({strangeNumber(input_), 1.0, input_.byte() * 1.0, input_.byte() * 1.0});
            case 6:
                if (number > 0) {
                    layer(input_.below(number)).addSublayer(target);
                }
                return;
            case 7:
                return target.addAnimation({.keyPath = input_.below(2) == 0 ? "opacity" : "position.x",
                                            .fromValue = strangeNumber(input_),
                                            .toValue = strangeNumber(input_),
                                            .duration = strangeNumber(input_),
                                            .repeatCount = strangeNumber(input_),
                                            .removedOnCompletion = input_.below(2) == 0},
                                           std::string(1, static_cast<char>('a' + input_.below(3))));
            case 8:
                return target.removeAnimation(std::string(1, static_cast<char>('a' + input_.below(3))));
            case 9:
                target.setCornerRadius(strangeNumber(input_));
                return target.setMasksToBounds(input_.below(2) == 0);
            case 10:
                return target.setBackground(kelvo::Layer::Gradient{QColor(input_.byte(), 10, 20)});
            case 11:
                if (number > 0) {
                    layers_[number] = std::make_unique<kelvo::Layer>(scene_);
                }
                return;
            default:
                seconds_ += input_.byte() / 100.0;
                return scene_.update();
        }
    }
    void complete(int) {
        ++completed_;
        // A completion may change layers while other animations end.
        layers_[0]->setOpacity(layers_[0]->opacity() == 0.0F ? 1.0F : 0.0F);
    }

    FuzzInput input_;
    double seconds_ = 0.0;
    int blocks_ = 0;
    int completed_ = 0;
    kelvo::LayerScene scene_{[this] { return seconds_; }};
    std::array<std::unique_ptr<kelvo::Layer>, 6> layers_;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    kelvo::fuzz::startToolkit();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    if (input.below(2) == 0) {
        const BarRun run(input);
    } else {
        const LayerRun run(input);
    }
    return 0;
}
