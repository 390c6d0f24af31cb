#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WindowArguments.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

/// Read as those of a program that takes two words.
class Read : public WindowArguments {
public:
    explicit Read(std::vector<const char*> arguments)
        : WindowArguments(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()), 2) {}

    std::vector<std::string> toolkit() { return {argv(), argv() + argc()}; }
};

TEST(WindowArguments, keepTheToolkitsOptionsAndTheWordsApart) {
    Read read({"name", "one", "-style", "Fusion", "two", "-reverse", "-platform", "xcb"});
    EXPECT_EQ(read.request().mistake, "");
    EXPECT_EQ(read.words(), (QStringList{"one", "two"}));
    EXPECT_THAT(read.toolkit(), ElementsAre("name", "-platform", "xcb", "-style", "Fusion", "-reverse"));
    EXPECT_EQ(read.argv()[read.argc()], nullptr);
}

TEST(WindowArguments, giveTheToolkitItsOwnForm) {
    Read read({"name", "--platform=offscreen:a=b", "--plugin", "one", "-plugin=two"});
    EXPECT_EQ(read.request().mistake, "");
    EXPECT_THAT(read.toolkit(), ElementsAre("name", "-platform", "offscreen:a=b", "-plugin", "one", "-plugin", "two"));
}

TEST(WindowArguments, ofNoneGiveTheToolkitTheProgramsNameOnly) {
    Read read({"name"});
    EXPECT_EQ(read.words(), QStringList());
    EXPECT_THAT(read.toolkit(), ElementsAre("name"));
}

TEST(WindowArguments, afterTwoDashes_everythingIsAWord) {
    Read read({"name", "--", "-style", "-x"});
    EXPECT_EQ(read.request().mistake, "");
    EXPECT_EQ(read.words(), (QStringList{"-style", "-x"}));
    EXPECT_THAT(read.toolkit(), ElementsAre("name"));
}

TEST(WindowArguments, areExplainedAsFarAsSomebodyTypesThem) {
    EXPECT_EQ(optionsHelp(), R"(  -h, --help           show this help
  -v, --version        show the version
  -platform NAME       the window system: xcb, wayland or offscreen
  -platformtheme NAME  whose dialogs and settings: gtk3 or xdgdesktopportal
  -style NAME          the look: Fusion, Windows or another that is installed
)");
}

TEST(WindowArguments, tooManyWords_areAnError) {
    EXPECT_EQ(Read({"name", "one", "two", "three"}).request().mistake, "Unexpected word 'three'.");
    EXPECT_EQ(Read({"name", "one", "two", "three", "four"}).request().mistake, "Unexpected word 'three'.");
}

}  // namespace
}  // namespace kelvo::test
