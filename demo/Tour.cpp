#include "Tour.h"

#include <QAbstractButton>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTextStream>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "FileDrag.h"
#include "KelvoAppDelegate.h"
#include "Kr310Memory.h"
#include "LoadDataWindowController.h"
#include "SlotTableView.h"
#include "VirtualHidManager.h"

namespace kelvo {
namespace {

constexpr int kImportedCabRow = 0;
constexpr int kImportedAmpRow = 1;
constexpr int kDeletedCabRow = 3;
constexpr int kSetRow = 5;

using Steps = std::vector<StepDriver::Step>;

void append(Steps& steps, Steps more) {
    std::move(more.begin(), more.end(), std::back_inserter(steps));
}

[[noreturn]] void failToWrite(const QString& path) {
    std::fprintf(stderr, "The tour ends: %s cannot be written\n", qPrintable(path));
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

Tour::Tour(KelvoAppDelegate& controller, VirtualHidManager& manager, const VirtualKr310& pedal, Places places,
           AtPicture atPicture)
    : controller_(controller),
      manager_(manager),
      pedal_(pedal),
      places_(std::move(places)),
      atPicture_(std::move(atPicture)) {}

Steps Tour::steps() {
    Steps steps{loadingAt(0), loadingAt(30), loadingAt(60), loadingAt(90)};
    append(steps, importSteps());
    append(steps, setSteps());
    append(steps, deleteSteps());
    append(steps, unplugSteps());
    return steps;
}

StepDriver::Step Tour::loadingAt(int percent) {
    const auto shown = [this] {
        const QLabel* const label = controller_.loadWindow().loadDataLabel();
        return label != nullptr ? label->text().chopped(1).toInt() : -1;
    };
    return {"loading", [shown, percent] { return shown() >= percent; },
            [this, shown] { takePicture(QStringLiteral("loading-%1").arg(shown())); }};
}

Steps Tour::importSteps() {
    const auto pick = [this](const QString& name, SlotTableView& table, int row, QPushButton& button) {
        takePicture(name);
        clickRow(table, row);
        click(button);
    };
    const auto choose = [this](const QString& name, const QString& path) {
        takePicture(name);
        enterPath(*visibleFileDialog(), path);
    };
    return {
        {"filled tables", [this] { return controller_.window().isEnabled(); },
         [this, pick] {
             pick(QStringLiteral("tables"), controller_.ImportIRTableV(), kImportedCabRow, controller_.addIR());
         }},
        {"wave chooser", [] { return visibleFileDialog() != nullptr; },
         [this, choose] { choose(QStringLiteral("choose-wave"), places_.wave); }},
        {"finished CAB import", [this] { return visibleFileDialog() == nullptr && changed("CAB 27 <-"); },
         [this] {
             takePicture(QStringLiteral("cab-imported"));
             click(*controller_.window().findChild<QPushButton*>(QStringLiteral("nextIR")));
         }},
        {"next file of the folder", [this] { return changed("CAB 27 <- \"CLOSED BAC\""); },
         [this, pick] {
             pick(QStringLiteral("next-cab-imported"), controller_.ImportCabTableV(), kImportedAmpRow,
                  controller_.addAMP());
         }},
        {"amp chooser", [] { return visibleFileDialog() != nullptr; },
         [this, choose] { choose(QStringLiteral("choose-amp"), places_.amp); }},
    };
}

Steps Tour::setSteps() {
    return {
        {"finished AMP import", [this] { return visibleFileDialog() == nullptr && changed("AMP 57 <-"); },
         [this] {
             takePicture(QStringLiteral("amp-imported"));
             FileDrag drag(controller_.ImportIRTableV(), places_.set);
             drag.enter(kSetRow);
             drag.moveTo(kSetRow);
             takePicture(QStringLiteral("set-over-the-table"));
             drag.drop(kSetRow);
         }},
    };
}

Steps Tour::deleteSteps() {
    return {
        {"finished set", [this] { return changed("CAB 35 <-"); },
         [this] {
             takePicture(QStringLiteral("set-imported"));
             clickRow(controller_.ImportIRTableV(), kDeletedCabRow);
             click(controller_.deleteIR());
         }},
        {"question", [] { return visibleMessageBox() != nullptr; },
         [this] {
             takePicture(QStringLiteral("delete-question"));
             click(*buttonOf(*visibleMessageBox(), QStringLiteral("delete")));
         }},
    };
}

Steps Tour::unplugSteps() {
    return {
        {"cleared CAB", [this] { return visibleMessageBox() == nullptr && changed("CAB 30 cleared"); },
         [this] {
             takePicture(QStringLiteral("cab-deleted"));
             manager_.unplug();
         }},
        {"alert", [] { return visibleMessageBox() != nullptr; },
         [this] {
             takePicture(QStringLiteral("unplugged"));
             writeTranscript();
             click(*buttonOf(*visibleMessageBox(), QStringLiteral("Exit")));
         }},
    };
}

bool Tour::changed(const std::string& beginning) const {
    const auto changes = manager_.activity().changes;
    return std::any_of(changes.begin(), changes.end(),
                       [&](const std::string& line) { return line.starts_with(beginning); });
}

void Tour::takePicture(const QString& name) {
    const QString number = QStringLiteral("%1").arg(++pictures_, 2, 10, QLatin1Char('0'));
    const QString path = QStringLiteral("%1/%2-%3.png").arg(places_.pictures, number, name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !visibleWindows().save(&file, "PNG") || !file.flush()) {
        failToWrite(path);
    }
    atPicture_(name);
}

void Tour::writeTranscript() const {
    QFile file(places_.pictures + QStringLiteral("/transcript.txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        failToWrite(file.fileName());
    }
    QTextStream out(&file);
    out << "Changes of the pedal's memory:\n";
    for (const std::string& line : manager_.activity().changes) {
        out << QString::fromStdString(line) << '\n';
    }
    out << "\nContents of the pedal:\n";
    for (const std::string& line : memoryLines(pedal_.memory())) {
        out << QString::fromStdString(line) << '\n';
    }
    out.flush();
    if (!file.flush()) {
        failToWrite(file.fileName());
    }
}

}  // namespace kelvo
