#include "StepButtons.h"

#include <QItemSelectionModel>
#include <QPushButton>
#include <QShortcut>
#include <QTextDocument>
#include <initializer_list>

#include "SlotLabel.h"
#include "SlotTableView.h"
#include "SymbolIcon.h"

namespace kelvo {
namespace {

void describe(QPushButton& button, const QString& text) {
    button.setAccessibleDescription(text);
    // A file's name may look like markup.
    button.setToolTip(Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text);
}

QString sentence(const FolderPlace& place, const QString& neighbour, const QString& which, const QString& keys) {
    if (place.file.isEmpty()) {
        return QObject::tr("After an import into the row: the %1 file of the folder (%2)").arg(which, keys);
    }
    if (!place.isRead) {
        return QObject::tr("Import the %1 file of the folder (%2)").arg(which, keys);
    }
    return neighbour.isEmpty() ? QObject::tr("There is no %1 file in the folder (%2)").arg(which, keys)
                               : QObject::tr("Import %1 (%2)").arg(printable(neighbour), keys);
}

}  // namespace

StepButtons::StepButtons(SlotTableView& view, QPushButton& import, QPushButton& previous, QPushButton& next,
                         ImportQueue& queue, ImportQueue::Table& table)
    : view_(view), previous_(previous), next_(next), queue_(queue), table_(table) {
    // Not the theme's: a grey arrow looks the same on a dead button as on a live one.
    previous_.setIcon(symbolIcon(Symbol::Up));
    next_.setIcon(symbolIcon(Symbol::Down));
    connectStep(previous_, import, Qt::Key_Up, -1);
    connectStep(next_, import, Qt::Key_Down, 1);
    table_.changed = [this] { update(); };
    QObject::connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, &next_, [this] { update(); });
    update();
}

void StepButtons::connectStep(QPushButton& button, QPushButton& import, Qt::Key key, int direction) {
    const auto step = [this, direction] { queue_.step(table_, view_.selectedRow(), direction); };
    QObject::connect(&button, &QPushButton::clicked, &button, step);
    for (QWidget* const focus : std::initializer_list<QWidget*>{&view_, &import, &previous_, &next_}) {
        auto* const shortcut = new QShortcut(Qt::CTRL | key, focus);
        shortcut->setContext(Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, &button, step);
    }
}

void StepButtons::update() {
    const int row = view_.selectedRow();
    const FolderPlace place = queue_.where(table_, row);
    previous_.setEnabled(!place.file.isEmpty());
    next_.setEnabled(!place.file.isEmpty());
    describe(previous_, sentence(place, place.previous, QStringLiteral("previous"), QStringLiteral("Ctrl+Up")));
    describe(next_, sentence(place, place.next, QStringLiteral("next"), QStringLiteral("Ctrl+Down")));
}

}  // namespace kelvo
