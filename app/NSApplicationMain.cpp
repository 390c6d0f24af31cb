#include "NSApplicationMain.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "KelvoAppDelegate.h"
#include "PrintableText.h"

namespace kelvo {
namespace {

struct Complaint {
    QtMsgType type;
    const char* category;
    QString text;
};

/// What the toolkit has said since holdComplaint took its messages. Main thread.
std::vector<Complaint> heldComplaints;

/// What the toolkit says may repeat what the user's arguments hold.
QString printableLines(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        line = printableText(line.toUtf8());
    }
    return lines.join(QLatin1Char('\n'));
}

/// Takes the toolkit's messages while it opens a display. Where there is none, it says so in many lines and aborts:
/// here the first line that concerns displays becomes the one sentence of all that.
void holdComplaint(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtFatalMsg) {
        heldComplaints.push_back({type, context.category, printableLines(text)});
        return;
    }
    const auto cause = std::ranges::find_if(heldComplaints, [](const Complaint& complaint) {
        return complaint.type == QtWarningMsg && QLatin1String(complaint.category).startsWith(QLatin1String("qt.qpa."));
    });
    const QString reason =
        (cause != heldComplaints.end() ? cause->text : printableLines(text)).split(QLatin1Char('\n')).first().trimmed();
    std::fprintf(stderr, "%s: No display to show a window on: %s\n", program_invocation_short_name, qPrintable(reason));
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("kelvo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Kelvo"));
    QApplication::setDesktopFileName(QStringLiteral("local.kelvo.kelvo"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kelvo"), QIcon(QStringLiteral(":/kelvo.png"))));
    // The process ends where the controller says so, not when a window happens to be the last.
    QApplication::setQuitOnLastWindowClosed(false);
}

std::unique_ptr<QApplication> makeApplication(int& argc, char** argv) {
    // The toolkit's file chooser keeps a history in the user's settings. Nothing is kept on disk here, so the settings
    // are sent where no file can be made.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));

    const QtMessageHandler before = qInstallMessageHandler(holdComplaint);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(before);
    for (const Complaint& complaint : std::exchange(heldComplaints, {})) {
        qt_message_output(complaint.type, {nullptr, 0, nullptr, complaint.category}, complaint.text);
    }
    nameApplication();
    return application;
}

int NSApplicationMain(int& argc, char** argv, HidManager& manager) {
    const auto application = makeApplication(argc, argv);
    KelvoAppDelegate controller(manager, desktopServices());
    QTimer::singleShot(0, application.get(), [&controller] { controller.applicationDidFinishLaunching(); });
    return QApplication::exec();
}

}  // namespace kelvo
