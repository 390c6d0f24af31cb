#include <gtest/gtest.h>

#include <QPainter>
#include <cmath>
#include <vector>

#include "ApprovedPicture.h"
#include "Plot.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

PointLevels impulse(double level) {
    PointLevels levels{};
    levels[0] = level;
    return levels;
}

/// Whether these words, drawn alone, look like what is there, which other processors may round a little otherwise.
bool shows(const QImage& picture, const QRectF& place, int alignment, const char* words, int pixelSize = 14,
           QRgb colour = 0xFF222222, const QTransform& turn = {}) {
    QImage alone(picture.size(), QImage::Format_RGB32);
    alone.fill(Qt::white);
    QPainter painter(&alone);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(colour));
    QFont font = painter.font();
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.setTransform(turn);
    painter.drawText(place, alignment, words);
    const QRect area = turn.mapRect(place).toRect().adjusted(0, 4, 0, -4);  // between the words above and below
    for (int row = area.top(); row <= area.bottom(); ++row) {
        for (int column = area.left(); column <= area.right(); ++column) {
            if (std::abs(qGreen(picture.pixel(column, row)) - qGreen(alone.pixel(column, row))) > 3) {
                return false;
            }
        }
    }
    return true;
}

/// Where a curve with its frame and lines is drawn, without the words.
constexpr QRect kTime(91, 55, 884, 260);
constexpr QRect kFrequency(91, 380, 884, 260);

TEST(Plot, drawsItsCurvesWithTheirFramesAndLines) {
    WaveFacts steps;  // of 1.0 and then -0.5
    std::fill(steps.levels.begin(), steps.levels.begin() + 256, 1.0);
    std::fill(steps.levels.begin() + 256, steps.levels.end(), -0.5);
    WaveFacts quiet;
    quiet.levels.fill(0.002);
    WaveFacts slope{.levels = impulse(0.5)};  // 0 dB at 20 Hz, -14.5 dB at 19.4 kHz
    slope.levels[1] = 0.5;
    WaveFacts notch{.levels = impulse(-0.5)};  // at 11025 Hz, far below the frame
    notch.levels[2] = -0.5;
    // The file, much quieter, is drawn at the level of the points.
    const WaveFacts withFile{
        .levels = impulse(0.5), .level = -6.02, .whole = RecordingFacts{.rate = 48000, .second = {0.01, 0.01}}};
    const std::pair<WaveFacts, QRect> curves[] = {{{}, kTime},           {{}, kFrequency},    {steps, kTime},
                                                  {quiet, kTime},        {slope, kFrequency}, {notch, kFrequency},
                                                  {withFile, kFrequency}};
    QImage all(kTime.width(), kTime.height() * static_cast<int>(std::size(curves)), QImage::Format_RGB32);
    QPainter painter(&all);
    for (const auto& [wave, area] : curves) {
        painter.drawImage(0, 0, plotWave("a.wav", wave).copy(area));
        painter.translate(0, area.height());
    }
    EXPECT_TRUE(test::isApproved(all, KELVO_GOLDEN "/plot-curves.png"));
}

TEST(Plot, hasItsWordsInTheirPlaces) {
    const WaveFacts wave{.levels = impulse(0.5), .whole = RecordingFacts{.rate = 48000, .second = {0.01}}};
    const QImage picture = plotWave("a.wav", wave);
    EXPECT_TRUE(shows(picture, {96, 14, 874, 30}, Qt::AlignLeft | Qt::AlignVCenter, "a.wav", 19));
    EXPECT_TRUE(shows(picture, {96, 336, 874, 20}, Qt::AlignCenter, "time (ms)"));
    EXPECT_TRUE(shows(picture, {96, 661, 874, 20}, Qt::AlignCenter, "frequency (Hz)"));
    EXPECT_TRUE(shows(picture, {700, 361, 150, 20}, Qt::AlignRight, "what the pedal gets", 14, 0xFF1F4E9C));
    EXPECT_TRUE(shows(picture, {870, 361, 100, 20}, Qt::AlignRight, "the whole file", 14, 0xFFD98A2B));
    const std::pair<const char*, QPointF> centred[] = {{"0", {110.5667, 324}},   {"10", {838.9, 324}},
                                                       {"20", {96, 649}},        {"500", {503.2665, 649}},
                                                       {"1 k", {590.9666, 649}}, {"20 k", {970, 649}}};
    for (const auto& [words, middle] : centred) {
        EXPECT_TRUE(shows(picture, {middle - QPointF(20, 10), QSizeF(40, 20)}, Qt::AlignCenter, words)) << words;
    }
    const std::pair<const char*, double> beside[] = {
        {"-0.5", 304.0476}, {"0", 185}, {"0.25", 125.4762}, {"-60", 635}, {"-10", 426.6667}};
    for (const auto& [words, row] : beside) {
        EXPECT_TRUE(shows(picture, {30, row - 10, 60, 20}, Qt::AlignRight | Qt::AlignVCenter, words)) << words;
    }
    for (const auto& [words, row] : {std::pair("level (full scale = 1)", 185), {"gain (dB)", 510}}) {
        const QTransform upwards = QTransform::fromTranslate(14, row).rotate(-90);
        EXPECT_TRUE(shows(picture, {-150, -10, 300, 20}, Qt::AlignCenter, words, 14, 0xFF222222, upwards)) << words;
    }
}

TEST(Plot, keepsALongTitleInItsLine) {
    const QImage picture = plotWave(QString(5000, 'W'), {});
    for (int row = 0; row < 700; ++row) {
        ASSERT_EQ(picture.pixel(972, row), 0xFFFFFFFF) << row;
    }
}

TEST(SavedPicture, thatCannotBeWrittenSaysWhy) {
    const SampleDir dir;
    const QImage picture(10, 10, QImage::Format_RGB32);
    EXPECT_EQ(savePicture(picture, dir.path("no/x.png").toUtf8()), "No such file or directory");
    EXPECT_EQ(savePicture(picture, dir.path(".").toUtf8()), "it is not a regular file");
    EXPECT_EQ(savePicture(picture, "/dev/full"), "it is not a regular file");
    EXPECT_EQ(savePicture(picture, "\xFF.png"), "its name is not valid UTF-8");
}

}  // namespace
}  // namespace kelvo
