// How the programs take right and wrong arguments, as processes without a display.

#include <QDir>
#include <QTemporaryDir>
#include <csignal>

#include "ProgramRun.h"

namespace kelvo::test {
namespace {

const char* const kPrograms[] = {"kelvo", "kelvo-check", "kelvo-demo", "kelvo-tour", "kr310-usb"};

class EachProgram : public testing::TestWithParam<const char*> {};

TEST_P(EachProgram, showsItsHelpAndItsVersionOnStandardOutput) {
    for (const QStringList& options : {QStringList{"-h"}, QStringList{"--help"}, QStringList{"-v", "-h"}}) {
        const Outcome result = runProgram(GetParam(), options);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.out.starts_with(std::string("usage: ") + GetParam() + " [")) << result.out;
        EXPECT_NE(result.out.find("\n  -h, --help "), std::string::npos) << result.out;
        EXPECT_EQ(result.err, "");
    }
    for (const char* const option : {"-v", "--version"}) {
        const Outcome result = runProgram(GetParam(), {option});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, std::string(GetParam()) + " " KELVO_VERSION "\n");
        EXPECT_EQ(result.err, "");
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
    for (const char* const command : {"exec \"$0\" --help >/dev/full", "exec \"$0\" --version >&-"}) {
        const Outcome result = runProgram("/bin/sh", {"-c", command, QStringLiteral(KELVO_PROGRAMS) + GetParam()});
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_EQ(result.err, std::string(GetParam()) + ": standard output cannot be written\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, EachProgram, testing::ValuesIn(kPrograms), [](const auto& parameter) {
    std::string name(parameter.param);
    std::erase(name, '-');
    return name;
});

/// Those that a reader who leaves must not end by a signal, as it does kelvo-check and every filter.
class LastingProgram : public testing::TestWithParam<const char*> {};

TEST_P(LastingProgram, closedOutput_endsWith2) {
    const QTemporaryDir dir;
    const char* const command = R"(mkfifo "$1"; exec 3<>"$1" 4>"$1" 3<&-; exec "$0" --help >&4)";
    const Outcome result =
        runProgram("/bin/sh", {"-c", command, QStringLiteral(KELVO_PROGRAMS) + GetParam(), dir.filePath("pipe")});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, std::string(GetParam()) + ": standard output cannot be written\n");
}

INSTANTIATE_TEST_SUITE_P(Programs, LastingProgram, testing::Values("kelvo", "kelvo-demo", "kelvo-tour", "kr310-usb"),
                         [](const auto& parameter) {
                             std::string name(parameter.param);
                             std::erase(name, '-');
                             return name;
                         });

struct WrongUse {
    const char* program;
    QStringList arguments;
    const char* answer;
};

class WrongUseOf : public testing::TestWithParam<WrongUse> {};

TEST_P(WrongUseOf, isNamedOnStandardErrorAndEndsWith2) {
    const auto& [program, arguments, said] = GetParam();
    const Outcome result = runProgram(program, arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    const std::string beginning = std::string(program) + ": " + said + "\nusage: " + program + " ";
    EXPECT_TRUE(result.err.starts_with(beginning)) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, WrongUseOf,
    testing::Values(WrongUse{"kelvo", {"word"}, "Unexpected word 'word'."},
                    WrongUse{"kelvo", {"-style"}, "Missing value after '-style'."},
                    WrongUse{"kelvo", {"-style", "Fusion", "-styl"}, "Unknown option 'styl'."},
                    WrongUse{"kelvo-demo", {"nothing"}, "there is no fault 'nothing'"},
                    WrongUse{"kelvo-demo", {"merge", "corrupt-crc=abc"}, "corrupt-crc wants 1 or more, got 'abc'"},
                    WrongUse{"kelvo-demo", {"corrupt-crc=0"}, "corrupt-crc wants 1 or more, got '0'"},
                    WrongUse{"kelvo-demo", {"corrupt-crc="}, "corrupt-crc wants 1 or more, got ''"},
                    WrongUse{"kelvo-demo", {"split=99"}, "split wants 1 to 63, got '99'"},
                    WrongUse{"kelvo-demo", {"silent=99"}, "silent wants 0 to 5, got '99'"},
                    WrongUse{"kelvo-demo", {"merge=1"}, "merge takes no number, got '1'"},
                    WrongUse{"kelvo-demo", {"\x1B[31m"}, "there is no fault '\\x1b[31m'"},
                    WrongUse{"kelvo-tour", {}, "Two folders are needed, optionally followed by \"hold\"."},
                    WrongUse{"kelvo-tour", {"pictures"}, "Two folders are needed, optionally followed by \"hold\"."},
                    WrongUse{"kelvo-tour",
                             {"pictures", "samples", "held"},
                             "Two folders are needed, optionally followed by \"hold\"."},
                    WrongUse{"kelvo-tour", {"pictures", "samples", "hold", "more"}, "Unexpected word 'more'."},
                    WrongUse{"kr310-usb", {"plug"}, "Unexpected word 'plug'."},
                    WrongUse{"kelvo-check", {}, "No file is named."}));

TEST(KelvoDemo, namesItsFaultsInItsHelp) {
    const std::string help = runProgram("kelvo-demo", {"--help"}).out;
    EXPECT_NE(help.find("\n  split                bytes per report: 1 to 63 (1)\n"), std::string::npos) << help;
    EXPECT_NE(help.find("\n  corrupt-crc          every n-th frame: 1 or more (1)\n"), std::string::npos) << help;
    EXPECT_NE(help.find("\n  merge\n"), std::string::npos) << help;
}

TEST(Kr310Usb, obeysWhatComesOnItsInput) {
    const Outcome result = runProgram("/bin/sh", {"-c", "echo pace 7 | \"$0\"", KELVO_PROGRAMS "kr310-usb"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "pace 7\n");
}

TEST(Kr310Usb, endsWith1WhenItsAnswersCannotBeWritten) {
    const Outcome result = runProgram("/bin/sh", {"-c", "echo go | \"$0\" >/dev/full", KELVO_PROGRAMS "kr310-usb"});
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
    const Outcome result = runProgram("/bin/sh", {"-c", command, KELVO_PROGRAMS "kr310-usb", dir.path()});
    const std::size_t digits = result.out.find('\t');
    ASSERT_NE(digits, std::string::npos) << result.out;
    EXPECT_NE(std::stoull(result.out.substr(digits), nullptr, 16) & 1ULL << (SIGTSTP - 1), 0U) << result.out;
}

class KelvoTour : public testing::Test {
protected:
    const QTemporaryDir dir;
    const QString pictures = dir.filePath("pictures");
};

TEST_F(KelvoTour, withoutItsSamples_saysSoAtOnce) {
    const Outcome result = runProgram("kelvo-tour", {pictures, dir.filePath("no\n")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kelvo-tour: " + dir.path().toStdString() + "/no\\x0a/Bright.wav cannot be read\n");
    EXPECT_FALSE(QDir(pictures).exists());
}

TEST_F(KelvoTour, withoutAFolderForItsPictures_saysSoAtOnce) {
    const Outcome result = runProgram("kelvo-tour", {"/proc/pictures", KELVO_SAMPLES});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kelvo-tour: /proc/pictures cannot be written to\n");
}

TEST_F(KelvoTour, acceptsTheToolkitsOptionsInEitherForm) {
    const Outcome result =
        runProgram("kelvo-tour", {pictures, "--platform=offscreen", KELVO_SAMPLES, "-style", "Windows"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(QDir(pictures).entryList({"*.png"}).size(), 15);
}

TEST_F(KelvoTour, whosePictureCannotBeWritten_endsWith1AndSaysSo) {
    QStringList firstPictures;
    for (int percent = 0; percent <= 100; ++percent) {
        firstPictures.append(QStringLiteral("%1/01-loading-%2.png").arg(pictures).arg(percent));
        ASSERT_TRUE(QDir().mkpath(firstPictures.last()));
    }
    const Outcome result = runProgram("kelvo-tour", {pictures, KELVO_SAMPLES}, {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(std::ranges::any_of(firstPictures, [&result](const QString& picture) {
        return result.err.ends_with("The tour ends: " + picture.toStdString() + " cannot be written\n");
    })) << result.err;
}

TEST_F(KelvoTour, thatHolds_namesEachPictureWhenItIsThere) {
    const char* const command = R"(mkfifo "$3" "$4"
        "$0" "$1" "$2" hold <"$3" >"$4" &
        exec 3>"$3" 4<"$4"
        read -r line <&4
        echo "$line"
        ls "$1"
        kill $!)";
    const Outcome result = runProgram("/bin/sh",
                                      {"-c", command, KELVO_PROGRAMS "kelvo-tour", pictures, KELVO_SAMPLES,
                                       dir.filePath("input"), dir.filePath("output")},
                                      {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_TRUE(result.out.starts_with("loading-")) << result.out;
    EXPECT_NE(result.out.find("\n01-loading-"), std::string::npos) << result.out;
}

TEST_F(KelvoTour, whoseTranscriptCannotBeWritten_endsWith1AndSaysSo) {
    QDir(dir.path()).mkpath("pictures");
    ASSERT_TRUE(QDir(pictures).mkdir("transcript.txt"));
    const Outcome result = runProgram("kelvo-tour", {pictures, KELVO_SAMPLES}, {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(
        result.err.ends_with("The tour ends: " + pictures.toStdString() + "/transcript.txt cannot be written\n"))
        << result.err;
}

}  // namespace
}  // namespace kelvo::test
