// start_kelvo BEGUN [IDLE]: starts the utility on a virtual pedal. Prints, as JSON, the milliseconds from BEGUN (the
// monotonic clock in nanoseconds before this process was started) to the main window's first paint, and the resident
// memory when the tables are filled. With IDLE, also prints the processor time that the connected utility uses in so
// many seconds.

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <cstdlib>
#include <iostream>

#include "ConnectedApp.h"
#include "FirstPaint.h"
#include "NSApplicationMain.h"
#include "ProcessFigures.h"

int main(int argc, char** argv) {
    const std::int64_t begun = argc > 1 ? std::atoll(argv[1]) : 0;
    const int idleSeconds = argc > 2 ? std::atoi(argv[2]) : 0;
    const auto application = kelvo::makeApplication(argc, argv);
    const kelvo::FirstPaint painted;
    kelvo::ConnectedApp app;
    app.start();
    QCoreApplication::processEvents();
    const std::int64_t resident = kelvo::residentKiB();

    QEventLoop idle;
    QTimer::singleShot(idleSeconds * 1000, &idle, &QEventLoop::quit);
    const auto before = kelvo::processorTime();
    idle.exec();
    const std::chrono::duration<double, std::milli> used = kelvo::processorTime() - before;
    std::cout << "{\"first_paint_ms\": " << static_cast<double>(painted.time() - begun) / 1e6
              << ", \"resident_kib\": " << resident << ", \"idle_ms\": " << used.count() << "}" << std::endl;
    // Like the utility, without clean-up.
    std::_Exit(EXIT_SUCCESS);
}
