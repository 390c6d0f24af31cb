// A prepared copy on its way through the utility into the pedal.

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>

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
    QProcess shell;
    shell.setWorkingDirectory(dir.path("."));
    shell.start("sh", {"-euc", "\"$0\" --prepare even \"$1\"/*.wav | sh -eu", KELVO_CHECK, KELVO_SAMPLES});
    ASSERT_TRUE(shell.waitForFinished(60000));
    ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString();
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
