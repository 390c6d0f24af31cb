// A prepared copy on its way through the utility into the pedal.

#include <gtest/gtest.h>

#include <QFile>
#include <cstdlib>

#include "AppHarness.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

/// The signed 24-bit samples that end a file, as the pedal's words.
std::array<std::uint32_t, 512> lastSamples(const QByteArray& content) {
    std::array<std::uint32_t, 512> words{};
    const QByteArray samples = content.last(3 * 512);
    for (std::size_t i = 0; i < 3 * words.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(samples[static_cast<qsizetype>(i)]);
        words[i / 3] |= std::uint32_t{byte} << (8 * (i % 3));
    }
    return words;
}

TEST(PreparedFile, reachesThePedalSampleBySample) {
    const SampleDir dir;
    // Not by QProcess: after its fork, ThreadSanitizer misses the locks of this thread.
    const QString line =
        QString("cd '%1' && '%2' --prepare even '%3'/*.wav | sh -eu").arg(dir.path("."), KELVO_CHECK, KELVO_SAMPLES);
    ASSERT_EQ(std::system(QFile::encodeName(line).constData()), 0);
    RunningApp app;
    app.start();
    int changes = 0;
    for (const char* const name : {"BRIGHT", "CLOSEK4X12", "DUSTY", "OPEN BACK", "ROOM", "WIDE"}) {
        QFile file(dir.path(QString("even/%1.wav").arg(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        app.importIR(3, file.fileName());
        ASSERT_TRUE(app.waitForChanges(static_cast<std::size_t>(++changes)));
        EXPECT_EQ(app.pedal.memory().cab[3].words, lastSamples(file.readAll())) << name;
        EXPECT_EQ(app.pedal.memory().cab[3].name, name);
    }
}

}  // namespace
}  // namespace kelvo::test
