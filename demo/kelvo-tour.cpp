// The utility on a virtual KR310, that drives itself: writes a picture of each step and what the pedal holds at the
// end. With "hold" it prints the name of each picture and waits for a line before it continues.

#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QSocketNotifier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "KelvoAppDelegate.h"
#include "NSApplicationMain.h"
#include "PrintableText.h"
#include "StandardStreams.h"
#include "Tour.h"
#include "VirtualHidManager.h"
#include "VirtualKr310.h"
#include "WindowArguments.h"

namespace {

/// Prints the picture's name and continues when a line comes on standard input: time for somebody else's picture of the
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

/// Makes the pictures' folder; returns why the tour cannot start, or nothing.
QString troubleWith(const kelvo::Tour::Places& places) {
    for (const QString& sample : {places.wave, places.amp}) {
        if (!QFileInfo(sample).isReadable()) {
            return QStringLiteral("%1 cannot be read").arg(kelvo::printableText(sample.toUtf8()));
        }
    }
    if (!QDir().mkpath(places.pictures) || !QFileInfo(places.pictures).isWritable()) {
        return QStringLiteral("%1 cannot be written to").arg(kelvo::printableText(places.pictures.toUtf8()));
    }
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    kelvo::keepStandardStreams();
    kelvo::WindowArguments arguments(argc, argv, 3);
    const kelvo::ProgramText text{
        .name = QStringLiteral("kelvo-tour"),
        .synopsis = QStringLiteral("[OPTION]... PICTURES-FOLDER SAMPLES-FOLDER [hold]"),
        .help = QStringLiteral(
                    "Drives Kelvo on a virtual KR310 through an import into a CAB slot, that of the next file in the\n"
                    "folder, one into an AMP slot, a drop of four files, a deletion and an unplug, and writes a\n"
                    "picture of each step and what the pedal holds at the end.\n"
                    "With \"hold\" it prints each picture's name and waits for a line on standard input.\n\n") +
                kelvo::optionsHelp(),
    };
    if (const auto status = answer(arguments.request(), text)) {
        return *status;
    }
    const QStringList words = arguments.words();
    const bool hold = words.value(2) == QLatin1String("hold");
    if (words.size() != (hold ? 3 : 2)) {
        return *answer({.mistake = QStringLiteral("Two folders are wanted, and then \"hold\" or nothing.")}, text);
    }
    const auto inSamples = [folder = QDir(words[1])](const char* name) {
        return QUrl::fromLocalFile(folder.absoluteFilePath(QLatin1String(name)));
    };
    kelvo::Tour::Places places{
        .pictures = QDir(words[0]).absolutePath(),
        .wave = QDir(words[1]).absoluteFilePath(QStringLiteral("Bright.wav")),
        .amp = QDir(words[1]).absoluteFilePath(QStringLiteral("Lead.amp")),
        .set = {inSamples("Wide.wav"), inSamples("Room.wav"), inSamples("Dusty.wav"), inSamples("Open Back.wav")},
    };
    if (const QString trouble = troubleWith(places); !trouble.isEmpty()) {
        complain(text, trouble);
        return EXIT_FAILURE;
    }

    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto application = kelvo::makeApplication(arguments.argc(), arguments.argv());
    kelvo::VirtualKr310 pedal;
    if (hold) {
        // Loading continues while others take their pictures of it.
        pedal.setStartup({.progressPace = std::chrono::milliseconds(30)});
    }
    kelvo::VirtualHidManager manager(pedal, {.record = true});
    manager.plug();
    kelvo::KelvoAppDelegate controller(manager, kelvo::desktopServices());

    kelvo::Tour tour(
        controller, manager, pedal, std::move(places),
        hold ? kelvo::Tour::AtPicture(holdStill) : [](const QString&) {});
    kelvo::StepDriver driver(tour.steps(), [](const std::string& step) {
        std::fprintf(stderr, "The tour waited in vain for: %s\n", step.c_str());
        std::_Exit(EXIT_FAILURE);
    });
    driver.start();
    QTimer::singleShot(0, application.get(), [&controller] { controller.applicationDidFinishLaunching(); });
    QApplication::exec();
    // The tour ends by the alert's button, which ends the process; this is never reached.
    return EXIT_FAILURE;
}
