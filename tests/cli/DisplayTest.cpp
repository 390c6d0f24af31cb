// What the programs with windows say where there is no display: one sentence, and no abort.

#include <QTemporaryDir>

#include "ProgramRun.h"

namespace kelvo::test {
namespace {

using Variables = QList<std::pair<QString, QString>>;

class WithoutADisplay : public testing::TestWithParam<const char*> {
protected:
    /// What the program says with these environment variables and arguments; it must end with status 1.
    std::string complaint(const Variables& variables, QStringList arguments = {}) const {
        if (std::string_view(GetParam()) == "kelvo-tour") {
            arguments += {pictures.path(), KELVO_SAMPLES};
        }
        const Outcome result = runProgram(GetParam(), arguments, variables);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        const std::string beginning = std::string(GetParam()) + ": No display to show a window on: ";
        EXPECT_TRUE(result.err.starts_with(beginning)) << result.err;
        return result.err.substr(std::min(beginning.size(), result.err.size()));
    }

    const QTemporaryDir pictures;
};

TEST_P(WithoutADisplay, saysWhyInOneSentence) {
    EXPECT_EQ(complaint({}), "could not connect to display\n");
    // The toolkit complains about this policy too.
    EXPECT_EQ(complaint({{"LC_ALL", "C"}, {"QT_SCALE_FACTOR_ROUNDING_POLICY", "x"}}), "could not connect to display\n");
    EXPECT_EQ(complaint({{"DISPLAY", ":4711"}}), "could not connect to display :4711\n");
    const std::string noPlugin = "Could not find the Qt platform plugin \"nonsense\" in \"\"\n";
    EXPECT_EQ(complaint({{"QT_QPA_PLATFORM", "nonsense"}}), noPlugin);
    EXPECT_EQ(complaint({}, {"-platform", "nonsense"}), noPlugin);
    EXPECT_EQ(complaint({}, {"-platform", "\x1B[31m"}),
              "Could not find the Qt platform plugin \"\\x1b[31m\" in \"\"\n");
}

INSTANTIATE_TEST_SUITE_P(Programs, WithoutADisplay, testing::Values("kelvo", "kelvo-demo", "kelvo-tour"),
                         [](const auto& parameter) {
                             std::string name(parameter.param);
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
}  // namespace kelvo::test
