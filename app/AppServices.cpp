#include "AppServices.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "ChosenFile.h"

namespace kelvo {
namespace {

constexpr const char* kResponse = "response";

void beginSheetModal(QWidget& window, const Alert& alert, AppServices::AlertCompletion completion) {
    const auto icon = alert.style == AlertStyle::Critical ? QMessageBox::Critical : QMessageBox::Warning;
    auto* const box = new QMessageBox(icon, window.windowTitle(), alert.messageText, QMessageBox::NoButton, &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    // The newest application-modal window is the one that takes input, so an alert is never blocked by another.
    box->setWindowModality(Qt::ApplicationModal);
    QPushButton* last = nullptr;
    int response = kAlertFirstButtonReturn;
    for (const QString& text : alert.buttons) {
        last = box->addButton(text, QMessageBox::ActionRole);
        last->setProperty(kResponse, response++);
    }
    // Return and Escape take the last button: of two it is the one that changes nothing.
    box->setDefaultButton(last);
    box->setEscapeButton(last);
    QObject::connect(box, &QMessageBox::finished, box, [box, last, done = std::move(completion)] {
        const QAbstractButton* const clicked = box->clickedButton() != nullptr ? box->clickedButton() : last;
        done(clicked->property(kResponse).toInt());
    });
    box->show();
    box->raise();
    box->activateWindow();
}

/// The extension as a file pattern that matches either case of letters, also where the desktop's chooser is strict.
QString eitherCasePattern(const QString& fileType) {
    QString pattern = QStringLiteral("*.");
    for (const QChar letter : fileType) {
        pattern += QStringLiteral("[%1%2]").arg(letter.toLower()).arg(letter.toUpper());
    }
    return pattern;
}

void beginOpenPanel(QWidget& window, const QString& fileType, AppServices::OpenPanelCompletion completion) {
    auto* const panel = new QFileDialog(&window, QObject::tr("Choose a .%1 file").arg(fileType));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilter(QObject::tr("%1 files (%2)").arg(fileType.toUpper(), eitherCasePattern(fileType)));
    panel->setOption(QFileDialog::HideNameFilterDetails);
    const auto answer = [panel, fileType, done = std::move(completion)](int result) {
        const QList<QUrl> urls = panel->selectedUrls();
        // A typed name may have any extension; only the wanted one is a choice.
        const bool chosen = result == QDialog::Accepted && urls.size() == 1 && hasFileType(urls.first(), fileType);
        done(chosen ? kModalResponseOK : kModalResponseCancel, chosen ? urls.first() : QUrl());
    };
    QObject::connect(panel, &QFileDialog::finished, panel, answer);
    panel->show();
}

}  // namespace

AppServices desktopServices() {
    return {
        .sleep = [](unsigned seconds) { std::this_thread::sleep_for(std::chrono::seconds(seconds)); },
        .exitProcess = [](int status) { std::_Exit(status); },
        .beginSheetModal = beginSheetModal,
        .beginOpenPanel = beginOpenPanel,
    };
}

}  // namespace kelvo
