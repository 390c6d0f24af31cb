#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <string>

#include "AMPFile.h"
#include "DisplayName.h"
#include "RVIRFile.h"
#include "SampleFiles.h"
#include "UniqueFd.h"

namespace kelvo {
namespace {

struct NameCase {
    const char* fileName;
    std::string name;
};

/// The name; a terminator must follow it.
std::string upToNul(const NameBuffer& name) {
    const auto end = std::find(name.begin(), name.end(), '\0');
    EXPECT_NE(end, name.end());
    return {name.begin(), end};
}

/// The bytes up to the NUL that are stored of a name.
std::string stored(const QString& whole) {
    NameBuffer name;
    name.fill(' ');
    storeName(whole, name);
    return upToNul(name);
}

const NameCase kIRNames[] = {
    {"cab.wav", "CAB"},
    {"Cab 1", "CAB 1"},
    {"x.WAV", "X.WAV"},
    {"my.wav.ir.wav", "MY.WAV.IR."},
    {"Vintage 4x12.wav", "VINTAGE 4X"},
    {".wav", ""},
    {".wav.wav", ".WAV.WAV"},
    {"a.wav.b", "A"},
    {"a.wav.wav.b", "A.WAV.WAV"},
    {"abcdefghij.wav", "ABCDEFGHIJ"},
    {"abcdefghijk.wav", "ABCDEFGHIJ"},
    {"a.Wav.wav", "A.WAV"},
    {"no extension at all", "NO EXTENSI"},
    {"My%20IR.wav", "MY%20IR"},
    {"a\tb\n.wav", "A\tB\n"},
    // Code units are counted and bytes are copied, so these names end early, some inside a letter.
    {"Stra\u00DFe.wav", "STRASSE"},  // sharp s: two letters in upper case
    {"\uFB01n.wav", "FIN"},          // ligature fi
    {"\u00E9.wav", "\xC3"},          // one unit, the first of two bytes
    {"e\u0301.wav", "E\xCC"},        // a combining accent is a separate unit
    {"\U0001D11E.wav", "\xF0\x9D"},  // two units of a four-byte letter
    {"\U00010428.wav", "\xF0\x90"},  // outside the BMP, and has an upper case
    {"\U0001D11E\U0001D11E.wav", "\xF0\x9D\x84\x9E"},
    {"\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4.wav", "\u00C4\u00C4\u00C4\xC3"},
    {"\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C.wav", "\u65E5\u672C\u8A9E\xE6"},
};

TEST(IRName, comesFromTheFileName) {
    for (const auto& [fileName, name] : kIRNames) {
        EXPECT_EQ(stored(irName(QString::fromUtf8(fileName))), name);
    }
}

const NameCase kAmpNames[] = {
    {"Lead.amp", "Lead"},
    {"Crunch.apm", "Crunch.apm"},
    {"x.amp.amp", "x.apm.apm"},
    {"Overdriven Lead.amp", "Overdriven"},
    {".amp", ""},
    {"a.amp.b", "a"},
    {"a.AMP", "a.AMP"},
    {"a.amp.b.amp.c", "a.apm.b.ap"},
    {"a.apm.amp", "a.apm"},
    {"abcdefghij.amp", "abcdefghij"},
    {"Stra\u00DFe.amp", "Stra\u00DF"},
    {"e\u0301.amp", "e\xCC"},
    {"\U0001F3B8.amp", "\xF0\x9F"},
};

TEST(AMPName, comesFromTheFileName) {
    for (const auto& [fileName, name] : kAmpNames) {
        EXPECT_EQ(stored(ampName(QString::fromUtf8(fileName))), name);
    }
}

TEST(DisplayName, usesTheLastComponentOnly) {
    EXPECT_EQ(irName("//home/a.wav/b.wav.d/My IR.wav"), QString("MY IR"));
    EXPECT_EQ(irName("cab.wav"), QString("CAB"));
    EXPECT_EQ(irName("/a/b.wav/"), QString(""));
    EXPECT_EQ(irName(""), QString(""));
}

TEST(DisplayName, writesOneNulAndLeavesWhatFollows) {
    NameBuffer name;
    name.fill(' ');
    storeName("ABCDEFGHIJKL", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("ABCDEFGHIJ\0         ", 20));
    storeName("CAB", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("CAB\0EFGHIJ\0         ", 20));
    storeName("", name);
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("\0AB\0EFGHIJ\0         ", 20));
}

TEST(DisplayName, ofHalfASurrogatePairIsAQuestionMark) {
    EXPECT_EQ(stored(QString(QChar(0xD800))), "?");
}

// The toolkit's strings cannot hold such a name, so its path as a string leads nowhere.
TEST(DisplayName, fileNameThatIsNotUtf8IsRefused) {
    const SampleDir dir;
    const QByteArray raw = QFile::encodeName(dir.path("")) + "/\xFF\xC3.wav";
    const UniqueFd created(::open(raw.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_TRUE(created);
    WaveFile wave;
    wave.data = FileBytes(2);
    const FileBytes bytes = wave.bytes();
    ASSERT_EQ(::write(created.get(), bytes.data(), bytes.size()), std::ssize(bytes));
    RVIRFile ir;
    EXPECT_FALSE(ir.OpenFilePath(QFile::decodeName(raw)));
    AMPFile amp;
    EXPECT_FALSE(amp.OpenFile(QFile::decodeName(raw)));
    EXPECT_EQ(::unlink(raw.constData()), 0);
}

TEST(DisplayName, pathWithHalfASurrogatePairIsRefused) {
    RVIRFile ir;
    EXPECT_FALSE(ir.OpenFilePath(QString("/") + QChar(0xDC00) + ".wav"));
}

}  // namespace
}  // namespace kelvo
