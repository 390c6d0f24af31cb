#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "PrintableText.h"

namespace kelvo {
namespace {

using namespace std::string_view_literals;

TEST(PrintableText, leavesLettersAndWritesOtherBytesInHexadecimal) {
    const std::pair<std::string_view, const char*> rows[] = {
        {"", ""},
        {"Open Back 4x12.wav", "Open Back 4x12.wav"},
        {"\xC3\x9C\xCE\xA9 \xE4\xB8\xAD \xF0\x9D\x84\x9E", "\xC3\x9C\xCE\xA9 \xE4\xB8\xAD \xF0\x9D\x84\x9E"},
        {"a\xCC\x88", "a\xCC\x88"},
        // Controls.
        {"a\nb\r\t\0c\x7F"sv, "a\\x0ab\\x0d\\x09\\x00c\\x7f"},
        {"\x1B[31mred\x1B[0m", "\\x1b[31mred\\x1b[0m"},
        {"\xC2\x9B"
         "31m",
         "\\xc2\\x9b31m"},
        // What turns the text round or breaks its line.
        {"a\xE2\x80\xAEvaw.b", "a\\xe2\\x80\\xaevaw.b"},
        {"\xE2\x80\xA8|\xE2\x80\xA9", "\\xe2\\x80\\xa8|\\xe2\\x80\\xa9"},
        {"\xEF\xBB\xBF"
         "a",
         "\\xef\\xbb\\xbf"
         "a"},
        // A backslash, so that no two texts look alike.
        {"\\x0a", "\\x5cx0a"},
        // What is not UTF-8, and the letters after it.
        {"\xC3", "\\xc3"},
        {"\xC3"
         "a",
         "\\xc3"
         "a"},
        {"\xE2\x82|\xFF\xFE|\x80", "\\xe2\\x82|\\xff\\xfe|\\x80"},
        {"\xC0\xAF|\xED\xA0\x80|\xF4\x90\x80\x80", "\\xc0\\xaf|\\xed\\xa0\\x80|\\xf4\\x90\\x80\\x80"},
    };
    for (const auto& [bytes, printable] : rows) {
        EXPECT_EQ(printableText(QByteArrayView(bytes.data(), std::ssize(bytes))).toStdString(), printable);
    }
}

}  // namespace
}  // namespace kelvo
