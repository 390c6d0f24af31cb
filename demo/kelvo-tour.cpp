// The utility on a virtual KR310, driven by itself: writes a picture of each step and what the pedal holds at the end.

#include <QApplication>
#include <QDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "KelvoAppDelegate.h"
#include "NSApplicationMain.h"
#include "Tour.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: kelvo-tour PICTURES-DIRECTORY SAMPLES-DIRECTORY\n", stderr);
        return 2;
    }
    const QString pictures = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    const QDir samples(QString::fromLocal8Bit(argv[2]));
    if (!QDir().mkpath(pictures)) {
        std::fprintf(stderr, "cannot make %s\n", argv[1]);
        return 1;
    }

    kelvo::prepareToolkit();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    kelvo::nameApplication();
    kelvo::VirtualKr310 pedal;
    kelvo::VirtualHidManager manager(pedal);
    manager.plug();
    kelvo::KelvoAppDelegate controller(manager, kelvo::desktopServices());

    kelvo::Tour tour(controller, manager, pedal,
                     {.pictures = pictures,
                      .wave = samples.absoluteFilePath(QStringLiteral("Bright.wav")),
                      .amp = samples.absoluteFilePath(QStringLiteral("Lead.amp"))});
    kelvo::StepDriver driver(tour.steps(), [](const std::string& step) {
        std::fprintf(stderr, "The tour waited in vain for: %s\n", step.c_str());
        std::_Exit(1);
    });
    driver.start();
    QTimer::singleShot(0, &application, [&controller] { controller.applicationDidFinishLaunching(); });
    QApplication::exec();
    // The tour ends by the alert's button, which ends the process; nobody should get here.
    return 1;
}
