#include "NSApplicationMain.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QTimer>

#include "KelvoAppDelegate.h"

namespace kelvo {

void prepareToolkit() {
    // The toolkit's file chooser keeps a history in the user's settings. Nothing is kept on disk here, so the settings
    // are sent where no file can be made.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("kelvo"));
    QApplication::setApplicationDisplayName(QStringLiteral("Kelvo"));
    QApplication::setDesktopFileName(QStringLiteral("local.kelvo.kelvo"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kelvo"), QIcon(QStringLiteral(":/kelvo.png"))));
    // The process ends where the controller says so, not when a window happens to be the last.
    QApplication::setQuitOnLastWindowClosed(false);
}

int NSApplicationMain(int argc, char** argv, HidManager& manager) {
    prepareToolkit();
    const QApplication application(argc, argv);
    nameApplication();
    KelvoAppDelegate controller(manager, desktopServices());
    QTimer::singleShot(0, &application, [&controller] { controller.applicationDidFinishLaunching(); });
    return QApplication::exec();
}

}  // namespace kelvo
