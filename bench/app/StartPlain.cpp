// start_plain BEGUN: the simplest window like the utility's main window, with two tables of ten rows. Prints the same
// figures as start_kelvo.

#include <QApplication>
#include <QHBoxLayout>
#include <QTableWidget>
#include <cstdlib>
#include <iostream>

#include "FirstPaint.h"
#include "ProcessFigures.h"
#include "ServeEvents.h"

int main(int argc, char** argv) {
    const std::int64_t begun = argc > 1 ? std::atoll(argv[1]) : 0;
    const QApplication application(argc, argv);
    const kelvo::FirstPaint painted;
    QWidget window;
    QHBoxLayout layout(&window);
    for (int table = 0; table < 2; ++table) {
        auto* const view = new QTableWidget(10, 1);
        for (int row = 0; row < 10; ++row) {
            view->setItem(row, 0, new QTableWidgetItem(QStringLiteral("%1.NAME").arg(row)));
        }
        layout.addWidget(view);
    }
    kelvo::showUntilPainted(window);
    QCoreApplication::processEvents();
    std::cout << "{\"first_paint_ms\": " << static_cast<double>(painted.time() - begun) / 1e6
              << ", \"resident_kib\": " << kelvo::residentKiB() << "}" << std::endl;
    std::_Exit(EXIT_SUCCESS);
}
