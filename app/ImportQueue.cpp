#include "ImportQueue.h"

#include <QFileInfo>
#include <algorithm>
#include <numeric>
#include <utility>

namespace kelvo {

ImportQueue::ImportQueue(ImportTarget& target, FolderReaders& readers, std::array<SlotBank*, 2> banks)
    : target_(target), readers_(readers), banks_(banks) {
    for (SlotBank* const bank : banks_) {
        bank->patience.setSingleShot(true);
        bank->patience.setInterval(kPatience);
        QObject::connect(&bank->patience, &QTimer::timeout, &bank->patience,
                         [this, bank] { target_.slotsChanged(*bank); });
    }
}

bool ImportQueue::isAnyAnswering() const {
    return std::ranges::any_of(banks_,
                               [](const SlotBank* bank) { return bank->isRunning() && bank->patience.isActive(); });
}

bool ImportQueue::isAnyStalled() const {
    return std::ranges::any_of(banks_, [](const SlotBank* bank) {
        return bank->isRunning() && !bank->patience.isActive() && !bank->isGivenUp;
    });
}

void ImportQueue::importNow(SlotBank& bank, int row, const QUrl& file) {
    jobs_.clear();
    showWaiting();
    if (target_.importFile(bank, row, file) && row >= 0) {
        bank.slot(row).place = {.file = file};
        readPlace(bank, row);
    }
}

void ImportQueue::importSet(SlotBank& bank, int row, const QList<QUrl>& files) {
    replaceStalledTransfer();
    QList<int> rows(std::min(files.size(), static_cast<qsizetype>(kTableRows - row)));
    std::iota(rows.begin(), rows.end(), row);
    for (const int each : rows) {
        takeOut(bank, each);
    }
    jobs_.push_back({.number = ++jobNumber_, .bank = &bank, .rows = rows, .files = files});
    startNext();
}

void ImportQueue::step(SlotBank& bank, int row, int direction) {
    if (row < 0 || bank.slot(row).place.file.isEmpty()) {
        return;
    }
    replaceStalledTransfer();
    auto job = std::ranges::find_if(jobs_, [&](const Job& each) { return each.isStep() && each.isFor(bank, row); });
    if (job == jobs_.end()) {
        job = jobs_.insert(job, {.number = ++jobNumber_, .bank = &bank, .rows = {row}});
    }
    job->steps.push_back(direction);
    startNext();
}

void ImportQueue::replaceStalledTransfer() {
    if (isAnyStalled() && !overtakes_) {
        jobs_.clear();
        overtakes_ = true;
    }
}

void ImportQueue::takeOut(SlotBank& bank, int row) {
    for (Job& job : jobs_) {
        if (job.isFor(bank, row)) {
            const qsizetype place = job.rows.indexOf(row);
            job.rows.removeAt(place);
            if (!job.isStep()) {
                job.files.removeAt(place);
            }
        }
    }
    std::erase_if(jobs_, [](const Job& job) { return job.rows.isEmpty(); });
    showWaiting();
}

void ImportQueue::slotCleared(SlotBank& bank, int row) {
    takeOut(bank, row);
    const TransferProgress now = bank.progress;
    if (row >= 0 && !(bank.isRunning() && now.row == row)) {
        bank.slot(row) = {};
        target_.slotsChanged(bank);
    }
}

void ImportQueue::hold(bool isHeld) {
    isHeld_ = isHeld;
    startNext();
}

void ImportQueue::willBegin(SlotBank& bank) {
    overtakes_ = false;
    for (SlotBank* const each : banks_) {
        each->isGivenUp = each->isRunning() && !each->patience.isActive();
    }
    bank.keepResult();
    bank.isGivenUp = false;
}

void ImportQueue::hasBegun(SlotBank& bank) {
    bank.patience.start();
    for (SlotBank* const each : banks_) {
        target_.slotsChanged(*each);
    }
}

void ImportQueue::hasProgressed(SlotBank& bank) {
    bank.isGivenUp = false;
    if (bank.isRunning()) {
        bank.patience.start();
    } else {
        bank.patience.stop();
        if (const int row = bank.keepResult(); row >= 0 && bank.state(row) == SlotState::Sent) {
            target_.transferFinished(bank, row);
        }
    }
    overtakes_ = overtakes_ && isAnyStalled();
    target_.slotsChanged(bank);
    startNext();
}

void ImportQueue::startNext() {
    lookUpSteps();
    while (!isHeld_ && !isAnyAnswering() && (overtakes_ || !isAnyStalled())) {
        const auto job = std::ranges::find_if(jobs_, &Job::isReady);
        if (job == jobs_.end()) {
            break;
        }
        if (job->isStep()) {
            startStep(job);
        } else {
            startFromSet(job);
        }
    }
    showWaiting();
}

void ImportQueue::startStep(const Jobs::iterator& job) {
    const Job step = *job;
    jobs_.erase(job);
    if (target_.importFile(*step.bank, step.rows.first(), step.wanted->file)) {
        step.bank->slot(step.rows.first()).place = *step.wanted;
        target_.slotsChanged(*step.bank);
    }
}

void ImportQueue::startFromSet(const Jobs::iterator& job) {
    const QUrl file = job->files.takeFirst();
    const int row = job->rows.first();
    SlotBank& bank = *job->bank;
    const QString path = QFileInfo(file.toLocalFile()).canonicalFilePath();
    const bool isNew = !job->tried.contains(path);
    job->tried.append(path);
    const bool isAccepted = isNew && target_.importFile(bank, row, file);
    if (isAccepted) {
        job->rows.removeFirst();
        bank.slot(row).place = {.file = file};
        readPlace(bank, row);
    }
    job->rows.resize(std::min(job->rows.size(), job->files.size()));
    if (job->rows.isEmpty()) {
        jobs_.erase(job);
    }
    lookUpSteps();
}

void ImportQueue::readPlace(SlotBank& bank, int row) {
    Slot& slot = bank.slot(row);
    target_.slotsChanged(bank);
    const FolderWalk walk{.start = slot.place.file, .fileType = bank.kind.fileType};
    readers_.start(folderOf(walk.start), [this, &bank, &slot, walk, verdicts = bank.verdicts](const auto& stop) {
        return [this, &bank, &slot, place = walkFolder(walk, *verdicts, stop)] {
            if (slot.place.file == place.file) {
                slot.place = place;
                target_.slotsChanged(bank);
            }
        };
    });
}

void ImportQueue::lookUpSteps() {
    for (auto job = jobs_.begin(); job != jobs_.end(); ++job) {
        const auto isEarlier = [&](const Job& other) { return other.isFor(*job->bank, job->rows.first()); };
        if (job->isStep() && !job->steps.empty() && !job->isLookingUp && std::none_of(jobs_.begin(), job, isEarlier)) {
            lookUp(*job);
        }
    }
}

void ImportQueue::lookUp(Job& job) {
    const Slot& slot = job.bank->slot(job.rows.first());
    job.isLookingUp = true;
    const FolderWalk walk{.start = job.wanted ? job.wanted->file : slot.place.file,
                          .fileType = job.bank->kind.fileType,
                          .steps = std::exchange(job.steps, {})};
    const auto read = [this, walk, number = job.number, verdicts = job.bank->verdicts](const std::stop_token& stop) {
        return [this, number, place = walkFolder(walk, *verdicts, stop)] { foundStep(number, place); };
    };
    readers_.start(folderOf(walk.start), read);
}

void ImportQueue::foundStep(std::uint64_t number, const FolderPlace& place) {
    const auto job = std::ranges::find(jobs_, number, &Job::number);
    if (job == jobs_.end()) {
        return;
    }
    job->isLookingUp = false;
    job->wanted = place;
    Slot& slot = job->bank->slot(job->rows.first());
    if (place.file == slot.place.file && job->steps.empty()) {
        slot.place = place;
        target_.slotsChanged(*job->bank);
        jobs_.erase(job);
    }
    startNext();
}

void ImportQueue::showWaiting() {
    const bool isAnythingRunning = isAnyAnswering() || isAnyStalled();
    for (SlotBank* const bank : banks_) {
        bool hasChanged = false;
        for (int row = 0; row < kTableRows; ++row) {
            const bool waits =
                isAnythingRunning && std::ranges::any_of(jobs_, [&](const Job& job) { return job.isFor(*bank, row); });
            bool& isWaiting = bank->slot(row).isWaiting;
            hasChanged |= std::exchange(isWaiting, waits) != waits;
        }
        if (hasChanged) {
            target_.slotsChanged(*bank);
        }
    }
}

}  // namespace kelvo
