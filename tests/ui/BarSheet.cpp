// Draws bars of many values, sizes and resolutions on one sheet to look at.  bar-sheet OUTPUT.png

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <vector>

#include "SBProgressBar.h"

namespace {

constexpr QSize kSheet(1680, 1180);
constexpr int kHalf = kSheet.height() / 2;
constexpr double kTime = 0.1;

struct Bar {
    QPoint place;
    QSize size;
    double value = 0.0;
    bool tinted = false;
    double ratio = 1.0;
};

std::vector<Bar> barsOfOneHalf() {
    std::vector<Bar> bars;
    int y = 40;
    for (const double value : {0.0, 0.01, 0.1, 0.5, 0.995, 1.0}) {
        bars.push_back({{80, y}, {200, 20}, value, false, 1.0});
        bars.push_back({{310, y}, {200, 20}, value, true, 1.0});
        bars.push_back({{540, y}, {200, 20}, value, false, 2.0});
        bars.push_back({{970, y}, {200, 20}, value, true, 2.0});
        bars.push_back({{1400, y}, {20, 20}, value, false, 1.0});
        bars.push_back({{1440, y}, {20, 20}, value, true, 1.0});
        bars.push_back({{1490, y}, {20, 20}, value, false, 2.0});
        bars.push_back({{1560, y}, {20, 20}, value, true, 2.0});
        y += 58;
    }
    for (const double value : {0.01, 0.5, 1.0}) {
        bars.push_back({{40, y}, {1600, 40}, value, value == 1.0, 1.0});
        y += 56;
    }
    return bars;
}

void drawBar(QImage& sheet, const Bar& look, int top) {
    double now = 0.0;
    kelvo::SBProgressBar stepped([&now] { return now; });
    stepped.resize(look.size);
    stepped.setFloatValue(look.value);
    if (look.tinted) {
        stepped.setColorTint(QColor(0, 90, 255));
    }
    now = kTime;
    sheet.setDevicePixelRatio(look.ratio);
    QPainter painter(&sheet);
    painter.translate(QPointF(look.place + QPoint(0, top)) / look.ratio);
    stepped.render(&painter, {}, {}, {});
}

void drawLabels(QImage& sheet, int top, const QColor& color) {
    sheet.setDevicePixelRatio(1.0);
    QPainter painter(&sheet);
    painter.setPen(color);
    painter.drawText(80, top + 24, "200 x 20, 1x");
    painter.drawText(310, top + 24, "tinted");
    painter.drawText(540, top + 24, "200 x 20, 2x");
    painter.drawText(970, top + 24, "tinted");
    painter.drawText(1400, top + 24, "20 x 20, 1x");
    painter.drawText(1490, top + 24, "2x");
    int y = 55;
    for (const char* const value : {"0", "0.01", "0.1", "0.5", "0.995", "1.0"}) {
        painter.drawText(30, top + y, value);
        y += 58;
    }
    painter.drawText(40, top + y - 20, "1600 x 40, 1x: 0.01, 0.5, 1.0 tinted");
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: bar-sheet OUTPUT.png\n");
        return 2;
    }
    QImage sheet(kSheet, QImage::Format_RGB32);
    sheet.fill(QColor(239, 240, 241));
    QPainter(&sheet).fillRect(0, kHalf, kSheet.width(), kHalf, QColor(42, 46, 50));
    for (const int top : {0, kHalf}) {
        drawLabels(sheet, top, top == 0 ? Qt::black : Qt::white);
        for (const Bar& bar : barsOfOneHalf()) {
            drawBar(sheet, bar, top);
        }
    }
    sheet.setDevicePixelRatio(1.0);
    if (!sheet.save(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "bar-sheet: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
