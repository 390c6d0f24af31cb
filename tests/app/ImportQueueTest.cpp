// The queue by itself: scenarios from text files, and folders that answer when the test lets them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <atomic>
#include <chrono>
#include <optional>

#include "AppHarness.h"
#include "ImportQueue.h"
#include "SampleFiles.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;

/// A queue whose imports only begin a transfer. The test gives the acknowledgements.
class Queue : public testing::Test, public ImportTarget {
protected:
    Queue() {
        answers_ = true;
        for (const char* const name : {"1.wav", "2.wav", "3.wav", "4.wav", "5.wav", "odd.wav", "a.amp", "b.amp"}) {
            files_.write(name, FileBytes{1});
        }
        QFile::link(files_.path(""), files_.path("link"));
        cab_.patience.setInterval(kForever);
        amp_.patience.setInterval(kForever);
    }
    ~Queue() override { letAnswer(); }

    bool importFile(SlotBank& bank, int row, const QUrl& file) override {
        if (!QFile::exists(file.toLocalFile()) || file.fileName() == "odd.wav") {
            return false;
        }
        imports_.push_back(file.fileName());
        queue_.willBegin(bank);
        bank.progress = {.number = static_cast<std::uint32_t>(imports_.size()), .row = static_cast<std::int16_t>(row)};
        queue_.hasBegun(bank);
        return true;
    }
    /// The window shows a change only when it is reported.
    void slotsChanged(SlotBank& bank) override { shown_[&bank] = rowsOf(bank); }
    void transferFinished(SlotBank&, int row) override { finished_.push_back(row); }

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
    static QStringList rowsOf(const SlotBank& bank) {
        static const QStringList kStates{"", "waiting", "running", "silent", "sent", "cut off"};
        QStringList rows;
        for (int row = 0; row < kTableRows; ++row) {
            if (const SlotState state = bank.state(row); state != SlotState::Idle) {
                const QString file = bank.slot(row).place.file.fileName().section('.', 0, 0);
                rows.append(QString("%1 %2 %3").arg(row).arg(kStates.at(static_cast<int>(state)), file).trimmed());
            }
        }
        return rows;
    }
    void acknowledge(SlotBank& bank, int phase) {
        TransferProgress progress = bank.progress;
        progress.acknowledged = static_cast<std::uint8_t>(phase);
        bank.progress = progress;
        queue_.hasProgressed(bank);
    }

    /// The patience ends when the test says so, also on a busy machine.
    static constexpr std::chrono::hours kForever{1};
    static inline std::atomic<bool> answers_;
    SampleDir files_;
    std::vector<QString> imports_;
    std::vector<int> finished_;
    std::map<const SlotBank*, QStringList> shown_;
    SlotKind cabKind_{"wav", "", "", 27, kIRTransfer, nullptr, judge};
    SlotKind ampKind_{"amp", "", "", 56, kAMPTransfer, nullptr, judge};
    SlotBank cab_{cabKind_};
    SlotBank amp_{ampKind_};
    std::optional<FolderReaders> readers_{std::in_place};
    ImportQueue queue_{*this, *readers_, {&cab_, &amp_}};
};

/// Lines of an action and, after an arrow, what the window's rows show then: their state and the slot's file.
struct Scenario {
    QString title;
    QStringList lines;
};

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.title.toStdString();
}

std::vector<Scenario> scenarios() {
    QFile file(QStringLiteral(KELVO_SCENARIOS "/queue.txt"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<Scenario> all;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(' ')) {
            all.back().lines.append(line.simplified());
        } else if (!line.startsWith('#')) {
            all.push_back({line, {}});
        }
    }
    return all;
}

class QueueScenario : public Queue, public testing::WithParamInterface<Scenario> {
protected:
    void perform(const QString& line) {
        static const QRegularExpression kForm("^(CAB |AMP |)(\\d |none |)(\\w+) ?(.*)$");
        const QRegularExpressionMatch form = kForm.match(line);
        SlotBank& bank = form.captured(1) == "AMP " ? amp_ : cab_;
        const int row = form.captured(2) == "none " ? -1 : form.captured(2).trimmed().toInt();
        const QStringList words = form.captured(4).split(' ');
        QList<QUrl> files;
        for (const QString& name : words) {
            files.append(url(name + '.' + bank.kind.fileType));
        }
        const std::map<QString, std::function<void()>> actions{
            {"chooses", [&] { queue_.importNow(bank, row, files.first()); }},
            {"gets", [&] { queue_.importSet(bank, row, files); }},
            {"steps",
             [&] { std::ranges::for_each(words, [&](auto& way) { queue_.step(bank, row, way == "on" ? 1 : -1); }); }},
            {"cleared", [&] { queue_.slotCleared(bank, row); }},
            {"acknowledges", [&] { acknowledge(bank, words.first().toInt()); }},
            {"ends", [&] { acknowledge(bank, bank.kind.transfer.namePhase); }},
            {"silence", [&] { passTime(); }},
            {"removed", [&] { QFile::remove(files.first().toLocalFile()); }},
            {"question", [&] { queue_.hold(true); }},
            {"answer", [&] { queue_.hold(false); }},
        };
        actions.at(form.captured(3))();
        readFolder();
    }
    /// Lets the patience with both banks end.
    void passTime() {
        for (SlotBank* const bank : {&cab_, &amp_}) {
            bank->patience.setInterval(0);
            EXPECT_TRUE(serveUntil([bank] { return !bank->patience.isActive(); }));
            bank->patience.setInterval(kForever);
        }
    }
    /// Waits for the reads that have been requested, and for those that they request.
    void readFolder() {
        for (int i = 0; i < 3; ++i) {
            bool isRead = false;
            readers_->start(folderOf(url("1.wav")), [&](const auto&) { return [&] { isRead = true; }; });
            EXPECT_TRUE(serveUntil([&] { return isRead; }));
        }
    }
    QString shown() {
        QStringList rows;
        for (const auto& [bank, prefix] : {std::pair(&cab_, "CAB "), {&amp_, "AMP "}}) {
            for (const QString& row : shown_[bank]) {
                rows.append(prefix + row);
            }
        }
        return rows.join(", ");
    }
};

TEST_P(QueueScenario, leadsToTheseRows) {
    for (const QString& line : GetParam().lines) {
        const QStringList sides = line.split(" ->");
        perform(sides[0]);
        if (sides.size() > 1) {
            EXPECT_EQ(shown().toStdString(), sides[1].trimmed().toStdString()) << sides[0].toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, QueueScenario, testing::ValuesIn(scenarios()), [](const auto& scenario) {
    QString name = scenario.param.title;
    return name.replace(QRegularExpression("\\W"), "_").toStdString();
});

class QueueOfASlowFolder : public Queue {
protected:
    QueueOfASlowFolder() {
        answers_ = false;
        queue_.importNow(cab_, 3, url("1.wav"));
        acknowledge(cab_, 4);
    }
};

TEST_F(QueueOfASlowFolder, countsStepsWhileTheFolderIsRead) {
    for (const int direction : {1, 1, 1, -1}) {
        queue_.step(cab_, 3, direction);
    }
    EXPECT_THAT(imports_, ElementsAre("1.wav"));
    letAnswer();
    ASSERT_TRUE(serveUntil([&] { return imports_.size() == 2; }));
    EXPECT_EQ(imports_.back(), "3.wav");
    const FolderPlace& place = cab_.slot(3).place;
    EXPECT_EQ(place.previous, "2.wav");
    EXPECT_EQ(place.next, "4.wav");
    EXPECT_EQ(place.number, 3);
}

TEST_F(QueueOfASlowFolder, dropsItsStepsWhenTheUserImports) {
    queue_.step(cab_, 3, 1);
    queue_.importNow(cab_, 4, url("3.wav"));
    letAnswer();
    ASSERT_TRUE(serveUntil([&] { return cab_.slot(4).place.isRead; }));
    EXPECT_THAT(imports_, ElementsAre("1.wav", "3.wav"));
}

TEST_F(QueueOfASlowFolder, stepsInOtherFolders) {
    const SampleDir other;
    other.write("y.wav", FileBytes{1});
    queue_.step(cab_, 3, 1);
    queue_.importSet(cab_, 5, {QUrl::fromLocalFile(other.write("x.wav", FileBytes{1}))});
    queue_.step(cab_, 5, 1);
    acknowledge(cab_, 4);
    ASSERT_TRUE(serveUntil([&] { return imports_.size() == 3; }));
    EXPECT_THAT(imports_, ElementsAre("1.wav", "x.wav", "y.wav"));
}

TEST_F(QueueOfASlowFolder, ignoresReadersThatAreGone) {
    queue_.step(cab_, 3, 1);
    letAnswer();
    readers_.reset();
    shown_.clear();
    QCoreApplication::processEvents();
    EXPECT_THAT(shown_, testing::IsEmpty());
    EXPECT_THAT(imports_, ElementsAre("1.wav"));
}

}  // namespace
}  // namespace kelvo::test
