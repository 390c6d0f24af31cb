#include <gtest/gtest.h>

#include "CommandLine.h"

namespace kelvo {
namespace {

CommandLine parse(QByteArrayList arguments) {
    arguments.prepend("kelvo-check");
    return parseCommandLine(arguments);
}

TEST(CommandLine, namesTheFilesInTheirOrderAndKeepsEveryByte) {
    EXPECT_EQ(parse({"\xC3\xBC\xFF.wav", "a.amp"}).request.kind, Request::Kind::Run);
    EXPECT_EQ(parse({"\xC3\xBC\xFF.wav", "a.amp"}).files, (QByteArrayList{"\xC3\xBC\xFF.wav", "a.amp"}));
    EXPECT_EQ(parse({"--", "--help", "--plot", "-x.wav"}).files, (QByteArrayList{"--help", "--plot", "-x.wav"}));
    for (const QByteArrayList& arguments :
         {QByteArrayList{"--plot", "\xFF.png", "a.wav"}, QByteArrayList{"--plot=\xFF.png", "a.wav"},
          QByteArrayList{"a.wav", "--plot", "\xFF.png"}}) {
        EXPECT_EQ(parse(arguments).plotFile, "\xFF.png");
        EXPECT_EQ(parse(arguments).files, QByteArrayList{"a.wav"});
    }
}

TEST(CommandLine, hasTheOtherOptionsOnlyWhenTheyAreGiven) {
    const CommandLine plain = parse({"a.wav"});
    EXPECT_FALSE(plain.isJson || plain.hasSet);
    EXPECT_EQ(plain.plotFile + plain.folder, "");
    const CommandLine json = parse({"--json", "a.wav"});
    EXPECT_TRUE(json.isJson);
    EXPECT_FALSE(json.hasSet);
    EXPECT_TRUE(parse({"--json", "--set", "a.wav"}).hasSet);
    EXPECT_EQ(parse({"--prepare", "x/y", "a.wav"}).folder, "x/y");
}

TEST(CommandLine, showsHelpAndVersionWithoutAFile) {
    using Kind = Request::Kind;
    for (const auto& [arguments, kind] : {std::pair{QByteArrayList{"--help"}, Kind::ShowHelp},
                                          {QByteArrayList{"-h"}, Kind::ShowHelp},
                                          {QByteArrayList{"--version", "--help"}, Kind::ShowHelp},
                                          {QByteArrayList{"--version"}, Kind::ShowVersion},
                                          {QByteArrayList{"-v"}, Kind::ShowVersion}}) {
        EXPECT_EQ(parse(arguments).request.kind, kind);
        EXPECT_EQ(parse(arguments).request.mistake, "");
    }
}

TEST(CommandLine, saysWhatIsWrong) {
    const std::pair<QByteArrayList, const char*> rows[] = {
        {{"b.wav", "a.amp"}, ""},
        {{"--", "--help", "--plot", "-x.wav"}, ""},
        {{"--plot", "X.PNG", "A.WAV"}, ""},
        {{"--prepare", "x/y", "a.wav"}, ""},
        {{}, "No file is named."},
        {{"--"}, "No file is named."},
        {{"--plot", "x.png"}, "No file is named."},
        {{"--polt", "a.wav"}, "Unknown option 'polt'."},
        {{"-p"}, "Unknown option 'p'."},
        {{"--\xC3\xBC"}, "Unknown option '\xC3\xBC'."},
        {{"--\x1B[31m", "a.wav"}, "Unknown option '\x1B[31m'."},
        {{"--help=me"}, "Unexpected value after '--help'."},
        {{"a.wav", "--plot"}, "Missing value after '--plot'."},
        {{"--plot", "a.wav", "b.wav"}, "The picture's name must end in .png."},
        {{"--plot=", "b.wav"}, "The picture's name must end in .png."},
        {{"--plot", "x.png", "a.wav", "b.wav"}, "With --plot exactly one .wav file is needed."},
        {{"--plot", "x.png", "a.amp"}, "With --plot exactly one .wav file is needed."},
        {{"--plot", "x.png", "a"}, "With --plot exactly one .wav file is needed."},
        {{"--set", "a.wav"}, "--set needs --json."},
        {{"--prepare", "", "a.wav"}, "No folder is named for --prepare."},
        {{"--prepare", "\xFF", "a.wav"}, "The folder's name must be valid UTF-8."},
        {{"--prepare", "x", "--json", "a.wav"}, "--prepare cannot be combined with --json or --plot."},
        {{"--prepare", "x", "--plot=x.png", "a.wav"}, "--prepare cannot be combined with --json or --plot."},
    };
    for (const auto& [arguments, mistake] : rows) {
        EXPECT_EQ(parse(arguments).request.mistake, mistake) << arguments.join(' ').toStdString();
    }
}

}  // namespace
}  // namespace kelvo
