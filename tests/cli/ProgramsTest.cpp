// How the programs take right and wrong arguments and environments, as processes without a display.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <string>

namespace kelvo::test {
namespace {

using Variables = QList<std::pair<QString, QString>>;

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs one of the programs, by its name, where no display is named but by `variables`, with nothing on its input.
Outcome runProgram(const QString& name, const QStringList& arguments, const Variables& variables = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
        environment.remove(variable);
    }
    for (const auto& [variable, value] : variables) {
        environment.insert(variable, value);
    }
    // A sanitizer's own summary would be taken for the program's.
    environment.insert("LSAN_OPTIONS", environment.value("LSAN_OPTIONS") + ":print_suppressions=0");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(name.startsWith('/') ? name : KELVO_PROGRAMS + name, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << process.errorString().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << name.toStdString();
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

Outcome runInShell(const char* command, const QStringList& arguments, const Variables& variables = {}) {
    return runProgram("/bin/sh", QStringList{"-c", command} + arguments, variables);
}

const char* const kPrograms[] = {"kelvo", "kelvo-check", "kelvo-demo", "kelvo-tour", "kr310-usb"};

class EachProgram : public testing::TestWithParam<const char*> {};

TEST_P(EachProgram, showsItsHelpAndItsVersionOnStandardOutput) {
    const Outcome help = runProgram(GetParam(), {"-v", "-h"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with(std::string("usage: ") + GetParam() + " [")) << help.out;
    EXPECT_NE(help.out.find("\n  -h, --help "), std::string::npos) << help.out;
    EXPECT_EQ(help.err, "");
    EXPECT_EQ(runProgram(GetParam(), {"--help"}).out, help.out);
    for (const char* const option : {"-v", "--version"}) {
        const Outcome version = runProgram(GetParam(), {option});
        EXPECT_EQ(version.status, 0);
        EXPECT_EQ(version.out, std::string(GetParam()) + " " KELVO_VERSION "\n");
        EXPECT_EQ(version.err, "");
    }
}

TEST_P(EachProgram, refusesAnOptionThatThereIsNot) {
    const std::string name = GetParam();
    const Outcome result = runProgram(GetParam(), {"--nonsense\x1B"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with(name + ": Unknown option 'nonsense\\x1b'.\nusage: " + name + " ["))
        << result.err;
    EXPECT_TRUE(result.err.ends_with("\nTry '" + name + " --help'.\n")) << result.err;
}

TEST_P(EachProgram, endsWith2WhenItsAnswerCannotBeWritten) {
    const QTemporaryDir dir;
    QStringList commands{"exec \"$0\" --help >/dev/full", "exec \"$0\" --version >&-"};
    // A reader who leaves ends kelvo-check by a signal, as it does every filter.
    if (GetParam() != std::string("kelvo-check")) {
        commands += R"(mkfifo "$1"; exec 3<>"$1" 4>"$1" 3<&-; exec "$0" --help >&4)";
    }
    for (const QString& command : commands) {
        const Outcome result =
            runInShell(command.toUtf8(), {QStringLiteral(KELVO_PROGRAMS) + GetParam(), dir.filePath("pipe")});
        EXPECT_EQ(result.status, 2) << command.toStdString();
        EXPECT_EQ(result.err, std::string(GetParam()) + ": standard output cannot be written\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, EachProgram, testing::ValuesIn(kPrograms));

TEST(Programs, nameAWrongUseOnStandardErrorAndEndWith2) {
    const char* const kTourWants = "Two folders are needed, optionally followed by \"hold\".";
    const struct {
        const char* program;
        QStringList arguments;
        std::string answer;
    } rows[] = {
        {"kelvo", {"word"}, "Unexpected word 'word'."},
        {"kelvo", {"-style"}, "Missing value after '-style'."},
        {"kelvo-demo", {"merge", "corrupt-crc=abc"}, "corrupt-crc wants 1 or more, got 'abc'"},
        {"kelvo-demo", {"\x1B[31m"}, "there is no fault '\\x1b[31m'"},
        {"kelvo-tour", {"pictures"}, kTourWants},
        {"kelvo-tour", {"pictures", "samples", "held"}, kTourWants},
        {"kelvo-tour", {"pictures", "samples", "hold", "more"}, "Unexpected word 'more'."},
        {"kr310-usb", {"plug"}, "Unexpected word 'plug'."},
        {"kelvo-check", {}, "No file is named."},
    };
    for (const auto& [program, arguments, answer] : rows) {
        const Outcome result = runProgram(program, arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.starts_with(std::string(program) + ": " + answer + "\nusage: " + program + " "))
            << result.err;
    }
}

/// One sentence, and no abort.
TEST(Programs, withoutADisplay_sayWhyAndEndWith1) {
    const std::string noPlugin = "Could not find the Qt platform plugin ";
    const struct {
        Variables variables;
        QStringList arguments;
        std::string reason;
    } rows[] = {
        {{}, {}, "could not connect to display"},
        // The toolkit complains about this policy too.
        {{{"LC_ALL", "C"}, {"QT_SCALE_FACTOR_ROUNDING_POLICY", "x"}}, {}, "could not connect to display"},
        {{{"DISPLAY", ":4711"}}, {}, "could not connect to display :4711"},
        {{{"QT_QPA_PLATFORM", "nonsense"}}, {}, noPlugin + "\"nonsense\" in \"\""},
        {{}, {"-platform", "\x1B[31m"}, noPlugin + "\"\\x1b[31m\" in \"\""},
    };
    const QTemporaryDir pictures;
    for (const std::string program : {"kelvo", "kelvo-demo", "kelvo-tour"}) {
        const QStringList words = program == "kelvo-tour" ? QStringList{pictures.path(), KELVO_SAMPLES} : QStringList();
        for (const auto& [variables, arguments, reason] : rows) {
            const Outcome result = runProgram(QString::fromStdString(program), arguments + words, variables);
            EXPECT_EQ(result.status, 1);
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(result.err, program + ": No display to show a window on: " + reason + "\n");
        }
    }
}

TEST(KelvoDemo, namesItsFaultsInItsHelp) {
    const std::string help = runProgram("kelvo-demo", {"--help"}).out;
    for (const char* const line : {"\n  split                bytes per report: 1 to 63 (1)\n",
                                   "\n  corrupt-crc          every n-th frame: 1 or more (1)\n", "\n  merge\n"}) {
        EXPECT_NE(help.find(line), std::string::npos) << help;
    }
}

TEST(Kr310Usb, obeysWhatComesOnItsInput) {
    const Outcome result = runInShell("echo pace 7 | \"$0\"", {KELVO_PROGRAMS "kr310-usb"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "pace 7\n");
}

TEST(Kr310Usb, endsWith1WhenItsAnswersCannotBeWritten) {
    const Outcome result = runInShell("echo go | \"$0\" >/dev/full", {KELVO_PROGRAMS "kr310-usb"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kr310-usb: the answers cannot be written\n");
}

TEST(Kr310Usb, ignoresCtrlZ) {
    const QTemporaryDir dir;
    const char* const command = R"(cd "$1"; mkfifo commands answers
        "$0" <commands >answers &
        exec 3>commands 4<answers
        echo go >&3
        read -r answer <&4
        grep SigIgn /proc/$!/status
        echo quit >&3)";
    const Outcome result = runInShell(command, {KELVO_PROGRAMS "kr310-usb", dir.path()});
    const std::size_t digits = result.out.find('\t');
    ASSERT_NE(digits, std::string::npos) << result.out;
    EXPECT_NE(std::stoull(result.out.substr(digits), nullptr, 16) & 1ULL << (SIGTSTP - 1), 0U) << result.out;
}

class KelvoTour : public testing::Test {
protected:
    const QTemporaryDir dir;
    const QString pictures = dir.filePath("pictures");
};

TEST_F(KelvoTour, withoutASampleOrAFolderForItsPictures_saysSoAtOnce) {
    const Outcome noSample = runProgram("kelvo-tour", {pictures, dir.filePath("no\n")});
    EXPECT_EQ(noSample.status, 1);
    EXPECT_EQ(noSample.err, "kelvo-tour: " + dir.path().toStdString() + "/no\\x0a/Bright.wav cannot be read\n");
    EXPECT_FALSE(QDir(pictures).exists());
    const Outcome noFolder = runProgram("kelvo-tour", {"/proc/pictures", KELVO_SAMPLES});
    EXPECT_EQ(noFolder.status, 1);
    EXPECT_EQ(noFolder.err, "kelvo-tour: /proc/pictures cannot be written to\n");
}

TEST_F(KelvoTour, acceptsTheToolkitsOptionsInEitherForm) {
    const Outcome result =
        runProgram("kelvo-tour", {pictures, "--platform=offscreen", KELVO_SAMPLES, "-style", "Windows"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(QDir(pictures).entryList({"*.png"}).size(), 15);
}

TEST_F(KelvoTour, thatHolds_namesEachPictureWhenItIsThere) {
    const char* const command = R"(mkfifo "$3" "$4"
        "$0" "$1" "$2" hold <"$3" >"$4" &
        exec 3>"$3" 4<"$4"
        read -r line <&4
        echo "$line"
        ls "$1"
        kill $!)";
    const Outcome result = runInShell(
        command, {KELVO_PROGRAMS "kelvo-tour", pictures, KELVO_SAMPLES, dir.filePath("input"), dir.filePath("output")},
        {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_TRUE(result.out.starts_with("loading-")) << result.out;
    EXPECT_NE(result.out.find("\n01-loading-"), std::string::npos) << result.out;
}

/// A file of the tour, and whether its disk is full; otherwise there is a folder of its name.
class UnwritableFile : public testing::TestWithParam<std::pair<const char*, bool>> {};

TEST_P(UnwritableFile, endsTheTourWith1AndIsNamed) {
    const auto& [name, isFull] = GetParam();
    const QTemporaryDir dir;
    const QString path = dir.filePath(name);
    ASSERT_TRUE(isFull ? QFile::link("/dev/full", path) : QDir().mkpath(path));
    const Outcome result = runProgram("kelvo-tour", {dir.path(), KELVO_SAMPLES}, {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.ends_with("The tour ends: " + path.toStdString() + " cannot be written\n")) << result.err;
}

INSTANTIATE_TEST_SUITE_P(OfTheTour, UnwritableFile,
                         testing::Values(std::pair("01-loading-0.png", true), std::pair("05-tables.png", false),
                                         std::pair("transcript.txt", false), std::pair("transcript.txt", true)));

}  // namespace
}  // namespace kelvo::test
