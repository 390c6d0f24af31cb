#include "ConnectedApp.h"

#include <cstdlib>
#include <iostream>
#include <utility>

#include "SlotTableView.h"

namespace kelvo {

ConnectedApp::ConnectedApp(const VirtualHidManager::Options& cable, VirtualKr310::LineSink sink)
    : pedal(Kr310Memory::factory(), std::move(sink)), manager(pedal, cable) {
    pedal.setStartup({.progressStep = 199, .progressPace = {}});
}

AppServices ConnectedApp::services() {
    return {
        .sleep =
            [this](unsigned seconds) {
                if (seconds == 2) {
                    static_cast<void>(manager.waitFor([](const auto& activity) { return activity.arrivals > 0; }));
                }
            },
        .exitProcess = [](int status) { std::_Exit(status); },
        .beginSheetModal =
            [](QWidget&, const Alert& alert, const AppServices::AlertCompletion&) {
                std::cerr << alert.messageText.toStdString() << '\n';
                std::_Exit(EXIT_FAILURE);
            },
        .beginOpenPanel =
            [this](QWidget&, const OpenPanel&, const AppServices::OpenPanelCompletion& completion) {
                completion(kModalResponseOK, choice_);
            },
    };
}

void ConnectedApp::start() {
    manager.plug();
    controller_.applicationDidFinishLaunching();
    controller_.ImportIRTableV().selectRow(0);
    controller_.ImportCabTableV().selectRow(0);
}

void ConnectedApp::importIR(const QString& path) {
    choice_ = QUrl::fromLocalFile(path);
    controller_.importIrButtonClick();
}

void ConnectedApp::importAMP(const QString& path) {
    choice_ = QUrl::fromLocalFile(path);
    controller_.importAMPButtonClick();
}

}  // namespace kelvo
