#include "SlotTableView.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QShortcut>
#include <QUrl>
#include <algorithm>
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

/// The URL that the chooser would give for a local file: its path only. Empty for any other URL.
QUrl asChosen(const QUrl& url) {
    const bool isHere = url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost"));
    return isHere ? QUrl::fromLocalFile(url.path(QUrl::FullyDecoded)) : QUrl();
}

/// An easing curve that jumps to its end when the time is over.
QEasingCurve atItsEnd() {
    QEasingCurve curve;
    curve.setCustomType([](double progress) { return progress < 1 ? 0.0 : 1.0; });
    return curve;
}

}  // namespace

SlotTableView::SlotTableView(QWidget* parent) : QTableView(parent), delegate_(new SlotDelegate(this)) {
    setItemDelegate(delegate_);
    // A plain box is drawn in whole device pixels. At a scale of 1.5 the rows would hide two sides of a styled frame.
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

void SlotTableView::setKeyAction(const QKeySequence& keys, const std::function<void()>& action) {
    auto* const shortcut = new QShortcut(keys, this);
    shortcut->setContext(Qt::WidgetShortcut);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, this, action);
}

void SlotTableView::setFileAction(const QString& fileType, std::function<void(int, const QList<QUrl>&)> action) {
    fileType_ = fileType;
    fileAction_ = std::move(action);
    setAcceptDrops(true);
    setKeyAction(QKeySequence::Paste, [this] { paste(); });
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

void SlotTableView::showFinished(int row) {
    QVariantAnimation*& kept = fading_[row];
    if (kept == nullptr) {
        kept = new QVariantAnimation(this);
        kept->setStartValue(1.0);
        kept->setEndValue(0.0);
        kept->setDuration(kFadeMilliseconds);
        connect(kept, &QVariantAnimation::valueChanged, this, [this, row](const QVariant& opacity) {
            delegate_->setFinished(row, opacity.toDouble());
            viewport()->update();
        });
    }
    QVariantAnimation& fading = *kept;
    fading.stop();
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    fading.setEasingCurve(isAnimated ? QEasingCurve(QEasingCurve::InQuad) : atItsEnd());
    // The animation does not report its first value.
    delegate_->setFinished(row, 1.0);
    fading.start();
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
    // Without Control these two go to the first and the last column, and there is only one.
    const bool isHomeOrEnd = action == MoveHome || action == MoveEnd;
    return QTableView::moveCursor(action, isHomeOrEnd ? modifiers | Qt::ControlModifier : modifiers);
}

QItemSelectionModel::SelectionFlags SlotTableView::selectionCommand(const QModelIndex& index, const QEvent*) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                           : QItemSelectionModel::NoUpdate;
}

QList<QUrl> SlotTableView::filesOf(const QMimeData& mime) const {
    QStringList paths;
    for (const QUrl& url : mime.urls()) {
        if (const QUrl file = asChosen(url); hasFileType(file, fileType_)) {
            paths.append(file.toLocalFile());
        }
    }
    paths.removeDuplicates();
    sortNaturally(paths);
    QList<QUrl> files;
    for (const QString& path : paths) {
        files.append(QUrl::fromLocalFile(path));
    }
    return files;
}

void SlotTableView::paste() {
    const QMimeData* const clipboard = QGuiApplication::clipboard()->mimeData();
    const QList<QUrl> files = clipboard != nullptr ? filesOf(*clipboard) : QList<QUrl>();
    if (const int row = selectedRow(); row >= 0 && !files.isEmpty()) {
        fileAction_(row, files);
    }
}

bool SlotTableView::acceptsDrop() const {
    return !dropFiles_.isEmpty() && QApplication::activeModalWidget() == nullptr;
}

int SlotTableView::countFrom(int row) const {
    return static_cast<int>(std::min(dropFiles_.size(), static_cast<qsizetype>(model()->rowCount() - row)));
}

void SlotTableView::dragEnterEvent(QDragEnterEvent* event) {
    forgetDrag();
    dragged_ = event->mimeData()->urls().size();
    dropFiles_ = filesOf(*event->mimeData());
    if (acceptsDrop() && judge_) {
        judging_ = judge_(dropFiles_, [this](const QList<QUrl>& accepted) {
            dropFiles_ = accepted;
            markDropRow(acceptsDrop() ? dropRow_ : -1);
            viewport()->update();
        });
    }
    event->setAccepted(acceptsDrop());
}

void SlotTableView::dragMoveEvent(QDragMoveEvent* event) {
    markDropRow(acceptsDrop() ? rowAt(event->position().toPoint().y()) : -1);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(dropRow_ >= 0);
}

void SlotTableView::dragLeaveEvent(QDragLeaveEvent*) {
    forgetDrag();
}

void SlotTableView::dropEvent(QDropEvent* event) {
    const int row = acceptsDrop() ? rowAt(event->position().toPoint().y()) : -1;
    const QList<QUrl> files = dropFiles_;
    forgetDrag();
    if (row < 0) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Queued, so that the program the files come from does not wait until the first one has been read.
    QMetaObject::invokeMethod(
        this,
        [this, row, files] {
            selectRow(row);
            fileAction_(row, files);
        },
        Qt::QueuedConnection);
}

void SlotTableView::forgetDrag() {
    judging_.request_stop();
    dropFiles_.clear();
    markDropRow(-1);
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
        paintDropFrame(painter);
    }
}

void SlotTableView::paintDropFrame(QPainter& painter) const {
    const int count = countFrom(dropRow_);
    const QRect frame(0, rowViewportPosition(dropRow_), viewport()->width(), count * rowHeight(dropRow_));
    const int inset = kRowMarkWidth / 2;
    const QColor color = palette().color(QPalette::Highlight);
    painter.setPen(QPen(color, kRowMarkWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(frame.adjusted(inset, inset, -inset, -inset));
    if (count < dragged_) {
        const QString text = tr("%1 of %2").arg(count).arg(dragged_);
        QRect label(QPoint(),
                    QSize(fontMetrics().horizontalAdvance(text) + 2 * SlotDelegate::kLabelMargin, rowHeight(dropRow_)));
        label.moveBottomRight(frame.bottomRight());
        painter.fillRect(label, color);
        painter.setPen(palette().color(QPalette::HighlightedText));
        painter.drawText(label, Qt::AlignCenter, text);
    }
}

}  // namespace kelvo
