#include <gtest/gtest.h>

#include "CommandLine.h"

namespace kelvo {
namespace {

CommandLine parse(QByteArrayList arguments) {
    arguments.prepend("kelvo-check");
    return parseCommandLine(arguments);
}

TEST(CommandLine, namesTheFilesInTheirOrder) {
    const CommandLine command = parse({"b.wav", "a.amp"});
    EXPECT_EQ(command.request.kind, Request::Kind::Run);
    EXPECT_EQ(command.files, (QByteArrayList{"b.wav", "a.amp"}));
    EXPECT_EQ(command.plotFile, "");
    EXPECT_EQ(command.request.mistake, "");
}

TEST(CommandLine, keepsEveryByteOfANameAndShowsAMistakeInUtf8) {
    EXPECT_EQ(parse({"\xC3\xBC\xFF.wav"}).files, QByteArrayList{"\xC3\xBC\xFF.wav"});
    EXPECT_EQ(parse({"--plot", "\xFF.png", "a.wav"}).plotFile, "\xFF.png");
    EXPECT_EQ(parse({"--\xC3\xBC"}).request.mistake, "Unknown option '\xC3\xBC'.");
}

TEST(CommandLine, takesThePicturesNameInBothForms) {
    for (const QByteArrayList& arguments :
         {QByteArrayList{"--plot", "x.png", "a.wav"}, QByteArrayList{"--plot=x.png", "a.wav"},
          QByteArrayList{"a.wav", "--plot", "x.png"}}) {
        const CommandLine command = parse(arguments);
        EXPECT_EQ(command.request.mistake, "");
        EXPECT_EQ(command.plotFile, "x.png");
        EXPECT_EQ(command.files, QByteArrayList{"a.wav"});
    }
    EXPECT_EQ(parse({"--plot", "X.PNG", "A.WAV"}).request.mistake, "");
}

TEST(CommandLine, givesJsonOnlyWhenAsked) {
    EXPECT_TRUE(parse({"--json", "a.wav"}).isJson);
    EXPECT_FALSE(parse({"a.wav"}).isJson);
}

TEST(CommandLine, takesEverythingBehindTwoDashesForAFile) {
    const CommandLine command = parse({"--", "--help", "--plot", "-x.wav"});
    EXPECT_EQ(command.request.kind, Request::Kind::Run);
    EXPECT_EQ(command.files, (QByteArrayList{"--help", "--plot", "-x.wav"}));
    EXPECT_EQ(command.request.mistake, "");
}

TEST(CommandLine, showsHelpAndVersionWithoutAFile) {
    EXPECT_EQ(parse({"--help"}).request.kind, Request::Kind::ShowHelp);
    EXPECT_EQ(parse({"--version"}).request.kind, Request::Kind::ShowVersion);
    EXPECT_EQ(parse({"-h"}).request.kind, Request::Kind::ShowHelp);
    EXPECT_EQ(parse({"-v"}).request.kind, Request::Kind::ShowVersion);
    EXPECT_EQ(parse({"--version", "--help"}).request.kind, Request::Kind::ShowHelp);
    EXPECT_EQ(parse({"--help"}).request.mistake, "");
}

TEST(CommandLine, withoutAFileIsAMistake) {
    EXPECT_EQ(parse({}).request.mistake, "No file is named.");
    EXPECT_EQ(parse({"--"}).request.mistake, "No file is named.");
    EXPECT_EQ(parse({"--plot", "x.png"}).request.mistake, "No file is named.");
}

TEST(CommandLine, withAnOptionThatThereIsNotIsAMistake) {
    EXPECT_EQ(parse({"--polt", "a.wav"}).request.mistake, "Unknown option 'polt'.");
    EXPECT_EQ(parse({"-p"}).request.mistake, "Unknown option 'p'.");
    EXPECT_EQ(parse({"--help=me"}).request.mistake, "Unexpected value after '--help'.");
    EXPECT_EQ(parse({"--\x1B[31m", "a.wav"}).request.mistake, "Unknown option '\x1B[31m'.");
}

TEST(CommandLine, withAPictureThatIsNoneIsAMistake) {
    EXPECT_EQ(parse({"a.wav", "--plot"}).request.mistake, "Missing value after '--plot'.");
    EXPECT_EQ(parse({"--plot", "a.wav", "b.wav"}).request.mistake, "The picture's name must end in .png.");
    EXPECT_EQ(parse({"--plot=", "b.wav"}).request.mistake, "The picture's name must end in .png.");
}

TEST(CommandLine, givesTheSetOnlyInJson) {
    EXPECT_TRUE(parse({"--json", "--set", "a.wav"}).hasSet);
    EXPECT_FALSE(parse({"--json", "a.wav"}).hasSet);
    EXPECT_EQ(parse({"--set", "a.wav"}).request.mistake, "--set needs --json.");
}

TEST(CommandLine, preparesInAFolderAndDoesNothingElse) {
    EXPECT_EQ(parse({"--prepare", "x/y", "a.wav"}).folder, "x/y");
    EXPECT_EQ(parse({"--prepare", "x/y", "a.wav"}).request.mistake, "");
    EXPECT_EQ(parse({"a.wav"}).folder, "");
    EXPECT_EQ(parse({"--prepare", "", "a.wav"}).request.mistake, "No folder is named for --prepare.");
    EXPECT_EQ(parse({"--prepare", "\xFF", "a.wav"}).request.mistake, "The folder's name must be valid UTF-8.");
    for (const char* const other : {"--json", "--plot=x.png"}) {
        EXPECT_EQ(parse({"--prepare", "x", other, "a.wav"}).request.mistake,
                  "--prepare cannot be combined with --json or --plot.");
    }
}

TEST(CommandLine, plotsJustOneWave) {
    for (const QByteArrayList& files :
         {QByteArrayList{"a.wav", "b.wav"}, QByteArrayList{"a.amp"}, QByteArrayList{"a"}}) {
        EXPECT_EQ(parse(QByteArrayList{"--plot", "x.png"} + files).request.mistake,
                  "With --plot exactly one .wav file is needed.");
    }
}

}  // namespace
}  // namespace kelvo
