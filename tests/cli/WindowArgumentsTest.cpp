#include <gtest/gtest.h>

#include "WindowArguments.h"

namespace kelvo::test {
namespace {

TEST(WindowArguments, areWordsAndTheToolkitsOptionsInItsForm) {
    using Arguments = std::vector<std::string>;
    const struct {
        std::vector<const char*> arguments;
        QStringList words;
        Arguments toolkit;
    } rows[] = {
        {{"name"}, {}, {"name"}},
        {{"name", "one", "-style", "Fusion", "two", "-reverse", "-platform", "xcb"},
         {"one", "two"},
         {"name", "-platform", "xcb", "-style", "Fusion", "-reverse"}},
        {{"name", "--platform=offscreen:a=b", "--plugin", "one", "-plugin=two"},
         {},
         {"name", "-platform", "offscreen:a=b", "-plugin", "one", "-plugin", "two"}},
        {{"name", "--", "-style", "-x"}, {"-style", "-x"}, {"name"}},
    };
    for (const auto& [arguments, words, toolkit] : rows) {
        WindowArguments read(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()), 2);
        EXPECT_EQ(read.request().mistake, "");
        EXPECT_EQ(read.words(), words);
        EXPECT_EQ(Arguments(read.argv(), read.argv() + read.argc()), toolkit);
        EXPECT_EQ(read.argv()[read.argc()], nullptr);
    }
    std::vector<const char*> three{"name", "one", "two", "three", "four"};
    EXPECT_EQ(WindowArguments(5, const_cast<char**>(three.data()), 2).request().mistake, "Unexpected word 'three'.");
}

TEST(WindowArguments, areExplainedAsFarAsSomebodyTypesThem) {
    EXPECT_EQ(optionsHelp(), R"(  -h, --help           show this help
  -v, --version        show the version
  -platform NAME       the window system: xcb, wayland or offscreen
  -platformtheme NAME  whose dialogs and settings: gtk3 or xdgdesktopportal
  -style NAME          the look: Fusion, Windows or another that is installed
)");
}

}  // namespace
}  // namespace kelvo::test
