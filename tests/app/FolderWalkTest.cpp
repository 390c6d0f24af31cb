#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLocale>

#include "FolderWalk.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

TEST(NaturalOrder, countsNumbersAndNotTheirFiguresInAnyCaseAndLanguage) {
    const QStringList sorted{"A01",      "A1",       "a01",       "a1",          "b.wav",      "IR 1.wav",
                             "IR 2.wav", "ir 9.wav", "IR 10.wav", "ir 11 a.wav", "IR 11 B.wav"};
    const QLocale before;
    QLocale::setDefault(QLocale::c());
    for (int turn = 0; turn < sorted.size(); ++turn) {
        QStringList names = sorted.mid(turn) + sorted.first(turn);
        sortNaturally(names);
        EXPECT_EQ(names, sorted) << names.join(' ').toStdString();
    }
    QLocale::setDefault(before);
}

class Folder : public testing::Test {
protected:
    void fill(const QStringList& names) const {
        for (const QString& name : names) {
            files_.write(name, FileBytes{1});
        }
    }
    /// Refuses what is called bad.
    static bool isGood(const QUrl& url, const std::stop_token&) {
        ++asked;
        return !url.fileName().contains("bad") && QFile::exists(url.toLocalFile());
    }
    FolderPlace go(const QString& start, const std::vector<int>& steps, const std::stop_token& stop = {}) {
        return walkFolder({QUrl::fromLocalFile(files_.path(start)), "wav", steps}, verdicts_, stop);
    }
    /// Previous neighbour, file, next neighbour.
    QStringList names(const QString& start, const std::vector<int>& steps) {
        const FolderPlace place = go(start, steps);
        EXPECT_TRUE(place.isRead);
        EXPECT_FALSE(place.isFolderGone);
        return {place.previous, place.file.fileName(), place.next};
    }

    static inline int asked = 0;
    VerdictCache verdicts_{isGood};
    SampleDir files_;
};

TEST_F(Folder, isWalkedInNaturalOrderBothWaysAndEndsWhereItEnds) {
    fill({"100% #10?.wav", "100% #2?.WAV", "100% #1?.wav"});
    const QString first = "100% #1?.wav";
    const QString middle = "100% #2?.WAV";
    const QString last = "100% #10?.wav";
    EXPECT_EQ(go(first, {1}).file.toLocalFile(), files_.path(middle));
    EXPECT_THAT(names(middle, {}), ElementsAre(first, middle, last));
    EXPECT_THAT(names(middle, {1, 1, 1, 1}), ElementsAre(middle, last, ""));
    EXPECT_THAT(names(middle, {1, 1, 1, 1, -1}), ElementsAre(first, middle, last));
    EXPECT_THAT(names(middle, {-1, -1, -1}), ElementsAre("", first, middle));
    EXPECT_THAT(names(middle, {-1, -1, -1, 1, 1}), ElementsAre(middle, last, ""));
}

TEST_F(Folder, hasOnlyAcceptedFilesOfTheTypeThatAreNotHidden) {
    fill({"1.wav", "2.amp", "3 bad.wav", "4.wave", ".5.wav", "6wav", "7.wav", "8 bad.wav"});
    ASSERT_TRUE(QDir(files_.path("")).mkdir("6.wav"));
    EXPECT_THAT(names("1.wav", {1}), ElementsAre("1.wav", "7.wav", "8 bad.wav"));
    EXPECT_THAT(names("7.wav", {1}), ElementsAre("1.wav", "7.wav", ""));
}

TEST_F(Folder, isJudgedForStepsOnlyAndOncePerFileUntilTheFileChanges) {
    fill({"1.wav", "2 bad.wav", "3.wav"});
    asked = 0;
    EXPECT_THAT(names("1.wav", {}), ElementsAre("", "1.wav", "2 bad.wav"));
    EXPECT_EQ(asked, 0);
    static_cast<void>(go("1.wav", {1}));
    static_cast<void>(go("1.wav", {1, -1, 1}));
    EXPECT_EQ(asked, 3);
    files_.write("2 bad.wav", FileBytes{1, 2});
    static_cast<void>(go("1.wav", {1}));
    EXPECT_EQ(asked, 4);
}

TEST_F(Folder, countsItsFilesAndKnowsThePlaceOfOneThatIsGone) {
    fill({"1.wav", "2.wav", "4.wav"});
    const auto count = [this](const QString& start, const std::vector<int>& steps) {
        const FolderPlace place = go(start, steps);
        return std::pair(place.number, place.count);
    };
    EXPECT_THAT(count("1.wav", {}), testing::Pair(1, 3));
    EXPECT_THAT(count("4.wav", {}), testing::Pair(3, 3));
    EXPECT_THAT(count("3.wav", {}), testing::Pair(0, 3));
    EXPECT_THAT(count("3.wav", {1}), testing::Pair(3, 3));
    EXPECT_THAT(count("3.wav", {-1}), testing::Pair(2, 3));
    // The walk starts at the place of a removed file.
    EXPECT_THAT(names("3.wav", {1}), ElementsAre("2.wav", "4.wav", ""));
    EXPECT_THAT(names("3.wav", {-1}), ElementsAre("1.wav", "2.wav", "4.wav"));
}

TEST_F(Folder, thatIsGoneLeavesTheFileWithoutNeighbours) {
    const FolderPlace place = walkFolder({QUrl("file:///nowhere/at/all/1.wav"), "wav", {1, -1, -1}}, verdicts_);
    EXPECT_EQ(place.file, QUrl("file:///nowhere/at/all/1.wav"));
    EXPECT_TRUE(place.isFolderGone);
    EXPECT_EQ(place.previous, QString());
    EXPECT_EQ(place.next, QString());
}

TEST_F(Folder, thatIsNoLongerWantedIsLeft) {
    fill({"1.wav", "2.wav"});
    std::stop_source stop;
    stop.request_stop();
    asked = 0;
    static_cast<void>(go("1.wav", {1}, stop.get_token()));
    EXPECT_EQ(asked, 0);
}

TEST_F(Folder, acceptsFilesUpToANumberAndEachOnce) {
    fill({"1.wav", "2 bad.wav", "3.wav", "4.wav"});
    QList<QUrl> files;
    for (const char* const name : {"1.wav", "./1.wav", "2 bad.wav", "3.wav", "4.wav"}) {
        files.append(QUrl::fromLocalFile(files_.path(name)));
    }
    EXPECT_THAT(acceptedFiles(files, 2, verdicts_), ElementsAre(files[0], files[3]));
    EXPECT_THAT(acceptedFiles(files, 9, verdicts_), ElementsAre(files[0], files[3], files[4]));
}

}  // namespace
}  // namespace kelvo::test
