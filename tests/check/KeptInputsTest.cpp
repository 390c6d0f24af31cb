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

}  // namespace
}  // namespace kelvo
