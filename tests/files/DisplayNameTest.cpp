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

/// The name and the terminator that must stand behind it.
std::string upToNul(const NameBuffer& name) {
    const auto end = std::find(name.begin(), name.end(), '\0');
    EXPECT_NE(end, name.end());
    return {name.begin(), end};
}

class IRName : public testing::TestWithParam<NameCase> {};

TEST_P(IRName, comesFromTheFileName) {
    const SampleDir dir;
    WaveFile wave;
    wave.data = FileBytes(2);
    RVIRFile file;
    ASSERT_TRUE(file.OpenFilePath(dir.write(QString::fromUtf8(GetParam().fileName), wave.bytes())));
    EXPECT_EQ(upToNul(file.CharFileNane), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Examples, IRName,
                         testing::Values(NameCase{"cab.wav", "CAB"}, NameCase{"Cab 1", "CAB 1"},
                                         NameCase{"x.WAV", "X.WAV"}, NameCase{"my.wav.ir.wav", "MY.WAV.IR."},
                                         NameCase{"Vintage 4x12.wav", "VINTAGE 4X"}));

INSTANTIATE_TEST_SUITE_P(Borders, IRName,
                         testing::Values(NameCase{".wav", ""}, NameCase{".wav.wav", ".WAV.WAV"},
                                         NameCase{"a.wav.b", "A"}, NameCase{"a.wav.wav.b", "A.WAV.WAV"},
                                         NameCase{"abcdefghij.wav", "ABCDEFGHIJ"},
                                         NameCase{"abcdefghijk.wav", "ABCDEFGHIJ"}, NameCase{"a.Wav.wav", "A.WAV"},
                                         NameCase{"no extension at all", "NO EXTENSI"},
                                         NameCase{"My%20IR.wav", "MY%20IR"}, NameCase{"a\tb\n.wav", "A\tB\n"}));

// Code units are counted and bytes are copied, so these names end early, some inside a letter.
INSTANTIATE_TEST_SUITE_P(
    BeyondAscii, IRName,
    testing::Values(NameCase{"Stra\u00DFe.wav", "STRASSE"},  // sharp s: two letters in upper case
                    NameCase{"\uFB01n.wav", "FIN"},          // ligature fi
                    NameCase{"\u00E9.wav", "\xC3"},          // one unit, the first of two bytes
                    NameCase{"e\u0301.wav", "E\xCC"},        // a combining accent is a unit of its own
                    NameCase{"\U0001D11E.wav", "\xF0\x9D"},  // two units of a four-byte letter
                    NameCase{"\U00010428.wav", "\xF0\x90"},  // outside the BMP, and has an upper case
                    NameCase{"\U0001D11E\U0001D11E.wav", "\xF0\x9D\x84\x9E"},
                    NameCase{"\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4.wav", "\u00C4\u00C4\u00C4\xC3"},
                    NameCase{"\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C\u8A9E\u65E5\u672C.wav",
                             "\u65E5\u672C\u8A9E\xE6"}));

class AMPName : public testing::TestWithParam<NameCase> {};

TEST_P(AMPName, comesFromTheFileName) {
    const SampleDir dir;
    AMPFile file;
    ASSERT_TRUE(file.OpenFile(dir.write(QString::fromUtf8(GetParam().fileName), ampFile({}))));
    EXPECT_EQ(upToNul(file.CharFileName), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Examples, AMPName,
                         testing::Values(NameCase{"Lead.amp", "Lead"}, NameCase{"Crunch.apm", "Crunch.apm"},
                                         NameCase{"x.amp.amp", "x.apm.apm"},
                                         NameCase{"Overdriven Lead.amp", "Overdriven"}));

INSTANTIATE_TEST_SUITE_P(Borders, AMPName,
                         testing::Values(NameCase{".amp", ""}, NameCase{"a.amp.b", "a"}, NameCase{"a.AMP", "a.AMP"},
                                         NameCase{"a.amp.b.amp.c", "a.apm.b.ap"}, NameCase{"a.apm.amp", "a.apm"},
                                         NameCase{"abcdefghij.amp", "abcdefghij"},
                                         NameCase{"Stra\u00DFe.amp", "Stra\u00DF"}, NameCase{"e\u0301.amp", "e\xCC"},
                                         NameCase{"\U0001F3B8.amp", "\xF0\x9F"}));

TEST(DisplayName, isTakenFromTheLastComponentOnly) {
    EXPECT_EQ(irName("//home/a.wav/b.wav.d/My IR.wav"), QString("MY IR"));
    EXPECT_EQ(irName("cab.wav"), QString("CAB"));
    EXPECT_EQ(irName("/a/b.wav/"), QString(""));
    EXPECT_EQ(irName(""), QString(""));
}

TEST(DisplayName, writesOneNulAndLeavesWhatLiesBehindIt) {
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
    NameBuffer name;
    name.fill(' ');
    storeName(QString(QChar(0xD800)), name);
    EXPECT_EQ(upToNul(name), "?");
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
