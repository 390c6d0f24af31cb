// The utility on a virtual KR310, driven by itself: writes a picture of each step and what the pedal holds at the end.
// With "hold" it prints the name of each picture and waits for a line before it goes on.

#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QSocketNotifier>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "KelvoAppDelegate.h"
#include "NSApplicationMain.h"
#include "Tour.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"

namespace {

/// Prints the picture's name and goes on when a line comes on standard input: time for somebody else's picture of the
/// real screen.
void holdStill(const QString& picture) {
    std::printf("%s\n", qPrintable(picture));
    std::fflush(stdout);
    QEventLoop loop;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    loop.exec();
    std::string line;
    std::getline(std::cin, line);
}

}  // namespace

int main(int argc, char** argv) {
    const bool hold = argc == 4 && std::string_view(argv[3]) == "hold";
    if (argc != 3 && !hold) {
        std::fputs("usage: kelvo-tour PICTURES-DIRECTORY SAMPLES-DIRECTORY [hold]\n", stderr);
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

    kelvo::Tour tour(
        controller, manager, pedal,
        {.pictures = pictures,
         .wave = samples.absoluteFilePath(QStringLiteral("Bright.wav")),
         .amp = samples.absoluteFilePath(QStringLiteral("Lead.amp"))},
        hold ? kelvo::Tour::AtPicture(holdStill) : [](const QString&) {});
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
