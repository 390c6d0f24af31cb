#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "DisplayName.h"

namespace kelvo {
namespace {

struct NameCase {
    const char* fileName;
    std::string name;
};

/// The bytes up to the NUL that are stored of a name.
std::string stored(const QString& whole) {
    NameBuffer name;
    name.fill(' ');
    storeName(whole, name);
    const auto end = std::ranges::find(name, '\0');
    EXPECT_NE(end, name.end());
    return {name.begin(), end};
}

const NameCase kIRNames[] = {
    {"cab.wav", "CAB"},
    {"x.WAV", "X.WAV"},
    {"my.wav.ir.wav", "MY.WAV.IR."},
    {"Vintage 4x12.wav", "VINTAGE 4X"},
    {".wav", ""},
    {"", ""},
    {"//home/a.wav/b.wav.d/My IR.wav", "MY IR"},
    {"/a/b.wav/", ""},
    {".wav.wav", ".WAV.WAV"},
    {"a.wav.wav.b", "A.WAV.WAV"},
    {"abcdefghijk.wav", "ABCDEFGHIJ"},
    {"a.Wav.wav", "A.WAV"},
    {"a\tb\n.wav", "A\tB\n"},
    // Code units are counted and bytes are copied, so these names end early, some inside a letter.
    {"Stra\u00DFe.wav", "STRASSE"},  // sharp s: two letters in upper case
    {"\u00E9.wav", "\xC3"},          // one unit, the first of two bytes
    {"e\u0301.wav", "E\xCC"},        // a combining accent is a separate unit
    {"\U0001D11E.wav", "\xF0\x9D"},  // two units of a four-byte letter
    {"\U00010428.wav", "\xF0\x90"},  // outside the BMP, and has an upper case
    {"\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4.wav", "\u00C4\u00C4\u00C4\xC3"},
    {"\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C.wav", "\u65E5\u672C\u8A9E\xE6"},
};

TEST(DisplayName, ofAnIR_comesFromTheFileName) {
    for (const auto& [fileName, name] : kIRNames) {
        EXPECT_EQ(stored(irName(QString::fromUtf8(fileName))), name);
    }
}

const NameCase kAmpNames[] = {
    {"Lead.amp", "Lead"},
    {"Crunch.apm", "Crunch.apm"},
    {"x.amp.amp", "x.apm.apm"},
    {".amp", ""},
    {"a.AMP", "a.AMP"},
    {"a.amp.b.amp.c", "a.apm.b.ap"},
    {"Stra\u00DFe.amp", "Stra\u00DF"},
    {"\U0001F3B8.amp", "\xF0\x9F"},
};

TEST(DisplayName, ofAnAmp_comesFromTheFileName) {
    for (const auto& [fileName, name] : kAmpNames) {
        EXPECT_EQ(stored(ampName(QString::fromUtf8(fileName))), name);
    }
}

TEST(DisplayName, writesOneNulAndLeavesWhatFollows) {
    EXPECT_EQ(stored(QString(QChar(0xD800))), "?");
    NameBuffer name;
    name.fill(' ');
    storeName("ABCDEFGHIJKL", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("ABCDEFGHIJ\0         ", 20));
    storeName("CAB", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("CAB\0EFGHIJ\0         ", 20));
    storeName("", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("\0AB\0EFGHIJ\0         ", 20));
}

}  // namespace
}  // namespace kelvo
