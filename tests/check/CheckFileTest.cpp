#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "CheckFile.h"
#include "RVIRFile.h"
#include "SampleFiles.h"

namespace kelvo {
namespace {

class CheckFile : public testing::Test {
protected:
    FileReport check(const QString& name, const FileBytes& bytes) const {
        return checkFile(dir.write(name, bytes).toUtf8());
    }

    std::string refusal(const QString& path) const { return checkFile(path.toUtf8()).refusal.toStdString(); }

    static FileBytes goodWave() { return WaveFile{.data = {0x00, 0x40, 0x00, 0xC0}}.bytes(); }

    const SampleDir dir;
};

TEST_F(CheckFile, ofThePedalsOwnFormat_cutsALongNameOfTheTable) {
    FileNameBuff[3] = "ABCDEFGHIJKLMNOP";
    const FileReport report = check("own.wav", {'T', 'a', 'v', 'i', 'k', 'I', 'R', 3});
    FileNameBuff = {};
    EXPECT_EQ(report.name, "ABCDEFGHIJ");
    EXPECT_EQ(report.notes.value(0), "its name is cut; the whole one is \"ABCDEFGHIJKLMNO\"");
}

TEST_F(CheckFile, ofAnotherExtension_namesTheTwoThatThereAre) {
    for (const char* const name : {"a.mp3", "a", "wav", "a.wav.bak", "a.wave", "a.wav ", "a.wav\n"}) {
        EXPECT_EQ(check(name, goodWave()).refusal, "its name ends neither in \".wav\" nor in \".amp\"") << name;
    }
    EXPECT_EQ(refusal(""), "its name ends neither in \".wav\" nor in \".amp\"");
    EXPECT_EQ(refusal(dir.write("a.wav", goodWave()) + "/"), "its name ends neither in \".wav\" nor in \".amp\"");
}

TEST_F(CheckFile, ofAWave_takesAnyPath) {
    for (const char* const name : {"with space.wav", "\xC3\xA4\xE4\xB8\xAD.wav", "100%.wav", "%41.wav", "a#b?c.wav",
                                   "a\\b.wav", "a\nb.wav", "[1].wav", "~.wav", "file:x.wav"}) {
        EXPECT_EQ(check(QString::fromUtf8(name), goodWave()).refusal, "") << name;
    }
}

TEST_F(CheckFile, goesFromTheWorkingDirectoryOn) {
    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path(".")));
    const QString path = QString::fromUtf8(check("a.wav", goodWave()).path);
    for (const char* const name : {":a.wav", "C:a.wav", "--a.wav"}) {
        std::filesystem::copy_file("a.wav", name);
        EXPECT_EQ(refusal(name), "") << name;
    }
    for (const QString& good : {QString("a.wav"), QString("./a.wav"), "/" + path, "///" + path}) {
        EXPECT_EQ(refusal(good), "") << good.toStdString();
    }
    EXPECT_EQ(refusal("b.wav"), "it cannot be opened: No such file or directory");
    EXPECT_EQ(refusal(QString("a.wav") + QChar::Null + ".wav"), "its name contains a NUL");
    ASSERT_TRUE(QDir::setCurrent(former));
}

TEST_F(CheckFile, ofAnAmpWhosePathNeedsEscapes_saysWhereItIsLookedForAndWhatToDo) {
    ASSERT_TRUE(QDir().mkdir(dir.path("two words")));
    for (const auto& [name, escaped] : {std::pair("My Lead.amp", "My%20Lead.amp"),
                                        {"\xC3\xBC.amp", "%C3%BC.amp"},
                                        {"%41.amp", "%2541.amp"},
                                        {"a\x1B[31m.amp", "a%1B[31m.amp"},
                                        {"two words/a.amp", "two%20words/a.amp"}}) {
        EXPECT_EQ(check(QString::fromUtf8(name), ampFile({})).refusal,
                  "it is looked for as \"/" + dir.path(escaped) +
                      "\", since the escapes that a URL has for spaces, umlauts and the like stay in an amp model's "
                      "path; rename or move it");
    }
}

TEST_F(CheckFile, badAmp_isReportedWithoutItsPath) {
    EXPECT_EQ(check("My Lead.amp", {}).refusal, "it is empty");
    EXPECT_EQ(refusal(dir.path("no such.amp")), "it cannot be opened: No such file or directory");
}

TEST_F(CheckFile, ofAnAmpWhoseEscapedPathIsAnotherFile_readsThatOneAndSaysSo) {
    check("My%20Lead.amp", ampFile(std::array<std::uint32_t, 1>{5}));
    const FileReport report = check("My Lead.amp", ampFile({}));
    ASSERT_TRUE(report.amp);
    EXPECT_EQ(report.amp->checksum, 5U);
    EXPECT_EQ(report.name, "My%20Lead");
    EXPECT_EQ(report.notes,
              QStringList{"it is not this file that is read, but \"/" + dir.path("My%20Lead.amp") + "\""});
}

TEST_F(CheckFile, putsTheFilesOfAFolderInItsPlace) {
    ASSERT_TRUE(QDir().mkpath(dir.path("full/inner.wav")));
    ASSERT_TRUE(QDir().mkpath(dir.path("empty.wav")));
    for (const char* const name : {"full/b.WAV", "full/C.amp", "full/a.wav", "full/d.mp3", "full/.e.wav"}) {
        dir.write(name, FileBytes(1));
    }
    const QByteArray full = dir.path("full").toUtf8();
    const QByteArray empty = dir.path("empty.wav").toUtf8();
    std::ofstream(full.toStdString() + "/\xFF.wav");
    EXPECT_EQ(withFilesOfFolders({"x.wav", full, full + "/", empty, ""}),
              (QByteArrayList{"x.wav", full + "/a.wav", full + "/b.WAV", full + "/C.amp", full + "/\xFF.wav",
                              full + "/a.wav", full + "/b.WAV", full + "/C.amp", full + "/\xFF.wav", empty, ""}));
    std::filesystem::remove((full + "/\xFF.wav").toStdString());  // the toolkit could not
}

TEST_F(CheckFile, ofAFolder_saysThatItHasNoFilesOrCannotBeRead) {
    ASSERT_TRUE(QDir().mkdir(dir.path("folder.amp")));
    EXPECT_EQ(refusal(dir.path("folder.amp")), "it is a folder without .wav and .amp files");
    EXPECT_EQ(::chmod(dir.path("folder.amp").toUtf8().constData(), 0), 0);
    ASSERT_EQ(::chmod(dir.path(".").toUtf8().constData(), 0755), 0);
    // Root may read everything; for any other user the calls change nothing.
    ::setfsuid(65534);
    const std::string reason = refusal(dir.path("folder.amp"));
    ::setfsuid(::geteuid());
    EXPECT_EQ(reason, "it is a folder that cannot be read: Permission denied");
}

TEST_F(CheckFile, ofANameThatIsNotUtf8_saysThatItCannotBeChosen) {
    const QByteArray folder = dir.path(".").toUtf8() + '/';
    for (const QByteArray& name : QByteArrayList{"\xFF.wav", "\xFF.amp"}) {
        const FileBytes bytes = name.endsWith("wav") ? goodWave() : ampFile({});
        std::ofstream(folder.toStdString() + name.toStdString())
            .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        EXPECT_EQ(checkFile(folder + name).refusal, "its name is not valid UTF-8, so it cannot be chosen; rename it");
        std::filesystem::remove((folder + name).toStdString());  // the toolkit could not
    }
    EXPECT_EQ(checkFile(folder + "\xFE.wav").refusal, "it cannot be opened: No such file or directory");
}

}  // namespace
}  // namespace kelvo
