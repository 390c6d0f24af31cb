// Measures the progress bar. Sizes are device pixels at one per point.
//
//   Frame               painting a frame when only time has passed
//   ValueChange         changing the value and painting the bar
//   Repaint             painting the bar from its shapes
//   RenderQProgressBar  painting the toolkit's bar
//
// The third number is the bar's value in percent. All draw to an RGB32 image, the format of a window's backing store.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QProgressBar>
#include <cmath>

#include "RepaintingBar.h"
#include "SBProgressBar.h"

namespace {

constexpr double kFrameSeconds = 1.0 / 60.0;

double seconds = 0.0;

QSize sizeOf(const benchmark::State& state) {
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
}

double valueOf(const benchmark::State& state) {
    return static_cast<double>(state.range(2)) / 100.0;
}

struct Stage {
    explicit Stage(const benchmark::State& state) : image(sizeOf(state), QImage::Format_RGB32) {
        image.fill(QColor(239, 240, 241));
        bar.setAttribute(Qt::WA_DontShowOnScreen);
        bar.resize(image.size());
        bar.show();
        bar.setFloatValue(valueOf(state));
    }
    void frame() {
        QPainter painter(&image);
        bar.paintFrame(painter);
    }
    QImage image;
    kelvo::SBProgressBar bar{[] { return seconds; }};
};

void Frame(benchmark::State& state) {
    Stage stage(state);
    for (auto _ : state) {
        seconds += kFrameSeconds;
        stage.frame();
    }
}

void Repaint(benchmark::State& state) {
    Stage stage(state);
    for (auto _ : state) {
        seconds += kFrameSeconds;
        QPainter painter(&stage.image);
        kelvo::paintWholeBar(painter, stage.image.size(), valueOf(state), 30.0 * std::fmod(seconds / 0.3, 1.0));
    }
}

void ValueChange(benchmark::State& state) {
    Stage stage(state);
    int step = 0;
    for (auto _ : state) {
        seconds += kFrameSeconds;
        // All of the device's 199 steps, in an order in which successive values are far apart.
        step = (step + 74) % 199;
        stage.bar.setFloatValue(step / 199.0);
        stage.frame();
    }
}

void RenderQProgressBar(benchmark::State& state) {
    QProgressBar bar;
    bar.setTextVisible(false);
    bar.setValue(static_cast<int>(state.range(2)));
    QImage image(sizeOf(state), QImage::Format_RGB32);
    image.fill(Qt::white);
    bar.resize(image.size());
    bar.render(&image, {}, {}, {});
    for (auto _ : state) {
        bar.render(&image, {}, {}, {});
    }
}

/// The bar of the loading window at one and at two pixels per point.
void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const std::int64_t percent : {50, 100}) {
        benchmark->Args({340, 20, percent})->Args({680, 40, percent});
    }
    benchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK(Frame)->Apply(sizes);
BENCHMARK(ValueChange)->Apply(sizes);
BENCHMARK(Repaint)->Apply(sizes);
BENCHMARK(RenderQProgressBar)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
