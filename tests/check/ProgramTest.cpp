// The program itself, as a process without a display.

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>

#include "SampleFiles.h"

namespace kelvo {
namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

class Program : public testing::Test {
protected:
    Outcome run(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "LANG"}) {
            environment.remove(name);
        }
        environment.insert("LC_ALL", "C");
        environment.insert("QT_QPA_PLATFORM", "no-such-platform");
        // A sanitizer's own summary would be taken for the program's.
        environment.insert("LSAN_OPTIONS", environment.value("LSAN_OPTIONS") + ":print_suppressions=0");
        process.setProcessEnvironment(environment);
        process.start(KELVO_CHECK, arguments);
        EXPECT_TRUE(process.waitForFinished(60000)) << process.errorString().toStdString();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    QString wave(const QString& name = "a.wav") const {
        return dir.write(name, WaveFile{.data = FileBytes(1024, 0x11)}.bytes());
    }

    const SampleDir dir;
    QProcess process;
};

TEST_F(Program, ofTheSamples_printsWhatItAlwaysDid) {
    QFile golden(KELVO_GOLDEN "/samples.txt");
    ASSERT_TRUE(golden.open(QIODevice::ReadOnly));
    process.setWorkingDirectory(KELVO_SAMPLES);
    const Outcome result =
        run({"Bright.wav", "Closed Back 4x12.wav", "Dusty.wav", "Lead.amp", "Open Back.wav", "Room.wav", "Wide.wav"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, golden.readAll().toStdString());
    EXPECT_EQ(result.err, "");
}

TEST_F(Program, refusedFile_isFollowedByTheRest_endsWith1) {
    process.setWorkingDirectory(dir.path("."));
    wave();
    const Outcome result = run({"no.wav", "a.wav", "a.mp3"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
              "no.wav: refused: it cannot be opened: No such file or directory\n"
              "a.wav: accepted\n"
              "  kind:     impulse response, for a CAB slot\n"
              "  name:     \"A\"\n"
              "  rate:     44100 Hz\n"
              "  depth:    16-bit integer\n"
              "  channels: 1\n"
              "  frames:   512 in the file, 512 used\n"
              "  peak:     -17.50 dBFS (0.133331 of full scale)\n"
              "  level:    14.12 dB of a unit pulse\n"
              "  onset:    0.00 ms\n"
              "  energy:   100.0 % kept\n"
              "  response: up to 0.00 dB off the file's, at 8000 Hz\n"
              "a.mp3: refused: its name ends neither in \".wav\" nor in \".amp\"\n"
              "\n"
              "1 of 3 are accepted\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(Program, ofTwoFiles_endsWithASummary) {
    EXPECT_TRUE(run({wave("a.wav"), wave("b.wav")}).out.ends_with("\n\n2 of 2 are accepted\n"));
}

TEST_F(Program, ofAFolder_endsWithASummaryAndTheLinesForSox) {
    process.setWorkingDirectory(dir.path("."));
    dir.write("x.wav", WaveFile{.sampleRate = 8000, .data = FileBytes(4)}.bytes());
    const Outcome result = run({"."});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.out,
        "./x.wav: refused: its sample rate in Hz, at byte 24, is 8000; allowed are 44100, 48000, 88200 and 96000\n"
        "\n"
        "0 of 1 are accepted\n"
        "sox --no-clobber './x.wav' './x-converted.wav' rate 44100\n");
}

TEST_F(Program, givesJsonWithoutASummary) {
    process.setWorkingDirectory(dir.path("."));
    const Outcome result = run({"--json", "no.wav", "a.mp3"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.out,
        "{\"accepted\":false,\"file\":\"no.wav\",\"refusal\":\"it cannot be opened: No such file or directory\"}\n"
        "{\"accepted\":false,\"file\":\"a.mp3\",\"refusal\":\"its name ends neither in \\\".wav\\\" nor in "
        "\\\".amp\\\"\"}\n");
}

TEST_F(Program, givesAnObjectOfTheSetWhenAsked) {
    process.setWorkingDirectory(dir.path("."));
    wave("a.wav");
    wave("b.wav");
    const Outcome result = run({"--json", "--set", "a.wav", "b.wav"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 3);
    EXPECT_NE(result.out.find("\n{\"set\":{\"accepted\":2,\"files\":2,"), std::string::npos) << result.out;
}

TEST_F(Program, readsNamesThatAreNotAsciiInAnyLocale) {
    const Outcome result =
        run({wave(QString::fromUtf8("\xC3\x9C"
                                    "ber.wav"))});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("/\xC3\x9C"
                              "ber.wav: accepted\n  kind:     impulse response, for a CAB slot\n"
                              "  name:     \"\xC3\x9C"
                              "BE\"\n"),
              std::string::npos)
        << result.out;
    EXPECT_EQ(result.err, "");
}

TEST_F(Program, letsNoControlThroughToTheTerminal) {
    process.setWorkingDirectory(dir.path("."));
    const Outcome result = run({"\x1B[31m\n.amp"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "\\x1b[31m\\x0a.amp: refused: it cannot be opened: No such file or directory\n");
}

TEST_F(Program, wronglyUsed_plotsNothing) {
    const QString picture = dir.path("x.png");
    const Outcome result = run({"--plot", picture, wave(), wave()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "kelvo-check: With --plot exactly one .wav file is needed.\nusage: kelvo-check [--json [--set] | --plot "
              "OUT.png | --prepare DIR] FILE...\nTry 'kelvo-check --help'.\n");
    EXPECT_FALSE(QFileInfo::exists(picture));
}

TEST_F(Program, namesItsOptionsInItsHelp) {
    const std::string help = run({"--help"}).out;
    for (const char* const option : {"  --json  ", "  --set  ", "  --plot OUT.png  ", "  --prepare DIR  "}) {
        EXPECT_NE(help.find(option), std::string::npos) << option;
    }
}

TEST_F(Program, plotsOneWaveWithoutADisplay) {
    const QString picture = dir.path("x.png");
    const Outcome result = run({"--plot", picture, wave()});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find(": accepted\n"), std::string::npos);
    EXPECT_EQ(result.err, "");
    const QImage saved(picture, "PNG");
    ASSERT_EQ(saved.size(), QSize(1000, 700));
    EXPECT_NE(saved.pixel(500, 106), 0xFFFFFFFF);  // 0.1333 of at most 0.21
    EXPECT_EQ(saved.pixel(500, 95), 0xFFFFFFFF);
}

TEST_F(Program, refusedFile_keepsTheOldPicture) {
    const QString picture = dir.write("x.png", FileBytes{1, 2, 3});
    const Outcome result = run({"--plot", picture, dir.write("a.wav", {})});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.ends_with(": refused: it is empty\n")) << result.out;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(QFileInfo(picture).size(), 3);
}

TEST_F(Program, endsWith2WhenThePictureCannotBeWritten) {
    process.setWorkingDirectory(dir.path("."));
    const Outcome result = run({"--plot", "no/\n.png", wave()});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.out.find(": accepted\n"), std::string::npos);
    EXPECT_EQ(result.err, "kelvo-check: no/\\x0a.png cannot be written: No such file or directory\n");
}

TEST_F(Program, fullDisk_keepsTheOldPicture) {
    process.setWorkingDirectory(dir.path("."));
    dir.write("x.png", FileBytes{1, 2, 3});
    const QString line = QString("trap '' XFSZ; ulimit -f 1; exec %1 --plot x.png a.wav").arg(KELVO_CHECK);
    wave();
    process.setReadChannel(QProcess::StandardError);
    process.start("sh", {"-c", line});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 2);
    // A build that counts lines complains after this line that it cannot write its counts either.
    EXPECT_EQ(process.readLine().toStdString(), "kelvo-check: x.png cannot be written: File too large\n");
    EXPECT_EQ(QFileInfo(dir.path("x.png")).size(), 3);
    EXPECT_EQ(QDir(dir.path(".")).entryList(QDir::Files), (QStringList{"a.wav", "x.png"}));
}

TEST_F(Program, endsWith2WhenItsReportCannotBeWritten) {
    process.setStandardOutputFile("/dev/full");
    const Outcome result = run({wave()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "kelvo-check: the report cannot be written\n");
}

}  // namespace
}  // namespace kelvo
