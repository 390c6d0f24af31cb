// What a frame of the progress bar costs, beside its neighbours.  Sizes are device pixels at one per point.
//
//   Frame               what the bar paints when only time has passed
//   CopyPixmap          copying one ready-made picture of the whole bar, with its transparent corners
//   CopyOpaque          copying one without any transparency
//   Repaint             painting the whole bar anew from its shapes
//   ValueChange         changing the value and painting the whole bar
//   RenderFrame         the whole bar through QWidget::render, whose own cost the next one has too
//   RenderQProgressBar  the toolkit's bar
//
// The third number is the bar's value in percent. Each draws to an RGB32 image, as a window's backing store is.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
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
    // What the widget paints when only time has passed, and what when it has to be painted whole.
    void frame() { paint(bar.animatedRect()); }
    void wholeFrame() { paint(bar.rect()); }
    void paint(const QRect& part) {
        QPainter painter(&image);
        bar.paintFrame(painter, part);
    }
    QImage image;
    kelvo::SBProgressBar bar{[] { return seconds; }};
};

void Frame(benchmark::State& state) {
    Stage stage(state);
    // Until the stripes have gone round a few times and all that a bar at rest keeps has been painted.
    for (int i = 0; i < 300; ++i) {
        seconds += kFrameSeconds;
        stage.frame();
    }
    for (auto _ : state) {
        seconds += kFrameSeconds;
        stage.frame();
    }
}

void copy(benchmark::State& state, const QPixmap& picture) {
    Stage stage(state);
    for (auto _ : state) {
        QPainter painter(&stage.image);
        painter.drawPixmap(0, 0, picture);
    }
}

void CopyPixmap(benchmark::State& state) {
    Stage stage(state);
    QPixmap picture(stage.image.size());
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        stage.bar.paintFrame(painter, stage.bar.rect());
    }
    copy(state, picture);
}

void CopyOpaque(benchmark::State& state) {
    Stage stage(state);
    stage.wholeFrame();
    copy(state, QPixmap::fromImage(stage.image));
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
        // All of the device's 199 steps, in an order that comes near to none twice in a row.
        step = (step + 74) % 199;
        stage.bar.setFloatValue(step / 199.0);
        stage.wholeFrame();
    }
}

void render(benchmark::State& state, QWidget& widget) {
    QImage image(sizeOf(state), QImage::Format_RGB32);
    image.fill(Qt::white);
    widget.resize(image.size());
    widget.render(&image, {}, {}, {});
    for (auto _ : state) {
        seconds += kFrameSeconds;
        widget.render(&image, {}, {}, {});
    }
}

void RenderFrame(benchmark::State& state) {
    kelvo::SBProgressBar bar([] { return seconds; });
    bar.setFloatValue(valueOf(state));
    render(state, bar);
}

void RenderQProgressBar(benchmark::State& state) {
    QProgressBar bar;
    bar.setTextVisible(false);
    bar.setValue(static_cast<int>(state.range(2)));
    render(state, bar);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const std::int64_t percent : {50, 100}) {
        benchmark->Args({200, 20, percent})->Args({1600, 160, percent});
    }
    benchmark->Unit(benchmark::kMicrosecond);
}

/// More widths of a full bar as high as the smaller one, to see how the cost grows.
void widths(benchmark::internal::Benchmark* benchmark) {
    for (const std::int64_t width : {400, 800, 1200, 1600}) {
        benchmark->Args({width, 20, 100});
    }
}

BENCHMARK(Frame)->Apply(sizes)->Apply(widths);
BENCHMARK(CopyPixmap)->Apply(sizes)->Apply(widths);
BENCHMARK(CopyOpaque)->Apply(sizes);
BENCHMARK(Repaint)->Apply(sizes);
BENCHMARK(ValueChange)->Apply(sizes)->Apply(widths);
BENCHMARK(RenderFrame)->Apply(sizes);
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
