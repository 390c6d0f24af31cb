#include "ReliabilityApp.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>

#include "CRC.h"
#include "Descriptors.h"
#include "LogListener.h"
#include "SlotTableView.h"

namespace kelvo::test {

void startQuickly(RunningApp& app) {
    std::array<std::uint8_t, kFrameBufferSize> frame{0xAA, 0x55, 0x02, 0x00, 0xA5, 199};
    app.controller.CMD_CallBack(frame);
    app.start();
}

std::uint32_t triedReports(const RunningApp& app) {
    const auto activity = app.manager.activity();
    return static_cast<std::uint32_t>(activity.outputReports.size() + activity.refusedReports);
}

bool settle(const RunningApp& app) {
    constexpr int linesPerNameList = 100;
    constexpr std::uint32_t reportsPerQuestion = 10;
    // A deletion of no slot: it makes up what the pedal may still be missing of a frame that was cut short.
    std::array<std::uint8_t, 521> filler{0xAA, 0x55, 0x03, 0x02, 0xE4, 0xFF};
    std::array<std::uint8_t, 8> connect{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00};
    for (int question = 0; question < 100; ++question) {
        const std::uint32_t reports = triedReports(app);
        // The controller logs the AMP names letter by letter; its bytes come in the order in which they were sent.
        std::atomic<int> lines = 0;
        const LogListener listener([&lines](std::string_view) { ++lines; });
        SendUartCmd(filler.data());
        SendUartCmd(connect.data());
        if (!serveUntil([&lines] { return lines >= linesPerNameList; })) {
            return false;
        }
        if (triedReports(app) == reports + reportsPerQuestion) {
            return true;
        }
    }
    return false;
}

Holdings holdings() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return {openDescriptors(), static_cast<std::size_t>(std::distance(begin(tasks), end(tasks))), resident * 4};
}

FileBytes waveOf(std::uint32_t point) {
    WaveFile wave{.bitsPerSample = 24};
    for (int i = 0; i < 512; ++i) {
        append(wave.data, point, 3);
    }
    return wave.bytes();
}

FileBytes ampOf(std::uint32_t word) {
    std::array<std::uint32_t, 512> words{};
    words.fill(word);
    return ampFile(words);
}

std::vector<Action> singleActions() {
    return {
        {"IRImport",
         28,
         4,
         {"CAB 30"},
         [](RunningApp& app, const SampleDir& files) { app.importIR(3, files.write("a.wav", waveOf(0x123456))); }},
        {"AmpImport",
         37,
         5,
         {"AMP 60"},
         [](RunningApp& app, const SampleDir& files) { app.importAMP(4, files.write("a.amp", ampOf(0x12345678))); }},
        {"Deletion",
         9,
         0,
         {"CAB 27"},
         [](RunningApp& app, const SampleDir&) {
             app.controller.ImportIRTableV().selectRow(0);
             app.controller.deleteCAB();
             app.services.alerts.back().answer(kAlertFirstButtonReturn);
             app.services.alerts.clear();
         }},
    };
}

}  // namespace kelvo::test
