// The inputs that the fuzz targets start from or have found: checked under either extension.

#include <gtest/gtest.h>

#include <QDirIterator>

#include "CheckFile.h"
#include "ReportText.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

FileBytes bytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    return {content.begin(), content.end()};
}

TEST(KeptInputs, areAllEitherAcceptedOrRefusedInPrintableWords) {
    const SampleDir dir;
    int count = 0;
    for (QDirIterator inputs(KELVO_FUZZ, {}, QDir::Files, QDirIterator::Subdirectories); inputs.hasNext();) {
        const QString input = inputs.next();
        if (!input.contains("/seeds/") && !input.contains("/findings/")) {
            continue;
        }
        for (const char* const name : {"a.wav", "a.amp"}) {
            const FileReport report = checkFile(dir.write(name, bytesOf(input)).toUtf8());
            EXPECT_NE(report.refusal.isEmpty(), !report.wave && !report.amp) << input.toStdString();
            const QString text = reportText(report).remove('\n');
            EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.isPrint(); }))
                << text.toStdString();
        }
        ++count;
    }
    EXPECT_GE(count, 41);
}

TEST(KeptInputs, ofTheTwoReadersAreSortedAsTheirNamesSay) {
    const SampleDir dir;
    const auto refusal = [&](const char* input, const char* name) {
        return checkFile(dir.write(name, bytesOf(QString(KELVO_FUZZ) + "/seeds/" + input)).toUtf8()).refusal;
    };
    for (const char* const good : {"IRFile/floats", "IRFile/internal", "IRFile/stereo24", "IRFile/mono16-96000"}) {
        EXPECT_EQ(refusal(good, "a.wav"), "") << good;
    }
    EXPECT_EQ(refusal("IRFile/mono16-22050", "a.wav"),
              "its sample rate in Hz, at byte 24, is 22050; allowed are 44100, 48000, 88200 and 96000");
    EXPECT_EQ(refusal("AMPFile/whole", "a.amp"), "");
    EXPECT_EQ(refusal("AMPFile/line-end", "a.amp"), "its last three bytes are \".0\\x0a\" instead of \"2.0\"");
}

}  // namespace
}  // namespace kelvo
