// The queue by itself, with a disk that answers when the test lets it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>

#include "AppHarness.h"
#include "ImportQueue.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

class Queue : public testing::Test {
protected:
    Queue() {
        diskAnswers_ = false;
        for (const char* const name : {"1.wav", "2.wav", "3.wav", "4.wav"}) {
            files_.write(name, FileBytes{1});
        }
    }
    ~Queue() override { letDiskAnswer(); }

    static bool isGood(const QUrl&) {
        diskAnswers_.wait(false);
        return true;
    }
    static void letDiskAnswer() {
        diskAnswers_ = true;
        diskAnswers_.notify_all();
    }
    QUrl url(const QString& name) const { return QUrl::fromLocalFile(files_.path(name)); }

    static inline std::atomic<bool> diskAnswers_;
    SampleDir files_;
    std::vector<std::pair<int, QString>> imports_;
    bool takesFiles_ = true;
    int changes_ = 0;
    ImportQueue::Table table_{"wav", isGood,
                              [this](int row, const QUrl& file) {
                                  imports_.emplace_back(row, file.fileName());
                                  return takesFiles_;
                              },
                              [this] { ++changes_; }};
    std::optional<ImportQueue> queue_{std::in_place};
};

TEST_F(Queue, countsKeysThatComeWhileTheFolderIsRead) {
    queue_->importNow(table_, 3, {url("1.wav")});
    queue_->step(table_, 3, 1);
    queue_->step(table_, 3, 1);
    queue_->step(table_, 3, 1);
    queue_->step(table_, 3, -1);
    EXPECT_EQ(imports_.size(), 1U);
    letDiskAnswer();
    ASSERT_TRUE(serveUntil([&] { return imports_.size() == 2; }));
    EXPECT_THAT(imports_, ElementsAre(std::pair(3, "1.wav"), std::pair(3, "3.wav")));
    EXPECT_EQ(queue_->where(table_, 3).previous, "2.wav");
    EXPECT_EQ(queue_->where(table_, 3).next, "4.wav");
}

TEST_F(Queue, forgetsAWalkWhoseFolderIsStillReadWhenTheUserImports) {
    queue_->importNow(table_, 3, {url("1.wav")});
    queue_->step(table_, 3, 1);
    queue_->importNow(table_, 4, {url("3.wav")});
    letDiskAnswer();
    ASSERT_TRUE(serveUntil([&] { return queue_->where(table_, 4).isRead && queue_->where(table_, 3).isRead; }));
    EXPECT_THAT(imports_, ElementsAre(std::pair(3, "1.wav"), std::pair(4, "3.wav")));
    EXPECT_EQ(queue_->where(table_, 3).next, "2.wav");
}

TEST_F(Queue, keepsTheRowsFileWhereTheImportOfItsNeighbourFails) {
    letDiskAnswer();
    queue_->importNow(table_, 0, {url("1.wav")});
    takesFiles_ = false;
    queue_->step(table_, 0, 1);
    ASSERT_TRUE(serveUntil([&] { return imports_.size() == 2; }));
    EXPECT_EQ(queue_->where(table_, 0).file, url("1.wav"));
}

TEST_F(Queue, tellsThatTheRowGoesOnFromItsOldFileWhereAWaitingNeighbourFails) {
    letDiskAnswer();
    queue_->importNow(table_, 0, {url("1.wav")});
    queue_->hasBegun(7);
    queue_->step(table_, 0, 1);
    ASSERT_TRUE(serveUntil([&] { return queue_->where(table_, 0).next == "3.wav"; }));
    takesFiles_ = false;
    changes_ = 0;
    queue_->hasEnded(7);
    EXPECT_EQ(queue_->where(table_, 0).next, "2.wav");
    EXPECT_EQ(changes_, 1);
}

TEST_F(Queue, ofWhichNothingIsLeftIsToldNothing) {
    queue_->importNow(table_, 0, {url("1.wav")});
    queue_->step(table_, 0, 1);
    EXPECT_GT(changes_, 0);
    changes_ = 0;
    letDiskAnswer();
    queue_.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(changes_, 0);
    EXPECT_EQ(imports_.size(), 1U);
}

TEST_F(Queue, isNotDisturbedByATransferOfNoRow) {
    queue_->importNow(table_, -1, {url("1.wav")});
    queue_->step(table_, -1, 1);
    EXPECT_THAT(imports_, ElementsAre(std::pair(-1, "1.wav")));
    EXPECT_TRUE(queue_->where(table_, -1).file.isEmpty());
}

}  // namespace
}  // namespace kelvo::test
