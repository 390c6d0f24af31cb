#include <gtest/gtest.h>

#include "CommandLine.h"

namespace kelvo {
namespace {

CommandLine parse(QStringList arguments) {
    arguments.prepend(QStringLiteral("kelvo-check"));
    return parseCommandLine(arguments);
}

TEST(CommandLine, namesTheFilesInTheirOrder) {
    const CommandLine command = parse({"b.wav", "a.amp"});
    EXPECT_EQ(command.action, CommandLine::Action::Check);
    EXPECT_EQ(command.files, (QStringList{"b.wav", "a.amp"}));
    EXPECT_EQ(command.plotFile, "");
    EXPECT_EQ(command.mistake, "");
}

TEST(CommandLine, takesThePicturesNameInBothForms) {
    for (const QStringList& arguments : {QStringList{"--plot", "x.png", "a.wav"}, QStringList{"--plot=x.png", "a.wav"},
                                         QStringList{"a.wav", "--plot", "x.png"}}) {
        const CommandLine command = parse(arguments);
        EXPECT_EQ(command.mistake, "");
        EXPECT_EQ(command.plotFile, "x.png");
        EXPECT_EQ(command.files, QStringList{"a.wav"});
    }
    EXPECT_EQ(parse({"--plot", "X.PNG", "A.WAV"}).mistake, "");
}

TEST(CommandLine, givesJsonOnlyWhenAsked) {
    EXPECT_TRUE(parse({"--json", "a.wav"}).isJson);
    EXPECT_FALSE(parse({"a.wav"}).isJson);
}

TEST(CommandLine, takesEverythingBehindTwoDashesForAFile) {
    const CommandLine command = parse({"--", "--help", "--plot", "-x.wav"});
    EXPECT_EQ(command.action, CommandLine::Action::Check);
    EXPECT_EQ(command.files, (QStringList{"--help", "--plot", "-x.wav"}));
    EXPECT_EQ(command.mistake, "");
}

TEST(CommandLine, showsHelpAndVersionWithoutAFile) {
    EXPECT_EQ(parse({"--help"}).action, CommandLine::Action::ShowHelp);
    EXPECT_EQ(parse({"--version"}).action, CommandLine::Action::ShowVersion);
    EXPECT_EQ(parse({"--version", "--help"}).action, CommandLine::Action::ShowHelp);
    EXPECT_EQ(parse({"--help"}).mistake, "");
}

TEST(CommandLine, withoutAFileIsAMistake) {
    EXPECT_EQ(parse({}).mistake, "No file is named.");
    EXPECT_EQ(parse({"--"}).mistake, "No file is named.");
    EXPECT_EQ(parse({"--plot", "x.png"}).mistake, "No file is named.");
}

TEST(CommandLine, withAnOptionThatThereIsNotIsAMistake) {
    EXPECT_EQ(parse({"--polt", "a.wav"}).mistake, "Unknown option 'polt'.");
    EXPECT_EQ(parse({"-h"}).mistake, "Unknown option 'h'.");
    EXPECT_EQ(parse({"--help=me"}).mistake, "Unexpected value after '--help'.");
    EXPECT_EQ(parse({"--\x1B[31m", "a.wav"}).mistake, "Unknown option '\\x1b[31m'.");
}

TEST(CommandLine, withAPictureThatIsNoneIsAMistake) {
    EXPECT_EQ(parse({"a.wav", "--plot"}).mistake, "Missing value after '--plot'.");
    EXPECT_EQ(parse({"--plot", "a.wav", "b.wav"}).mistake, "The picture's name must end in .png.");
    EXPECT_EQ(parse({"--plot=", "b.wav"}).mistake, "The picture's name must end in .png.");
}

TEST(CommandLine, plotsJustOneWave) {
    for (const QStringList& files : {QStringList{"a.wav", "b.wav"}, QStringList{"a.amp"}, QStringList{"a"}}) {
        EXPECT_EQ(parse(QStringList{"--plot", "x.png"} + files).mistake,
                  "With --plot exactly one .wav file is needed.");
    }
}

}  // namespace
}  // namespace kelvo
