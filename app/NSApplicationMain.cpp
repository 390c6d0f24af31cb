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

struct HeldMessage {
    QtMsgType type;
    const char* category;
    QString text;
};

/// The toolkit's messages while holdMessage is installed. Main thread.
std::vector<HeldMessage> heldMessages;

/// A message may contain the user's arguments.
QString printableLines(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        line = printableText(line.toUtf8());
    }
    return lines.join(QLatin1Char('\n'));
}

/// Collects the toolkit's messages while it opens a display. Without a display the toolkit prints many lines and
/// aborts; this prints the first one about displays instead.
void holdMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtFatalMsg) {
        heldMessages.push_back({type, context.category, printableLines(text)});
        return;
    }
    const auto cause = std::ranges::find_if(heldMessages, [](const HeldMessage& message) {
        return message.type == QtWarningMsg && QLatin1String(message.category).startsWith(QLatin1String("qt.qpa."));
    });
    const QString reason =
        (cause != heldMessages.end() ? cause->text : printableLines(text)).split(QLatin1Char('\n')).first().trimmed();
    std::fprintf(stderr, "%s: No display to show a window on: %s\n", program_invocation_short_name, qPrintable(reason));
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("kelvo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Kelvo"));
    QApplication::setDesktopFileName(QStringLiteral("local.kelvo.kelvo"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kelvo"), QIcon(QStringLiteral(":/kelvo.png"))));
    // The controller ends the process, not the last window.
    QApplication::setQuitOnLastWindowClosed(false);
}

std::unique_ptr<QApplication> makeApplication(int& argc, char** argv) {
    // The toolkit's file chooser stores a history in the user's settings. Kelvo stores nothing on disk, so the settings
    // go to a path where no file can be created.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));

    const QtMessageHandler before = qInstallMessageHandler(holdMessage);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(before);
    for (const HeldMessage& message : std::exchange(heldMessages, {})) {
        qt_message_output(message.type, {nullptr, 0, nullptr, message.category}, message.text);
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
