// The utility on a virtual KR310, driving itself: writes a picture of each step and the final content of the pedal.
// With "hold" it prints the name of each picture and waits for a line before it continues.

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

/// Prints the picture's name and waits for a line on standard input, so that another program can photograph the screen.
void holdStill(const QString& picture) {
    kelvo::printLine(picture.toStdString());
    QEventLoop loop;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    loop.exec();
    std::string line;
    std::getline(std::cin, line);
}

/// Makes the folder for the pictures. Returns why the tour cannot start; empty if it can.
QString problemWith(const kelvo::Tour::Places& places) {
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
        .help =
            QStringLiteral(
                "Drives Kelvo on a virtual KR310: imports a file into a CAB slot, then the next file of the folder,\n"
                "imports one into an AMP slot, drops four files, clears a slot and unplugs the pedal. Writes a\n"
                "picture of each step and the final content of the pedal.\n"
                "With \"hold\" it prints each picture's name and waits for a line on standard input.\n\n") +
            kelvo::optionsHelp(),
    };
    if (const auto status = answer(arguments.request(), text)) {
        return *status;
    }
    const QStringList words = arguments.words();
    const bool hold = words.value(2) == QLatin1String("hold");
    if (words.size() != (hold ? 3 : 2)) {
        return *answer({.mistake = QStringLiteral("Two folders are needed, optionally followed by \"hold\".")}, text);
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
    if (const QString problem = problemWith(places); !problem.isEmpty()) {
        printError(text, problem);
        return EXIT_FAILURE;
    }

    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto application = kelvo::makeApplication(arguments.argc(), arguments.argv());
    kelvo::VirtualKr310 pedal;
    if (hold) {
        // Loading continues while the other program takes its pictures.
        pedal.setStartup({.progressPace = std::chrono::milliseconds(30)});
    }
    kelvo::VirtualHidManager manager(pedal, {.record = true});
    manager.plug();
    kelvo::KelvoAppDelegate controller(manager, kelvo::desktopServices());

    kelvo::Tour tour(
        controller, manager, pedal, std::move(places),
        hold ? kelvo::Tour::AtPicture(holdStill) : [](const QString&) {});
    kelvo::StepDriver driver(tour.steps(), [](const std::string& step) {
        std::fprintf(stderr, "The tour timed out waiting for: %s\n", step.c_str());
        std::_Exit(EXIT_FAILURE);
    });
    driver.start();
    QTimer::singleShot(0, application.get(), [&controller] { controller.applicationDidFinishLaunching(); });
    QApplication::exec();
    // Never reached: the tour presses the alert's button, which ends the process.
    return EXIT_FAILURE;
}
