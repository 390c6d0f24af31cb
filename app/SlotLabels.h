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

    /// Sets the row's number, a dot and the name in upper case. Returns whether the label has changed. A row of -1, for
    /// no selection, is ignored.
    bool setName(int row, const QString& name) { return store(row, QStringLiteral("%1.%2"), name.toUpper()); }
    /// Sets the row's number and "EMPTY", without a dot between them.
    void setEmpty(int row) { store(row, QStringLiteral("%1%2"), QStringLiteral("EMPTY")); }

private:
    bool store(int row, const QString& form, const QString& name);

    int firstNumber_;
    mutable std::mutex mutex_;
    // No QStringList, whose reference count does not synchronise threads.
    std::vector<QString> labels_ = std::vector<QString>(kTableRows);
};

/// The pieces of a slot's label.
struct SlotLabel {
    QString number;  ///< leading digits and the dot after them, if there is one
    QString name;    ///< in printable characters
    bool isEmpty;    ///< the name is blank, or the label is that of a cleared slot
};
[[nodiscard]] SlotLabel splitLabel(const QString& label);

/// `text` with a middle dot in place of each character that is not shown (see isShown) and of each space except U+0020,
/// so that a name never looks empty unless it is. Names from the pedal and from files may contain any character.
[[nodiscard]] QString printable(const QString& text);

/// A tooltip that shows `text` literally, even if it looks like markup. A long text is shortened in the middle.
[[nodiscard]] QString plainToolTip(const QString& text);

/// A label for a sentence or a screen reader: number and name, or number and "empty"; empty for no label.
[[nodiscard]] QString spokenLabel(const QString& label);

}  // namespace kelvo
