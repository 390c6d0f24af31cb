#include "Driver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QTableView>
#include <QWindow>
#include <utility>

namespace kelvo {
namespace {

constexpr int kPollMilliseconds = 5;
constexpr QColor kDesktop(0x30, 0x50, 0x68);
constexpr int kDesktopMargin = 24;

template <typename Dialog>
Dialog* visibleDialog() {
    Dialog* newest = nullptr;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const dialog = qobject_cast<Dialog*>(window); dialog != nullptr && dialog->isVisible()) {
            newest = dialog;
        }
    }
    return newest;
}

void clickAt(QWidget& widget, QPoint place) {
    // The toolkit moves the focus only for events from the window system.
    widget.setFocus(Qt::MouseFocusReason);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, held, {});
        QCoreApplication::sendEvent(&widget, &event);
    }
}

}  // namespace

StepDriver::StepDriver(std::vector<Step> steps, Stuck stuck, std::chrono::milliseconds patience)
    : steps_(std::move(steps)), stuck_(std::move(stuck)), patience_(patience) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { poll(); });
}

void StepDriver::start() {
    since_ = std::chrono::steady_clock::now();
    timer_.start(kPollMilliseconds);
}

void StepDriver::poll() {
    if (finished()) {
        timer_.stop();
        return;
    }
    const Step& step = steps_[next_];
    if (!step.ready()) {
        if (std::chrono::steady_clock::now() - since_ > patience_) {
            timer_.stop();
            stuck_(step.name);
        }
        return;
    }
    // May serve events. This timer does not fire again before the step returns.
    step.act();
    ++next_;
    since_ = std::chrono::steady_clock::now();
}

QMessageBox* visibleMessageBox() {
    return visibleDialog<QMessageBox>();
}

QFileDialog* visibleFileDialog() {
    return visibleDialog<QFileDialog>();
}

QAbstractButton* buttonOf(const QMessageBox& box, const QString& text) {
    for (QAbstractButton* const button : box.buttons()) {
        if (button->text().remove(QLatin1Char('&')) == text) {
            return button;
        }
    }
    return nullptr;
}

void click(QAbstractButton& button) {
    clickAt(button, button.rect().center());
}

void clickRow(QTableView& table, int row) {
    clickAt(*table.viewport(), table.visualRect(table.model()->index(row, 0)).center());
}

void enterPath(QFileDialog& dialog, const QString& path) {
    auto* const field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    // Typed letters would open the completion list, which consumes the Return key.
    field->setText(path);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, {});
    QCoreApplication::sendEvent(field, &event);
}

QImage visibleWindows() {
    QRect all;
    QList<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            all |= window->frameGeometry();
            windows.append(window);
        }
    }
    // Dialogs are above their parent windows.
    std::stable_partition(windows.begin(), windows.end(), [](const QWidget* window) { return !window->isModal(); });
    all.adjust(-kDesktopMargin, -kDesktopMargin, kDesktopMargin, kDesktopMargin);
    QImage picture(all.size(), QImage::Format_RGB32);
    picture.fill(kDesktop);
    QPainter painter(&picture);
    for (QWidget* const window : std::as_const(windows)) {
        painter.drawPixmap(window->pos() - all.topLeft(), window->grab());
    }
    return picture;
}

}  // namespace kelvo
