#include "AppServices.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QFileDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "ChosenFile.h"

namespace kelvo {
namespace {

constexpr const char* kResponse = "response";
constexpr const char* kGeometry = "geometry when it was open last";
/// Between a dialog and what it does not cover, in pixels.
constexpr int kGap = 8;

/// Moves a window that is not open yet beside `subject`, or covers as little of it as the screen allows.
void placeBeside(QWidget& dialog, const QWidget& subject, const QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    const QRect covered(subject.mapToGlobal(QPoint()), subject.size());
    const QSize frame = window.frameGeometry().size() - window.size();
    dialog.adjustSize();
    const QSize size = dialog.size() + frame;
    const int right = covered.right() + 1 + kGap;
    const int left = covered.left() - kGap - size.width();
    const bool fitsRight = right + size.width() <= screen.right() + 1;
    const int x = fitsRight || left < screen.left() ? right : left;
    dialog.move(std::clamp(x, screen.left(), std::max(screen.left(), screen.right() + 1 - size.width())),
                std::clamp(covered.top(), screen.top(), std::max(screen.top(), screen.bottom() + 1 - size.height())));
}

void beginSheetModal(QWidget& window, const Alert& alert, AppServices::AlertCompletion completion) {
    const auto icon = alert.style == AlertStyle::Critical ? QMessageBox::Critical : QMessageBox::Warning;
    auto* const box = new QMessageBox(icon, window.windowTitle(), alert.messageText, QMessageBox::NoButton, &window);
    if (!alert.informativeText.isEmpty()) {
        box->setInformativeText(alert.informativeText);
        // A slot's name may look like markup.
        for (QLabel* const label : box->findChildren<QLabel*>()) {
            label->setTextFormat(Qt::PlainText);
        }
    }
    box->setAttribute(Qt::WA_DeleteOnClose);
    // The newest application-modal window gets the input, so an alert is never blocked by another.
    box->setWindowModality(Qt::ApplicationModal);
    QPushButton* last = nullptr;
    int response = kAlertFirstButtonReturn;
    for (const QString& text : alert.buttons) {
        last = box->addButton(text, QMessageBox::ActionRole);
        last->setProperty(kResponse, response++);
    }
    // Return and Escape choose the last button: of two it is the one that changes nothing.
    box->setDefaultButton(last);
    box->setEscapeButton(last);
    QObject::connect(box, &QMessageBox::finished, box, [box, last, done = std::move(completion)] {
        const QAbstractButton* const clicked = box->clickedButton() != nullptr ? box->clickedButton() : last;
        done(clicked->property(kResponse).toInt());
    });
    if (alert.subject != nullptr) {
        placeBeside(*box, *alert.subject, window);
    }
    box->show();
    box->raise();
    // Does not take the focus from another program.
    if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
        box->activateWindow();
    }
}

/// The extension as a file pattern for both cases of letters, because some choosers are case-sensitive.
QString eitherCasePattern(const QString& fileType) {
    QString pattern = QStringLiteral("*.");
    for (const QChar letter : fileType) {
        pattern += QStringLiteral("[%1%2]").arg(letter.toLower()).arg(letter.toUpper());
    }
    return pattern;
}

/// The chooser is kept, because a new one scales all its icons again and opens more slowly.
QFileDialog& keptChooser(QWidget& window) {
    if (auto* const kept = window.findChild<QFileDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        return *kept;
    }
    auto* const chooser = new QFileDialog(&window);
    chooser->setFileMode(QFileDialog::ExistingFile);
    chooser->setOption(QFileDialog::HideNameFilterDetails);
    // The completer's popup is a separate window, which stays open if the chooser is only hidden.
    QObject::connect(chooser, &QFileDialog::finished, chooser, [chooser] {
        for (const QCompleter* const completer : chooser->findChildren<QCompleter*>()) {
            completer->popup()->hide();
        }
    });
    return *chooser;
}

void beginOpenPanel(QWidget& window, const OpenPanel& panel, AppServices::OpenPanelCompletion completion) {
    QFileDialog& chooser = keptChooser(window);
    const QString filter =
        QObject::tr("%1 files (%2)").arg(panel.fileType.toUpper(), eitherCasePattern(panel.fileType));
    if (chooser.isVisible() && chooser.nameFilters().contains(filter)) {
        chooser.raise();
        chooser.activateWindow();
        return;
    }
    if (chooser.isVisible()) {
        chooser.reject();
    }
    chooser.setNameFilter(filter);
    chooser.setWindowTitle(panel.title());
    // The last file may be of the other type and would count as a choice.
    if (auto* const name = chooser.findChild<QLineEdit*>()) {
        name->clear();
    }
    // An empty name selects the folder itself.
    for (auto* const list : chooser.findChildren<QAbstractItemView*>()) {
        list->clearSelection();
    }
    auto* const use = new QObject(&chooser);
    const std::string directory = "directory of " + panel.fileType.toStdString();
    const auto answer = [&chooser, use, directory, fileType = panel.fileType,
                         done = std::move(completion)](int result) {
        use->deleteLater();
        chooser.setProperty(directory.c_str(), chooser.directoryUrl());
        chooser.setProperty(kGeometry, chooser.geometry());
        const QList<QUrl> urls = chooser.selectedUrls();
        // A typed name may have any extension; only the wanted one is a choice.
        const bool chosen = result == QDialog::Accepted && urls.size() == 1 && hasFileType(urls.first(), fileType);
        done(chosen ? kModalResponseOK : kModalResponseCancel, chosen ? urls.first() : QUrl());
    };
    QObject::connect(&chooser, &QFileDialog::finished, use, answer, Qt::SingleShotConnection);
    QObject::connect(panel.table->selectionModel(), &QItemSelectionModel::selectionChanged, use,
                     [&chooser, title = panel.title] { chooser.setWindowTitle(title()); });
    if (const QVariant last = chooser.property(directory.c_str()); last.isValid()) {
        chooser.setDirectoryUrl(last.toUrl());
    }
    if (const QVariant last = chooser.property(kGeometry); last.isValid()) {
        chooser.setGeometry(last.toRect());
    } else {
        placeBeside(chooser, window, window);
    }
    chooser.show();
}

}  // namespace

AppServices desktopServices() {
    return {
        .sleep = [](unsigned seconds) { std::this_thread::sleep_for(std::chrono::seconds(seconds)); },
        .exitProcess =
            [](int status) {
                // A thread that is stuck in the kernel would keep them on the screen.
                for (QWidget* const window : QApplication::topLevelWidgets()) {
                    window->hide();
                }
                QGuiApplication::sync();
                std::_Exit(status);
            },
        .beginSheetModal = beginSheetModal,
        .beginOpenPanel = beginOpenPanel,
    };
}

}  // namespace kelvo
