// The lines that convert a refused wave file. sox-lines-test gives them to a shell and to sox.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>

#include "CheckFile.h"
#include "SampleFiles.h"
#include "SoxLine.h"

namespace kelvo {
namespace {

std::string lineFor(const WaveFile& wave, const QByteArray& path = "a.wav") {
    const FileBytes bytes = wave.bytes();
    return soxLine(path, bytes, findWave(bytes)).toStdString();
}

TEST(SoxLine, changesOnlyWhatIsNecessary) {
    constexpr const char* kIntegers = " -b 24 -e signed-integer";
    const auto line = [](const std::string& depth, const std::string& effects) {
        return "sox --no-clobber './a.wav'" + depth + " './a-converted.wav'" + effects;
    };
    EXPECT_EQ(lineFor({.sampleRate = 22050}), line("", " rate 44100"));
    EXPECT_EQ(lineFor({.sampleRate = 22050, .bitsPerSample = 24, .channels = 2}), line("", " rate 44100"));
    EXPECT_EQ(lineFor({.sampleRate = 192000, .bitsPerSample = 32}), line("", " rate 44100"));
    EXPECT_EQ(lineFor({.bitsPerSample = 64}), line(kIntegers, ""));
    EXPECT_EQ(lineFor({.bitsPerSample = 4}), line(kIntegers, ""));
    EXPECT_EQ(lineFor({.sampleRate = 8000, .bitsPerSample = 20, .channels = 6}),
              line(kIntegers, " remix 1 rate 44100"));
    EXPECT_EQ(lineFor({.sampleRate = 22050, .bitsPerSample = 8}), line(kIntegers, " rate 44100"));
    const FileBytes integers = withTextAt(20, "\1", WaveFile{.sampleRate = 22050, .bitsPerSample = 32}.bytes());
    EXPECT_EQ(soxLine("a.wav", integers, findWave(integers)).toStdString(), line(kIntegers, " rate 44100"));
}

TEST(SoxLine, isNoneForWhatSoxCannotConvert) {
    EXPECT_EQ(lineFor({.channels = 0}), "");
    EXPECT_EQ(soxLine("a.wav", FileBytes{'R'}, findWave(FileBytes{'R'})), "");
    FileBytes noData = WaveFile{}.bytes();
    noData[36] = 'D';
    EXPECT_EQ(soxLine("a.wav", noData, findWave(noData)), "");
}

TEST(SoxLine, quotesNames) {
    const auto quoted = [](const char* path) { return lineFor({.sampleRate = 22050}, path); };
    EXPECT_EQ(quoted("/x/a b.WAV"), "sox --no-clobber '/x/a b.WAV' '/x/a b-converted.WAV' rate 44100");
    EXPECT_EQ(quoted("it's.wav"), "sox --no-clobber './it'\\''s.wav' './it'\\''s-converted.wav' rate 44100");
    EXPECT_EQ(quoted("-r.wav"), "sox --no-clobber './-r.wav' './-r-converted.wav' rate 44100");
    EXPECT_EQ(quoted("a*.wav"), "sox --no-clobber --no-glob './a*.wav' --no-glob './a*-converted.wav' rate 44100");
    EXPECT_EQ(quoted("http:$(touch x)/a.wav"),
              "sox --no-clobber './http:$(touch x)/a.wav' './http:$(touch x)/a-converted.wav' rate 44100");
    EXPECT_EQ(quoted("~x.wav"), "sox --no-clobber './~x.wav' './~x-converted.wav' rate 44100");
    EXPECT_EQ(quoted("\n.wav"),
              "sox --no-clobber \"$(printf '%b' '\\0056\\0057\\0012\\0056\\0167\\0141\\0166')\" \"$(printf '%b' "
              "'\\0056\\0057\\0012\\0055\\0143\\0157\\0156\\0166\\0145\\0162\\0164\\0145\\0144\\0056\\0167\\0141\\0166'"
              ")\" rate 44100");
}

TEST(SoxLine, output_isValidUtf8AndDistinct) {
    EXPECT_EQ(validName("a\xFF\xC3\xBC\xC3"), "a%FF\xC3\xBC%C3");
    EXPECT_EQ(validName("\xF0\x9F\x8E\xB8\xED\xA0\x80"), "\xF0\x9F\x8E\xB8%ED%A0%80");
    EXPECT_TRUE(lineFor({.sampleRate = 22050}, "\xFF.wav").find("%FF-converted.wav") != std::string::npos);
    EXPECT_EQ(lineFor({.sampleRate = 22050}, "\xFF/a.wav"), "");
}

TEST(SoxLine, makesAnAcceptedFile) {
    const SampleDir dir;
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path(".")));
    const FileBytes data(6 * 8 * 4000);
    for (const WaveFile& wave :
         {WaveFile{.sampleRate = 22050, .channels = 2, .data = data}, WaveFile{.bitsPerSample = 64, .data = data},
          WaveFile{.sampleRate = 192000, .bitsPerSample = 24, .channels = 6, .data = data}}) {
        FileBytes bytes = wave.bytes();
        bytes[20] = wave.bitsPerSample == 64 ? 3 : 1;
        dir.write("a.wav", bytes);
        const FileReport refused = checkFile("a.wav");
        ASSERT_NE(refused.refusal, "");
        QProcess shell;
        shell.start("sh", {"-c", refused.soxLine});
        ASSERT_TRUE(shell.waitForFinished(60000));
        EXPECT_EQ(shell.exitCode(), 0) << refused.soxLine.toStdString() << shell.readAllStandardError().toStdString();
        const FileReport converted = checkFile("a-converted.wav");
        EXPECT_EQ(converted.refusal, "");
        ASSERT_TRUE(converted.wave && converted.wave->format);
        EXPECT_EQ(converted.wave->format->sampleRate, 44100U);
        EXPECT_EQ(converted.wave->format->bitsPerSample, wave.bitsPerSample == 64 ? 24U : wave.bitsPerSample);
        EXPECT_EQ(converted.wave->format->channels, wave.channels == 6 ? 1U : wave.channels);
        EXPECT_EQ(converted.wave->framesUsed, 512U);
        ASSERT_TRUE(QFile::remove("a-converted.wav"));
    }
    ASSERT_TRUE(QDir::setCurrent(former));
}

}  // namespace
}  // namespace kelvo
