#include <gtest/gtest.h>

#include "SlotLabels.h"

namespace kelvo {
namespace {

struct Split {
    QString label;
    QString number;
    QString name;
    bool isEmpty;
};

class SplitLabel : public testing::TestWithParam<Split> {};

TEST_P(SplitLabel, intoNumberAndName) {
    const SlotLabel pieces = splitLabel(GetParam().label);
    EXPECT_EQ(pieces.number, GetParam().number);
    EXPECT_EQ(pieces.name, GetParam().name);
    EXPECT_EQ(pieces.isEmpty, GetParam().isEmpty);
}

INSTANTIATE_TEST_SUITE_P(
    Labels, SplitLabel,
    testing::Values(Split{"27.GREENBACK", "27.", "GREENBACK", false}, Split{"58.CLEAN", "58.", "CLEAN", false},
                    Split{"30EMPTY", "30", "EMPTY", true},
                    Split{"30.EMPTY", "30.", "EMPTY", false},  // a file of that name
                    Split{"32.", "32.", "", true},             // no name in the pedal
                    Split{"61.          ", "61.", "          ", true},
                    Split{"27.4X12.WAV", "27.", "4X12.WAV", false},  //
                    Split{"", "", "", true}, Split{"NAME", "", "NAME", false},
                    Split{"56.\t\n\v\f\r", "56.", QStringLiteral("\u00B7\u00B7\u00B7\u00B7\u00B7"), false},
                    Split{"27.\u00A0\u3000", "27.", QStringLiteral("\u00B7\u00B7"), false}));

TEST(SpokenLabel, saysNumberAndNameOrThatTheSlotIsEmpty) {
    EXPECT_EQ(spokenLabel("27.GREENBACK"), "27. GREENBACK");
    EXPECT_EQ(spokenLabel("58.LEAD      "), "58. LEAD");
    EXPECT_EQ(spokenLabel("61.          "), "61. empty");
    EXPECT_EQ(spokenLabel("30EMPTY"), "30 empty");
    EXPECT_EQ(spokenLabel("62.\t\n\v\f\r"), QStringLiteral("62. \u00B7\u00B7\u00B7\u00B7\u00B7"));
    EXPECT_EQ(spokenLabel(""), "");
}

TEST(Printable, keepsLettersOfEveryScriptAndSpaces) {
    EXPECT_EQ(printable(QStringLiteral("ÄÖ SS 漢字 \U0001F3B8")), QStringLiteral("ÄÖ SS 漢字 \U0001F3B8"));
    EXPECT_EQ(printable(QString()), QString());
}

TEST(Printable, putsADotForWhatNoFontShows) {
    EXPECT_EQ(printable(QStringLiteral("A\u0000B")), QStringLiteral("A·B"));
    EXPECT_EQ(printable(QStringLiteral("TAB\tBELL\aDEL\u007F")), QStringLiteral("TAB·BELL·DEL·"));
    EXPECT_EQ(printable(QStringLiteral("\u0085\u009F")), QStringLiteral("··"));       // control characters beyond ASCII
    EXPECT_EQ(printable(QStringLiteral("GPJ\u202EVAW")), QStringLiteral("GPJ·VAW"));  // turns the direction of reading
    EXPECT_EQ(printable(QStringLiteral("A\u200BB\uFEFFC")), QStringLiteral("A·B·C"));  // of no width
    EXPECT_EQ(printable(QStringLiteral("CAF\uFFFD")), QStringLiteral("CAF·"));         // a letter cut in the middle
    EXPECT_EQ(printable(QStringLiteral("A\u2028B\u2029C")), QStringLiteral("A·B·C"));  // break the line
    EXPECT_EQ(printable(QStringLiteral("\uE000\U0010FFFF")), QStringLiteral("··"));    // private, not assigned
    EXPECT_EQ(printable(QString(QChar(0xD83C))), QStringLiteral("·"));                 // half a character
}

}  // namespace
}  // namespace kelvo
