#pragma once

#include <QString>

namespace kelvo {

/// A slot's label as it is drawn: the number that it begins with, and what follows it.
struct SlotLabel {
    QString number;  ///< leading digits and a dot behind them, if there is one
    QString name;    ///< in printable characters
    bool isEmpty;    ///< nothing is known to be in the slot: a name of spaces or none, or the label of a cleared slot
};
[[nodiscard]] SlotLabel splitLabel(const QString& label);

/// `text` with a middle dot in place of each character that is not shown (see isShown) and of each space but the plain
/// one, so that a name which holds something never looks empty; names from the pedal and from strangers' files may hold
/// any.
[[nodiscard]] QString printable(const QString& text);

/// A label as a sentence or a screen reader should say it: number and name, or number and "empty"; nothing for no
/// label.
[[nodiscard]] QString spokenLabel(const QString& label);

}  // namespace kelvo
