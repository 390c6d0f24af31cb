#include "SlotTableView.h"

#include <QFontMetrics>
#include <QHeaderView>

namespace kelvo {
namespace {

constexpr int kRowPadding = 8;
constexpr int kSidePadding = 24;
/// The longest label: a number, a dot and ten wide letters.
const QString kWidestLabel = QStringLiteral("65.MMMMMMMMMM");

}  // namespace

SlotTableView::SlotTableView(QWidget* parent) : QTableView(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
}

int SlotTableView::tag() const {
    return property("tag").toInt();
}

int SlotTableView::selectedRow() const {
    if (selectionModel() == nullptr) {
        return -1;
    }
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

QSize SlotTableView::minimumSizeHint() const {
    const int frame = 2 * frameWidth();
    return {fontMetrics().horizontalAdvance(kWidestLabel) + frame + 2 * kSidePadding,
            verticalHeader()->length() + frame};
}

QSize SlotTableView::sizeHint() const {
    return minimumSizeHint();
}

}  // namespace kelvo
