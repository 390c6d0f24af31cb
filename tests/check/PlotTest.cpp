#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QPainter>
#include <cmath>
#include <functional>
#include <vector>

#include "Plot.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

using testing::ElementsAre;

// Where the two curves are drawn.
constexpr QRect kTimeArea(97, 61, 872, 248);
constexpr QRect kFrequencyArea(97, 386, 872, 248);

PointLevels impulse(double level) {
    PointLevels levels{};
    levels[0] = level;
    return levels;
}

QImage plotPoints(const QString& title, const PointLevels& levels) {
    return plotWave(title, {.levels = levels});
}

bool isCurve(QRgb pixel) {
    return qBlue(pixel) - qRed(pixel) > 60;
}

bool isFilesCurve(QRgb pixel) {
    return qRed(pixel) - qBlue(pixel) > 60;
}

/// The middle of a curve's rows in a column; -1 where there is no curve.
int curveRow(const QImage& picture, const QRect& area, int column, bool (*isOfCurve)(QRgb) = isCurve) {
    int sum = 0;
    int count = 0;
    for (int row = area.top(); row <= area.bottom(); ++row) {
        if (isOfCurve(picture.pixel(column, row))) {
            sum += row;
            ++count;
        }
    }
    return count == 0 ? -1 : sum / count;
}

int curvePixels(const QImage& picture, const QRect& area) {
    int count = 0;
    for (int column = area.left(); column <= area.right(); ++column) {
        for (int row = area.top(); row <= area.bottom(); ++row) {
            count += isCurve(picture.pixel(column, row)) ? 1 : 0;
        }
    }
    return count;
}

// How much darker than paper a line of one pixel is, all its pixels together.
constexpr int kGridLine = 34;
constexpr int kFrameLine = 221;

/// The middles of the lines of this darkness in a row or a column of the picture.
std::vector<int> linesAcross(int darkness, int first, int last, const std::function<QRgb(int)>& pixel) {
    std::vector<int> middles;
    int begin = first;
    int sum = 0;
    for (int at = first; at <= last; ++at) {
        const int here = 255 - qGreen(pixel(at));
        if (here == 0) {
            if (std::abs(sum - darkness) <= darkness / 5) {
                middles.push_back((begin + at - 1) / 2);
            }
            begin = at + 1;
            sum = 0;
        }
        sum += here;
    }
    return middles;
}

std::vector<int> linesInRow(const QImage& picture, int darkness, int row) {
    return linesAcross(darkness, 92, 980, [&](int column) { return picture.pixel(column, row); });
}

std::vector<int> linesInColumn(const QImage& picture, int darkness, int column) {
    return linesAcross(darkness, 50, 638, [&](int row) { return picture.pixel(column, row); });
}

/// Whether these words, drawn alone, look like what is there, which other processors may round a little otherwise.
bool shows(const QImage& picture, const QRectF& place, int alignment, const char* words, int pixelSize = 14) {
    QImage alone(picture.size(), QImage::Format_RGB32);
    alone.fill(Qt::white);
    QPainter painter(&alone);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0x22, 0x22, 0x22));
    QFont font = painter.font();
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.drawText(place, alignment, words);
    const QRect area = place.toRect().adjusted(0, 4, 0, -4);  // between the words above and below
    for (int row = area.top(); row <= area.bottom(); ++row) {
        for (int column = area.left(); column <= area.right(); ++column) {
            if (std::abs(qGreen(picture.pixel(column, row)) - qGreen(alone.pixel(column, row))) > 3) {
                return false;
            }
        }
    }
    return true;
}

TEST(Plot, hasItsFramesAndLinesInTheirPlaces) {
    const QImage picture = plotPoints("a.wav", {});
    EXPECT_EQ(picture.size(), QSize(1000, 700));
    EXPECT_EQ(picture.pixel(2, 2), 0xFFFFFFFF);
    EXPECT_EQ(picture.pixel(997, 697), 0xFFFFFFFF);
    EXPECT_THAT(linesInRow(picture, kFrameLine, 100), ElementsAre(95, 969));
    EXPECT_THAT(linesInRow(picture, kGridLine, 100), ElementsAre(110, 255, 401, 547, 692, 838));
    EXPECT_THAT(linesInRow(picture, kFrameLine, 450), ElementsAre(95, 969));
    EXPECT_THAT(linesInRow(picture, kGridLine, 450), ElementsAre(211, 299, 386, 502, 590, 678, 794, 881));
    EXPECT_THAT(linesInColumn(picture, kFrameLine, 150), ElementsAre(59, 309, 384, 634));
    EXPECT_THAT(linesInColumn(picture, kGridLine, 150),
                ElementsAre(65, 124, 244, 303, 426, 467, 509, 551, 592));  // the curve is on that of 0
}

TEST(Plot, hasItsWordsInTheirPlaces) {
    const QImage picture = plotPoints("a.wav", {});
    struct Label {
        const char* words;
        double place;
    };
    EXPECT_TRUE(shows(picture, {96, 14, 874, 30}, Qt::AlignLeft | Qt::AlignVCenter, "a.wav", 19));
    EXPECT_TRUE(shows(picture, {96, 336, 874, 20}, Qt::AlignCenter, "time (ms)"));
    EXPECT_TRUE(shows(picture, {96, 661, 874, 20}, Qt::AlignCenter, "frequency (Hz)"));
    for (const auto& [words, column] :
         {Label{"0", 110.5667}, {"2", 256.2333}, {"4", 401.9}, {"6", 547.5667}, {"8", 693.2333}, {"10", 838.9}}) {
        EXPECT_TRUE(shows(picture, {column - 40, 314, 80, 20}, Qt::AlignCenter, words)) << words;
    }
    for (const auto& [words, column] : {Label{"20", 96},
                                        {"50", 211.9332},
                                        {"100", 299.6333},
                                        {"200", 387.3333},
                                        {"500", 503.2665},
                                        {"1 k", 590.9666},
                                        {"2 k", 678.6667},
                                        {"5 k", 794.5999},
                                        {"10 k", 882.2999},
                                        {"20 k", 970}}) {
        EXPECT_TRUE(shows(picture, {column - 20, 639, 40, 20}, Qt::AlignCenter, words)) << words;
    }
    for (const auto& [words, row] : {Label{"-0.001", 304.0476},
                                     {"-0.0005", 244.5238},
                                     {"0", 185},
                                     {"0.0005", 125.4762},
                                     {"0.001", 65.9524},
                                     {"-60", 635},
                                     {"-50", 593.3333},
                                     {"-40", 551.6667},
                                     {"-30", 510},
                                     {"-20", 468.3333},
                                     {"-10", 426.6667},
                                     {"0", 385}}) {
        EXPECT_TRUE(shows(picture, {30, row - 10, 60, 20}, Qt::AlignRight | Qt::AlignVCenter, words)) << words;
    }
}

TEST(Plot, drawsTheLevelsOverTime) {
    PointLevels levels;
    std::fill(levels.begin(), levels.begin() + 256, 1.0);
    std::fill(levels.begin() + 256, levels.end(), -0.5);
    const QImage picture = plotPoints("a.wav", levels);
    EXPECT_EQ(curveRow(picture, kTimeArea, 103), -1);          // before 0 ms
    EXPECT_NEAR(curveRow(picture, kTimeArea, 300), 66, 1);     // 1.0 of 1.05
    EXPECT_NEAR(curveRow(picture, kTimeArea, 529), 66, 1);     // 5.75 ms
    EXPECT_NEAR(curveRow(picture, kTimeArea, 537), 244.5, 1);  // 5.84 ms
    EXPECT_NEAR(curveRow(picture, kTimeArea, 952), 244.5, 1);
    EXPECT_EQ(curveRow(picture, kTimeArea, 960), -1);  // after 11.6 ms
}

TEST(Plot, drawsItsCurveInDarkBlueAPixelAndAHalfWide) {
    PointLevels levels;
    levels.fill(0.6);
    levels[0] = 1.0;
    const QImage picture = plotPoints("a.wav", levels);
    EXPECT_EQ(picture.pixel(560, 111), 0xFFFFFFFF);
    EXPECT_EQ(picture.pixel(560, 113), 0xFF1F4E9C);  // from 112.8 to 114.3
    EXPECT_EQ(picture.pixel(560, 115), 0xFFFFFFFF);
}

TEST(Plot, drawsAQuietResponseAsLargeAsALoudOne) {
    PointLevels quiet;
    quiet.fill(0.002);
    EXPECT_NEAR(curveRow(plotPoints("a.wav", quiet), kTimeArea, 500), 66, 1);
}

TEST(Plot, drawsTheGainOverTheFrequency) {
    const QImage picture = plotPoints("a.wav", impulse(0.5));
    for (const int column : {104, 500, 960}) {
        EXPECT_NEAR(curveRow(picture, kFrequencyArea, column), 410, 1);  // -6.02 dB, 0 dB is the top
    }
}

TEST(Plot, putsLowFrequenciesToTheLeft) {
    PointLevels levels{};
    levels[0] = levels[1] = 0.5;  // 0 dB at 20 Hz, -14.5 dB at 19.4 kHz; 10 dB is the top
    const QImage picture = plotPoints("a.wav", levels);
    EXPECT_NEAR(curveRow(picture, kFrequencyArea, 300), 427, 1);
    EXPECT_NEAR(curveRow(picture, kFrequencyArea, 966), 487, 2);
}

TEST(Plot, cutsTheCurveOffAtItsFrame) {
    PointLevels levels = impulse(0.5);
    levels[2] = 0.5;  // nothing is left at 11025 Hz
    const QImage picture = plotPoints("a.wav", levels);
    EXPECT_EQ(curvePixels(picture, QRect(0, 640, 1000, 60)), 0);
    EXPECT_GT(curveRow(picture, kFrequencyArea, 895), 550);
}

TEST(Plot, ofSilenceHasALineAtZeroAndNoGain) {
    const QImage picture = plotPoints("a.wav", {});
    EXPECT_NEAR(curveRow(picture, kTimeArea, 500), 185, 1);
    EXPECT_EQ(curvePixels(picture, kFrequencyArea), 0);
}

TEST(Plot, drawsTheWholeFileBesideItAtTheSameLevel) {
    WaveFacts wave{.levels = impulse(0.5), .level = -6.02};
    EXPECT_EQ(curveRow(plotWave("a.wav", wave), kFrequencyArea, 500, isFilesCurve), -1);
    // Much quieter, and nothing is left at 24000 Hz.
    wave.whole = RecordingFacts{.rate = 48000, .second = {0.01, 0.01}};
    const QImage picture = plotWave("a.wav", wave);
    EXPECT_NEAR(curveRow(picture, kFrequencyArea, 960), 410, 1);  // -6.02 dB, 0 dB is the top
    EXPECT_NEAR(curveRow(picture, kFrequencyArea, 882, isFilesCurve), 410 + 4.167 * 1.8,
                2);  // at 10 kHz it is 2.0 dB less, 0.2 above its mean
    EXPECT_NEAR(curveRow(picture, kFrequencyArea, 966, isFilesCurve), 410 + 4.167 * 10.3, 3);  // at 19.4 kHz
    EXPECT_EQ(curvePixels(picture, QRect(700, 360, 150, 22)) > 50, true) << "it is named";
}

TEST(Plot, differsFromAnotherOnlyWhereTheCurvesDo) {
    PointLevels levels = impulse(0.5);
    const QImage one = plotPoints("a.wav", levels);
    levels[0] = -0.5;
    const QImage other = plotPoints("a.wav", levels);
    QRect changed;
    for (int column = 0; column < 1000; ++column) {
        for (int row = 0; row < 700; ++row) {
            if (one.pixel(column, row) != other.pixel(column, row)) {
                changed |= QRect(column, row, 1, 1);
            }
        }
    }
    EXPECT_TRUE(QRect(96, 60, 25, 250).contains(changed)) << changed.left() << ' ' << changed.right();
    EXPECT_GT(changed.height(), 220);
}

TEST(Plot, keepsALongTitleInItsLine) {
    const QImage picture = plotPoints(QString(5000, 'W'), {});
    for (int row = 0; row < 700; ++row) {
        ASSERT_EQ(picture.pixel(972, row), 0xFFFFFFFF) << row;
    }
}

TEST(SavedPicture, isAPngThatReplacesWhatWasThere) {
    const SampleDir dir;
    const QString path = dir.write("x.png", FileBytes(500000));
    EXPECT_EQ(savePicture(plotPoints("a.wav", impulse(1.0)), path.toUtf8()), "");
    EXPECT_EQ(QImage(path, "PNG").size(), QSize(1000, 700));
    EXPECT_LT(QFileInfo(path).size(), 200000);
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
