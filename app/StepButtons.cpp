#include "StepButtons.h"

#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <initializer_list>

#include "ImportQueue.h"
#include "SlotTableView.h"
#include "SymbolIcon.h"

namespace kelvo {
namespace {

void describe(QPushButton& button, const QString& text) {
    button.setAccessibleDescription(text);
    button.setToolTip(plainToolTip(text));
}

QString sentence(const FolderPlace& place, const QString& neighbour, const QString& which, const QString& keys) {
    if (place.file.isEmpty()) {
        return QObject::tr("Once this row has a file, imports the %1 one from its folder (%2)").arg(which, keys);
    }
    if (place.isFolderGone) {
        return QObject::tr("The folder of this row's file is gone");
    }
    if (!place.isRead) {
        return QObject::tr("Imports the %1 file from its folder (%2)").arg(which, keys);
    }
    return neighbour.isEmpty() ? QObject::tr("There is no %1 file in the folder").arg(which)
                               : QObject::tr("Imports %1 (%2)").arg(printable(neighbour), keys);
}

bool hasTarget(const FolderPlace& place, const QString& neighbour) {
    return !place.file.isEmpty() && !place.isFolderGone && !(place.isRead && neighbour.isEmpty());
}

}  // namespace

StepButtons::StepButtons(SlotBank& bank, ImportQueue& queue, QPushButton& import, QPushButton& previous,
                         QPushButton& next, QLabel& fileLine)
    : bank_(bank), queue_(queue), previous_(previous), next_(next), fileLine_(fileLine) {
    // Not the theme's: a grey arrow looks the same on a disabled button.
    previous_.setIcon(symbolIcon(Symbol::Up));
    next_.setIcon(symbolIcon(Symbol::Down));
    connectStep(previous_, import, Qt::Key_Up, Qt::Key_PageUp, -1);
    connectStep(next_, import, Qt::Key_Down, Qt::Key_PageDown, 1);
    QObject::connect(bank_.table->selectionModel(), &QItemSelectionModel::selectionChanged, &next_,
                     [this] { update(); });
    update();
}

void StepButtons::connectStep(QPushButton& button, QPushButton& import, Qt::Key arrow, Qt::Key page, int direction) {
    const auto step = [this, direction] { queue_.step(bank_, bank_.table->selectedRow(), direction); };
    QObject::connect(&button, &QPushButton::clicked, &button, step);
    for (QWidget* const focus : std::initializer_list<QWidget*>{bank_.table, &import, &previous_, &next_}) {
        for (const QKeySequence& keys : {QKeySequence(Qt::CTRL | arrow), QKeySequence(page)}) {
            auto* const shortcut = new QShortcut(keys, focus);
            shortcut->setContext(Qt::WidgetShortcut);
            QObject::connect(shortcut, &QShortcut::activated, &button, step);
        }
    }
}

void StepButtons::enable(QPushButton& button, bool isEnabled) {
    if (!isEnabled && button.hasFocus()) {
        // The toolkit would move the focus to the next button, which may be Delete.
        bank_.table->setFocus();
    }
    button.setEnabled(isEnabled);
}

void StepButtons::update() {
    const int row = bank_.table->selectedRow();
    const FolderPlace place = row >= 0 ? bank_.slot(row).place : FolderPlace();
    enable(previous_, hasTarget(place, place.previous));
    enable(next_, hasTarget(place, place.next));
    describe(previous_, sentence(place, place.previous, QObject::tr("previous"), QObject::tr("Ctrl+Up, Page Up")));
    describe(next_, sentence(place, place.next, QObject::tr("next"), QObject::tr("Ctrl+Down, Page Down")));
    const QString file = placeText(place);
    fileLine_.setText(fileLine_.fontMetrics().elidedText(file, Qt::ElideMiddle, bank_.table->width()));
    fileLine_.setToolTip(plainToolTip(file));
    fileLine_.setAccessibleName(file);
}

}  // namespace kelvo
