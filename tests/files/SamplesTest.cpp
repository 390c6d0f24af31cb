#include <gtest/gtest.h>

#include <QDir>
#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "AMPFile.h"
#include "RVIRFile.h"

namespace kelvo {
namespace {

QStringList samples(const QString& pattern) {
    return QDir(KELVO_SAMPLES).entryList({pattern}, QDir::Files);
}

TEST(Samples, ofImpulseResponsesAreAllAcceptedAndNotSilent) {
    const std::map<std::string, std::string> expectedNames{
        {"Bright.wav", "BRIGHT"}, {"Closed Back 4x12.wav", "CLOSED BAC"},
        {"Dusty.wav", "DUSTY"},   {"Open Back.wav", "OPEN BACK"},
        {"Room.wav", "ROOM"},     {"Wide.wav", "WIDE"},
    };
    std::map<std::string, std::string> names;
    for (const QString& sample : samples("*.wav")) {
        RVIRFile file;
        ASSERT_TRUE(file.OpenFilePath(QDir(KELVO_SAMPLES).filePath(sample))) << sample.toStdString();
        names[sample.toStdString()] = file.CharFileNane.data();
        std::array<std::uint32_t, kPointCount> points{};
        EXPECT_TRUE(file.GetIRDataBuffer(points)) << sample.toStdString();
        EXPECT_GT(std::set<std::uint32_t>(points.begin(), points.end()).size(), 20U) << sample.toStdString();
        EXPECT_LE(std::ranges::max(points), 0xFFFFFFU);
        EXPECT_GE(file.PointSize, 512U);
        EXPECT_LE(file.FileSize, 50000U);
    }
    EXPECT_EQ(names, expectedNames);
}

TEST(Samples, ofAmpModelsAreAllAccepted) {
    EXPECT_EQ(samples("*.amp"), QStringList{"Lead.amp"});
    AMPFile file;
    EXPECT_TRUE(file.OpenFile(QDir(KELVO_SAMPLES).filePath("Lead.amp")));
    EXPECT_STREQ(file.CharFileName.data(), "Lead");
    EXPECT_EQ(file.FileSize, 2055U);
    EXPECT_EQ(AmpPiontBuff[0], 0xBF4CCCCDU);    // -0.8
    EXPECT_EQ(AmpPiontBuff[256], 0x00000000U);  // 0.0
    EXPECT_EQ(AmpPiontBuff[320], 0x3F000000U);  // 0.5
}

}  // namespace
}  // namespace kelvo
