// The queue by itself, with folders that answer when the test lets them.

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
using testing::Pair;

/// Notes imports instead of sending anything: each transfer is over at once.
class NotedImports : public ImportTarget {
public:
    bool importFile(SlotBank&, int row, const QUrl& file) override {
        imports.emplace_back(row, file.fileName());
        return accepts;
    }
    void slotsChanged(SlotBank&) override { ++changes; }
    void transferFinished(SlotBank&, int) override {}

    std::vector<std::pair<int, QString>> imports;
    bool accepts = true;
    int changes = 0;
};

class Queue : public testing::Test {
protected:
    Queue() {
        answers_ = false;
        for (const char* const name : {"1.wav", "2.wav", "3.wav", "4.wav"}) {
            files_.write(name, FileBytes{1});
        }
        other_.write("a.wav", FileBytes{1});
        other_.write("b.wav", FileBytes{1});
    }
    ~Queue() override { letAnswer(); }

    /// Files in the folder of the numbers are judged when the test lets them be.
    static bool judge(const QUrl& file, const std::stop_token&) {
        if (file.fileName().at(0).isDigit()) {
            answers_.wait(false);
        }
        return true;
    }
    static void letAnswer() {
        answers_ = true;
        answers_.notify_all();
    }
    QUrl url(const QString& name) const { return QUrl::fromLocalFile(files_.path(name)); }
    const FolderPlace& place(int row) const { return bank_.slot(row).place; }

    static inline std::atomic<bool> answers_;
    SampleDir files_;
    SampleDir other_;
    NotedImports target_;
    SlotKind kind_{.fileType = "wav",
                   .title = "",
                   .accepted = "",
                   .firstNumber = 27,
                   .transfer = kIRTransfer,
                   .read = nullptr,
                   .isAccepted = judge};
    SlotBank bank_{kind_};
    SlotBank unused_{kind_};
    std::optional<FolderReaders> readers_{std::in_place};
    ImportQueue queue_{target_, *readers_, {&bank_, &unused_}};
};

TEST_F(Queue, countsKeysThatComeWhileTheFolderIsRead) {
    queue_.importNow(bank_, 3, url("1.wav"));
    for (const int direction : {1, 1, 1, -1}) {
        queue_.step(bank_, 3, direction);
    }
    EXPECT_EQ(target_.imports.size(), 1U);
    letAnswer();
    ASSERT_TRUE(serveUntil([&] { return target_.imports.size() == 2; }));
    EXPECT_THAT(target_.imports, ElementsAre(Pair(3, "1.wav"), Pair(3, "3.wav")));
    EXPECT_EQ(place(3).previous, "2.wav");
    EXPECT_EQ(place(3).next, "4.wav");
    EXPECT_EQ(place(3).number, 3);
}

TEST_F(Queue, dropsAStepWhoseFolderIsStillReadWhenTheUserImports) {
    queue_.importNow(bank_, 3, url("1.wav"));
    queue_.step(bank_, 3, 1);
    queue_.importNow(bank_, 4, url("3.wav"));
    letAnswer();
    ASSERT_TRUE(serveUntil([&] { return place(4).isRead; }));
    EXPECT_THAT(target_.imports, ElementsAre(Pair(3, "1.wav"), Pair(4, "3.wav")));
}

TEST_F(Queue, stepsInOtherFoldersWhileOneDoesNotAnswer) {
    queue_.importNow(bank_, 3, url("1.wav"));
    queue_.step(bank_, 3, 1);
    const QUrl elsewhere = QUrl::fromLocalFile(other_.path("a.wav"));
    queue_.importSet(bank_, 5, {elsewhere});
    queue_.step(bank_, 5, 1);
    ASSERT_TRUE(serveUntil([&] { return target_.imports.size() == 3; }));
    EXPECT_THAT(target_.imports, ElementsAre(Pair(3, "1.wav"), Pair(5, "a.wav"), Pair(5, "b.wav")));
}

TEST_F(Queue, keepsTheRowsFileWhereTheImportOfItsNeighbourFails) {
    letAnswer();
    queue_.importNow(bank_, 0, url("1.wav"));
    target_.accepts = false;
    queue_.step(bank_, 0, 1);
    ASSERT_TRUE(serveUntil([&] { return target_.imports.size() == 2; }));
    EXPECT_EQ(place(0).file, url("1.wav"));
}

TEST_F(Queue, ignoresReadersThatAreGone) {
    queue_.importNow(bank_, 0, url("1.wav"));
    queue_.step(bank_, 0, 1);
    letAnswer();
    readers_.reset();
    target_.changes = 0;
    QCoreApplication::processEvents();
    EXPECT_EQ(target_.changes, 0);
    EXPECT_EQ(target_.imports.size(), 1U);
}

TEST_F(Queue, isNotDisturbedByATransferOfNoRow) {
    queue_.importNow(bank_, -1, url("1.wav"));
    queue_.step(bank_, -1, 1);
    EXPECT_THAT(target_.imports, ElementsAre(Pair(-1, "1.wav")));
}

}  // namespace
}  // namespace kelvo::test
