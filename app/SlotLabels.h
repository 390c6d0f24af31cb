#pragma once

#include <QString>
#include <QStringList>
#include <mutex>
#include <vector>

namespace kelvo {

/// Rows of each table, slots of each kind in the device.
inline constexpr int kTableRows = 10;

/// The labels of one kind's slots, as the device sent them or as imports and deletions have changed them. Any thread.
class SlotLabels {
public:
    /// `firstNumber` is that of row 0 in the labels.
    explicit SlotLabels(int firstNumber) : firstNumber_(firstNumber) {}

    [[nodiscard]] QStringList all() const;
    void setAll(const QStringList& labels);

    /// The row's number, a dot and the name in upper case. Returns whether that changed the label. A row that is none
    /// (-1, without a selection) is ignored.
    bool setName(int row, const QString& name) { return store(row, QStringLiteral("%1.%2"), name.toUpper()); }
    /// The row's number and "EMPTY", with no dot between.
    void setEmpty(int row) { store(row, QStringLiteral("%1%2"), QStringLiteral("EMPTY")); }

private:
    bool store(int row, const QString& form, const QString& name);

    int firstNumber_;
    mutable std::mutex mutex_;
    // No QStringList, whose reference count does not synchronise threads.
    std::vector<QString> labels_ = std::vector<QString>(kTableRows);
};

/// A slot's label as it is drawn: the number that it begins with, and what follows it.
struct SlotLabel {
    QString number;  ///< leading digits and the dot after them, if there is one
    QString name;    ///< in printable characters
    bool isEmpty;    ///< nothing is known to be in the slot: a name of spaces or none, or the label of a cleared slot
};
[[nodiscard]] SlotLabel splitLabel(const QString& label);

/// `text` with a middle dot in place of each character that is not shown (see isShown) and of each space but the plain
/// one, so that a name that holds something never looks empty. Names from the pedal and from files may hold any
/// character.
[[nodiscard]] QString printable(const QString& text);

/// A tooltip that shows `text` as it is, though it may look like markup, with a long one shortened in the middle.
[[nodiscard]] QString plainToolTip(const QString& text);

/// A label as a sentence or a screen reader should say it: number and name, or number and "empty"; nothing for no
/// label.
[[nodiscard]] QString spokenLabel(const QString& label);

}  // namespace kelvo
