#include "SlotBank.h"

namespace kelvo {

QStringList SlotBank::labels() const {
    const std::lock_guard lock(mutex_);
    // Not a shared list: whether it is shared still is asked by a count that puts nothing in order between threads.
    return {labels_.begin(), labels_.end()};
}

void SlotBank::setLabels(const QStringList& labels) {
    const std::lock_guard lock(mutex_);
    labels_ = labels;
}

void SlotBank::store(int row, const QString& form, const QString& name) {
    const std::lock_guard lock(mutex_);
    if (row >= 0 && row < labels_.size()) {
        labels_[row] = form.arg(QString::number(row + firstNumber_), name);
    }
}

}  // namespace kelvo
