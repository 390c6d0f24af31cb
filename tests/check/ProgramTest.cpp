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

TEST_F(Program, hasAnAnswerAndAStatusForEachCall) {
    process.setWorkingDirectory(dir.path("."));
    ASSERT_TRUE(QDir().mkdir(dir.path("folder")));
    dir.write("folder/x.wav", WaveFile{.sampleRate = 8000, .data = FileBytes(4)}.bytes());
    dir.write("empty.wav", {});
    dir.write("a.wav", WaveFile{.data = FileBytes(1024)}.bytes());
    dir.write(QString::fromUtf8("\xC3\x9Cz.wav"), WaveFile{.data = FileBytes(1024)}.bytes());
    dir.write("x.png", FileBytes{1, 2, 3});
    const auto accepted = [](const std::string& file, const std::string& name, const std::string& note) {
        return file + ": accepted\n  kind:     impulse response, for a CAB slot\n  name:     \"" + name +
               "\"\n"
               "  rate:     44100 Hz\n"
               "  depth:    16-bit integer\n"
               "  channels: 1\n"
               "  frames:   512 in the file, 512 used\n"
               "  peak:     none\n" +
               note + "  note:     all its points are zero\n";
    };
    const struct {
        QStringList arguments;
        int status;
        std::string out, err;
    } rows[] = {
        {{"no.wav", "a.wav"},
         1,
         "no.wav: refused: it cannot be opened: No such file or directory\n" + accepted("a.wav", "A", "") +
             "\n1 of 2 are accepted\n",
         ""},
        {{"a.wav"}, 0, accepted("a.wav", "A", ""), ""},
        {{QString::fromUtf8("\xC3\x9Cz.wav")},
         0,
         accepted("\xC3\x9Cz.wav", "\xC3\x9C",
                  "  note:     its name is cut; the whole one is \"\xC3\x9CZ\"\n"
                  "  note:     its name is not all printable ASCII; the pedal gets the bytes c3 9c\n"),
         ""},
        {{"folder"},
         1,
         "folder/x.wav: refused: its sample rate in Hz, at byte 24, is 8000; allowed are 44100, 48000, 88200 and "
         "96000\n\n0 of 1 are accepted\n"
         "sox --no-clobber './folder/x.wav' './folder/x-converted.wav' rate 44100\n",
         ""},
        {{"--json", "empty.wav", "empty.wav"},
         1,
         "{\"accepted\":false,\"file\":\"empty.wav\",\"refusal\":\"it is empty\"}\n"
         "{\"accepted\":false,\"file\":\"empty.wav\",\"refusal\":\"it is empty\"}\n",
         ""},
        {{"--json", "--set", "empty.wav"},
         1,
         "{\"accepted\":false,\"file\":\"empty.wav\",\"refusal\":\"it is empty\"}\n"
         "{\"set\":{\"accepted\":0,\"files\":1,\"otherLevels\":[],\"sameNames\":[]}}\n",
         ""},
        {{"\x1B[31m\n.amp"}, 1, "\\x1b[31m\\x0a.amp: refused: it cannot be opened: No such file or directory\n", ""},
        {{"--plot", "x.png", "a.wav", "a.wav"},
         2,
         "",
         "kelvo-check: With --plot exactly one .wav file is needed.\nusage: kelvo-check [--json [--set] | --plot "
         "OUT.png | --prepare DIR] FILE...\nTry 'kelvo-check --help'.\n"},
        {{"--plot", "x.png", "empty.wav"}, 1, "empty.wav: refused: it is empty\n", ""},
        {{"--plot", "no/\n.png", "a.wav"},
         2,
         accepted("a.wav", "A", ""),
         "kelvo-check: no/\\x0a.png cannot be written: No such file or directory\n"},
    };
    for (const auto& [arguments, status, out, err] : rows) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const Outcome result = run(arguments);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(result.err, err);
    }
    EXPECT_EQ(QFileInfo(dir.path("x.png")).size(), 3);
}

TEST_F(Program, plotsOneWaveWithoutADisplay) {
    const QString picture = dir.path("x.png");
    const Outcome result =
        run({"--plot", picture, dir.write("a.wav", WaveFile{.data = FileBytes(1024, 0x11)}.bytes())});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find(": accepted\n"), std::string::npos);
    EXPECT_EQ(result.err, "");
    const QImage saved(picture, "PNG");
    ASSERT_EQ(saved.size(), QSize(1000, 700));
    EXPECT_NE(saved.pixel(500, 106), 0xFFFFFFFF);  // 0.1333 of at most 0.21
    EXPECT_EQ(saved.pixel(500, 95), 0xFFFFFFFF);
}

TEST_F(Program, fullDisk_keepsTheOldPicture) {
    process.setWorkingDirectory(dir.path("."));
    dir.write("x.png", FileBytes{1, 2, 3});
    dir.write("a.wav", WaveFile{.data = FileBytes(1024, 0x11)}.bytes());
    process.setReadChannel(QProcess::StandardError);
    process.start("sh", {"-c", QString("trap '' XFSZ; ulimit -f 1; exec %1 --plot x.png a.wav").arg(KELVO_CHECK)});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 2);
    // A build that counts lines complains after this line that it cannot write its counts either.
    EXPECT_EQ(process.readLine().toStdString(), "kelvo-check: x.png cannot be written: File too large\n");
    EXPECT_EQ(QFileInfo(dir.path("x.png")).size(), 3);
    EXPECT_EQ(QDir(dir.path(".")).entryList(QDir::Files), (QStringList{"a.wav", "x.png"}));
}

TEST_F(Program, endsWith2WhenItsReportCannotBeWritten) {
    process.setStandardOutputFile("/dev/full");
    const Outcome result = run({"no.wav"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "kelvo-check: the report cannot be written\n");
}

}  // namespace
}  // namespace kelvo
