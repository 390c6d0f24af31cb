#pragma once

#include <QStringList>
#include <mutex>

namespace kelvo {

/// Rows of each table, slots of each kind in the device.
inline constexpr int kTableRows = 10;

/// The labels of one kind's slots, as the device told them or as what was done here has changed them. Any thread.
class SlotBank {
public:
    /// `firstNumber` is that of row 0 in the labels.
    explicit SlotBank(int firstNumber) : firstNumber_(firstNumber) {}

    QStringList labels() const;
    void setLabels(const QStringList& labels);

    /// The row's number, a dot and the name in upper case. A row that is none (-1, without a selection) is passed over.
    void setName(int row, const QString& name) { store(row, QStringLiteral("%1.%2"), name.toUpper()); }
    /// The row's number and "EMPTY", with no dot between.
    void setEmpty(int row) { store(row, QStringLiteral("%1%2"), QStringLiteral("EMPTY")); }

private:
    void store(int row, const QString& form, const QString& name);

    int firstNumber_;
    mutable std::mutex mutex_;
    QStringList labels_ = QStringList(kTableRows, QString());
};

}  // namespace kelvo
