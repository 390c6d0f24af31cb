#include "FuzzedController.h"

#include <QApplication>
#include <utility>

namespace kelvo::fuzz {
namespace {

const Files& files() {
    static const Files all;
    return all;
}

Files::Choice irChoice(std::uint32_t step) {
    WaveFile wave{.bitsPerSample = 24};
    ControllerModel::Words words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * step & 0xFFFFFF;
        append(wave.data, words[i], 3);
    }
    MemoryFile file(wave.bytes());
    std::string name = file.name().toStdString();
    return {std::move(file), std::move(name), words};
}

Files::Choice ampChoice(std::uint32_t step) {
    ControllerModel::Words words{};
    for (std::uint32_t i = 0; i < 512; ++i) {
        words[i] = i * step;
    }
    MemoryFile file(ampFile(words));
    std::string name = file.name().toStdString();
    return {std::move(file), std::move(name), words};
}

Files::Choice badChoice() {
    return {MemoryFile(FileBytes(100, 'x')), {}, {}};
}

}  // namespace

Files::Files()
    : irs{irChoice(0x010203), irChoice(0x3F1F0F), badChoice()},
      amps{ampChoice(0x01020304), ampChoice(0xF1D2B3A5), badChoice()} {}

int User::select(QTableView& table, std::size_t row) {
    if (row >= 10) {
        table.clearSelection();
        return -1;
    }
    table.selectRow(static_cast<int>(row));
    return static_cast<int>(row);
}

void User::beginAnew() {
    services_.sleeps.clear();
    services_.exits.clear();
    services_.alerts.clear();
    services_.openPanels.clear();
    std::array<std::uint8_t, 1024> frame{};
    for (const std::uint8_t command : {0x85, 0xE3, 0xA5}) {
        frame[4] = command;
        controller_.CMD_CallBack(frame);
        model_.frame(frame);
    }
    importAMP(0, 0);
    importIR(0, 0);
}

void User::importIR(std::size_t row, std::size_t file) {
    const Files::Choice& choice = files().irs.at(file);
    model_.choose(select(controller_.ImportIRTableV(), row));
    if (!choice.name.empty()) {
        model_.importIR(choice.words, choice.name);
    }
    services_.choice = QUrl::fromLocalFile(choice.file.path());
    controller_.importIrButtonClick();
}

void User::importAMP(std::size_t row, std::size_t file) {
    const Files::Choice& choice = files().amps.at(file);
    model_.choose(select(controller_.ImportCabTableV(), row));
    if (!choice.name.empty()) {
        model_.importAMP(choice.words, choice.name);
    }
    services_.choice = QUrl::fromLocalFile(choice.file.path());
    controller_.importAMPButtonClick();
}

void User::deleteCab(std::size_t row, bool confirm) {
    const int selected = select(controller_.ImportIRTableV(), row);
    if (confirm) {
        model_.deleteCab(selected);
    }
    controller_.deleteCAB();
    services_.alerts.back().answer(confirm ? kAlertFirstButtonReturn : kAlertSecondButtonReturn);
    services_.alerts.pop_back();
}

void User::checkState() const {
    const QStringList cab = controller_.IRNameArr();
    const QStringList amp = controller_.AMPNameArr();
    for (std::size_t row = 0; row < 10; ++row) {
        const auto index = static_cast<qsizetype>(row);
        check(QAnyStringView::equal(cab.at(index), QUtf8StringView(model_.cabLabels[row])),
              "a CAB label is the model's");
        check(QAnyStringView::equal(amp.at(index), QUtf8StringView(model_.ampLabels[row])),
              "an AMP label is the model's");
    }
    const TransferState state = controller_.transferState();
    check(state.IRTick == model_.irTick && state.AMPTick == model_.ampTick, "the phases are the model's");
    check(controller_.PRESET_PARAValue() == model_.progress, "the progress is the model's");
}

/// Never destroyed. Visible to other sources, because otherwise the compiler would remove the pointer and the leak
/// check would report the object.
QApplication* keptForGood;

void startToolkit() {
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    keptForGood = new QApplication(argc, argv);
    files();
}

}  // namespace kelvo::fuzz
