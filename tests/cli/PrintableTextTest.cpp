#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "PrintableText.h"

namespace kelvo {
namespace {

using namespace std::string_view_literals;

std::string printable(std::string_view bytes) {
    return printableText(QByteArrayView(bytes.data(), std::ssize(bytes))).toStdString();
}

TEST(PrintableText, leavesLettersOfAllScriptsAndSpaces) {
    EXPECT_EQ(printable(""), "");
    EXPECT_EQ(printable("Open Back 4x12.wav"), "Open Back 4x12.wav");
    EXPECT_EQ(printable("\xC3\x9C\xCE\xA9 \xE4\xB8\xAD \xF0\x9D\x84\x9E"),
              "\xC3\x9C\xCE\xA9 \xE4\xB8\xAD \xF0\x9D\x84\x9E");
    EXPECT_EQ(printable("a\xCC\x88"), "a\xCC\x88");
}

TEST(PrintableText, writesControlsAsTheirBytes) {
    EXPECT_EQ(printable("a\nb\r\t\0c\x7F"sv), "a\\x0ab\\x0d\\x09\\x00c\\x7f");
    EXPECT_EQ(printable("\x1B[31mred\x1B[0m"), "\\x1b[31mred\\x1b[0m");
    EXPECT_EQ(printable("\xC2\x9B"
                        "31m"),
              "\\xc2\\x9b31m");
}

TEST(PrintableText, writesWhatTurnsTheTextRoundOrBreaksItsLineAsBytes) {
    EXPECT_EQ(printable("a\xE2\x80\xAEvaw.b"), "a\\xe2\\x80\\xaevaw.b");
    EXPECT_EQ(printable("\xE2\x80\xA8|\xE2\x80\xA9"), "\\xe2\\x80\\xa8|\\xe2\\x80\\xa9");
    EXPECT_EQ(printable("\xEF\xBB\xBF"
                        "a"),
              "\\xef\\xbb\\xbf"
              "a");
}

TEST(PrintableText, writesABackslashAsItsByteSoThatNoTwoTextsLookAlike) {
    EXPECT_EQ(printable("\\x0a"), "\\x5cx0a");
}

TEST(PrintableText, writesWhatIsNoUtf8AsItsBytesAndGoesOnBehindIt) {
    EXPECT_EQ(printable("\xC3"), "\\xc3");
    EXPECT_EQ(printable("\xC3"
                        "a"),
              "\\xc3"
              "a");
    EXPECT_EQ(printable("\xE2\x82|\xFF\xFE|\x80"), "\\xe2\\x82|\\xff\\xfe|\\x80");
    EXPECT_EQ(printable("\xC0\xAF|\xED\xA0\x80|\xF4\x90\x80\x80"), "\\xc0\\xaf|\\xed\\xa0\\x80|\\xf4\\x90\\x80\\x80");
}

}  // namespace
}  // namespace kelvo
