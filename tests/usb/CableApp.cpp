#include "CableApp.h"

#include <QPushButton>
#include <QTimer>
#include <utility>

#include "Driver.h"
#include "RVHidClass.h"
#include "SleepingThread.h"
#include "SlotTableView.h"

namespace kelvo::test {

CableApp::CableApp(PluggedPedal& pedal, int pace) {
    const std::string command = "pace " + std::to_string(pace);
    pedal.tell(command, command);
    services.onSleep = [this](unsigned seconds) {
        if (seconds == 2) {
            found();
        }
    };
}

AppServices CableApp::functions() {
    AppServices all = services.functions();
    all.beginSheetModal = [this, note = all.beginSheetModal](QWidget& window, const Alert& alert,
                                                             AppServices::AlertCompletion answer) {
        note(window, alert, std::move(answer));
        if (onAlert) {
            onAlert(window, alert);
        }
    };
    return all;
}

void CableApp::found() {
    waitUntil([] { return isOpenDevice.load(); }, "the pedal to be found");
    if (whileLoading) {
        QTimer::singleShot(0, [this] { whileLoading(); });
    }
}

void CableApp::start() {
    controller.applicationDidFinishLaunching();
}

void CableApp::importIR(int row, const QString& path) {
    controller.ImportIRTableV().selectRow(row);
    services.choice = QUrl::fromLocalFile(path);
    click(controller.addIR());
}

void CableApp::importAMP(int row, const QString& path) {
    controller.ImportCabTableV().selectRow(row);
    services.choice = QUrl::fromLocalFile(path);
    click(controller.addAMP());
}

void CableApp::deleteCAB(int row) {
    controller.ImportIRTableV().selectRow(row);
    click(controller.deleteIR());
    services.alerts.back().answer(kAlertFirstButtonReturn);
}

}  // namespace kelvo::test
