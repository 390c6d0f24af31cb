#include "SlotTableView.h"

#include <QApplication>
#include <QDropEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QShortcut>
#include <QUrl>
#include <utility>

#include "ChosenFile.h"
#include "FolderWalk.h"
#include "SlotDelegate.h"
#include "SlotTableModel.h"

namespace kelvo {
namespace {

constexpr int kRowPadding = 10;
constexpr int kRowMarkWidth = 2;
constexpr int kFadeMilliseconds = 550;
/// In characters: enough for the four buttons below a table, so that both tables are of one width.
constexpr int kUsualWidth = 45;
/// The longest label: a number, a dot and ten wide letters.
const QString kWidestLabel = QStringLiteral("65.MMMMMMMMMM");

/// The URL that the chooser would give for a file of this machine: its path and nothing else. Empty for any other.
QUrl asChosen(const QUrl& url) {
    const bool isHere = url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost"));
    return isHere ? QUrl::fromLocalFile(url.path(QUrl::FullyDecoded)) : QUrl();
}

/// The course of a change that comes at once, when the time is over.
QEasingCurve atItsEnd() {
    QEasingCurve curve;
    curve.setCustomType([](double progress) { return progress < 1 ? 0.0 : 1.0; });
    return curve;
}

}  // namespace

SlotTableView::SlotTableView(QWidget* parent) : QTableView(parent), delegate_(new SlotDelegate(this)) {
    setItemDelegate(delegate_);
    // The toolkit draws a plain box in whole device pixels; of a styled frame the rows hide two sides at a scale
    // of 1.5.
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setForegroundRole(QPalette::Mid);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    fitRowsToFont();
    fading_.setStartValue(1.0);
    fading_.setEndValue(0.0);
    fading_.setDuration(kFadeMilliseconds);
    connect(&fading_, &QVariantAnimation::valueChanged, this, [this](const QVariant& opacity) {
        delegate_->setFinished(fadingRow_, opacity.toDouble());
        viewport()->update();
    });
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

void SlotTableView::setKeyAction(Qt::Key key, const std::function<void()>& action) {
    auto* const shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetShortcut);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, this, action);
}

void SlotTableView::setDropAction(const QString& fileType, std::function<bool(const QUrl&)> isGood,
                                  std::function<void(const QList<QUrl>&)> action) {
    dropFileType_ = fileType;
    isGoodDrop_ = std::move(isGood);
    dropAction_ = std::move(action);
    setAcceptDrops(true);
}

void SlotTableView::setNotice(const QString& notice) {
    notice_ = notice;
    viewport()->update();
}

QSize SlotTableView::minimumSizeHint() const {
    const int frame = 2 * frameWidth();
    return {SlotDelegate::labelWidth(fontMetrics(), kWidestLabel) + frame, verticalHeader()->length() + frame};
}

QSize SlotTableView::sizeHint() const {
    return minimumSizeHint().expandedTo({kUsualWidth * fontMetrics().averageCharWidth(), 0});
}

void SlotTableView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles) {
    QTableView::dataChanged(topLeft, bottomRight, roles);
    if (roles.contains(SlotTableModel::kTransferRole) && topLeft.data(SlotTableModel::kTransferRole) == 1.0) {
        fadeLine(topLeft.row());
    }
}

void SlotTableView::fadeLine(int row) {
    fading_.stop();
    fadingRow_ = row;
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    fading_.setEasingCurve(isAnimated ? QEasingCurve(QEasingCurve::InQuad) : atItsEnd());
    // The animation tells changes only, and this is where it is already.
    delegate_->setFinished(row, 1.0);
    fading_.start();
}

void SlotTableView::fitRowsToFont() {
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
}

void SlotTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        fitRowsToFont();
    }
}

QModelIndex SlotTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    // Without Control these two go to the first and the last column, and there is one only.
    const bool isHomeOrEnd = action == MoveHome || action == MoveEnd;
    return QTableView::moveCursor(action, isHomeOrEnd ? modifiers | Qt::ControlModifier : modifiers);
}

QItemSelectionModel::SelectionFlags SlotTableView::selectionCommand(const QModelIndex& index, const QEvent*) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                           : QItemSelectionModel::NoUpdate;
}

QList<QUrl> SlotTableView::welcomeFiles(const QDropEvent& event) const {
    QStringList paths;
    for (const QUrl& url : event.mimeData()->urls()) {
        if (const QUrl file = asChosen(url); hasFileType(file, dropFileType_)) {
            paths.append(file.toLocalFile());
        }
    }
    paths.removeDuplicates();
    sortNaturally(paths);
    QList<QUrl> files;
    for (const QString& path : paths) {
        const QUrl file = QUrl::fromLocalFile(path);
        if (files.size() < model()->rowCount() && isGoodDrop_(file)) {
            files.append(file);
        }
    }
    return files;
}

bool SlotTableView::isWelcome() const {
    return !dropFiles_.isEmpty() && QApplication::activeModalWidget() == nullptr;
}

QList<QUrl> SlotTableView::filesFrom(int row) const {
    return dropFiles_.mid(0, model()->rowCount() - row);
}

void SlotTableView::dragEnterEvent(QDragEnterEvent* event) {
    dropFiles_ = welcomeFiles(*event);
    event->setAccepted(isWelcome());
}

void SlotTableView::dragMoveEvent(QDragMoveEvent* event) {
    markDropRow(isWelcome() ? rowAt(event->position().toPoint().y()) : -1);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(dropRow_ >= 0);
}

void SlotTableView::dragLeaveEvent(QDragLeaveEvent*) {
    markDropRow(-1);
}

void SlotTableView::dropEvent(QDropEvent* event) {
    const int row = isWelcome() ? rowAt(event->position().toPoint().y()) : -1;
    markDropRow(-1);
    if (row < 0) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Queued, so that the program that the files come from does not wait until the first has been read.
    QMetaObject::invokeMethod(
        this,
        [this, row, files = filesFrom(row)] {
            selectRow(row);
            dropAction_(files);
        },
        Qt::QueuedConnection);
}

void SlotTableView::markDropRow(int row) {
    if (std::exchange(dropRow_, row) != row) {
        viewport()->update();
    }
}

void SlotTableView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(visualRect(model()->index(model()->rowCount() / 2, 0)), Qt::AlignCenter, notice_);
    if (dropRow_ >= 0) {
        painter.setPen(
            QPen(palette().color(QPalette::Highlight), kRowMarkWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        const int inset = kRowMarkWidth / 2;
        const auto rows = static_cast<int>(filesFrom(dropRow_).size());
        painter.drawRect(QRect(0, rowViewportPosition(dropRow_), viewport()->width(), rows * rowHeight(dropRow_))
                             .adjusted(inset, inset, -inset, -inset));
    }
}

}  // namespace kelvo
