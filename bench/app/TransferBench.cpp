// transfer_bench RUNS: complete imports, from the chosen file to the name in the pedal's memory, over a cable that
// passes one report per millisecond in each direction, to a pedal that answers after 0, 1, 5 and 20 ms. They alternate
// with the same reports from a bare host on a separate cable. Prints, as JSON, the milliseconds of every run.
//
// The cable delivers each report at once and delays the next, so the pedal's delay includes the millisecond that an
// answer needs on the wire.

#include <QApplication>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "BareHost.h"
#include "ConnectedApp.h"
#include "ProcessFigures.h"
#include "SampleFiles.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kReportTime{1};
constexpr std::array<int, 4> kDelays{0, 1, 5, 20};
constexpr milliseconds kTick{10};

struct Kind {
    const char* name;
    void (kelvo::ConnectedApp::*import)(const QString& path);
    QString path;
    std::vector<std::size_t> packetSizes;  ///< in reports
};

using Packets = std::vector<std::vector<kelvo::Report>>;

/// One of the two hosts on its cable, and the time of its pedal's last change.
template <typename Host>
class Bench {
public:
    /// Milliseconds from the call of `begin` to the pedal's change.
    double run(int delay, const std::function<void(Host&)>& begin) {
        host_.pedal.setFaults({.answerDelay = kReportTime + milliseconds(delay)});
        ++changes_;
        const std::int64_t begun = kelvo::monotonicNow();
        begin(host_);
        const bool arrived = host_.manager.waitFor([this](const auto& activity) {
            return activity.changes.size() == changes_ && activity.pendingReports == 0;
        });
        if (!arrived) {
            std::cerr << "a transfer did not end\n";
            std::_Exit(EXIT_FAILURE);
        }
        return static_cast<double>(changedAt_ - begun) / 1e6;
    }

    Host& host() { return host_; }

private:
    std::atomic<std::int64_t> changedAt_ = 0;
    std::size_t changes_ = 0;
    Host host_{{.wirePace = kReportTime, .record = true},
               [this](std::string_view) { changedAt_ = kelvo::monotonicNow(); }};
};

/// The last recorded reports, split into packets.
Packets lastPackets(const std::vector<kelvo::Report>& record, const std::vector<std::size_t>& sizes) {
    auto at = record.end() - std::accumulate(sizes.begin(), sizes.end(), std::ptrdiff_t{0});
    Packets packets;
    for (const std::size_t size : sizes) {
        packets.emplace_back(at, at + static_cast<std::ptrdiff_t>(size));
        at += static_cast<std::ptrdiff_t>(size);
    }
    return packets;
}

/// A pause that shifts the run within the receive thread's tick, with all offsets equally often.
void pauseBefore(int run) {
    constexpr double kGolden = 0.6180339887;
    const double place = run * kGolden - static_cast<int>(run * kGolden);
    std::this_thread::sleep_for(2 * kTick + place * std::chrono::duration<double, std::milli>(kTick));
}

using Times = std::map<std::string, std::vector<double>>;

void print(const Times& times) {
    std::cout << '{';
    const char* between = "";
    for (const auto& [name, values] : times) {
        std::cout << between << "\n  \"" << name << "\": [";
        between = ",";
        const char* comma = "";
        for (const double value : values) {
            std::cout << comma << value;
            comma = ", ";
        }
        std::cout << ']';
    }
    std::cout << "\n}" << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : 1;
    const QApplication application(argc, argv);
    const kelvo::SampleDir files;
    const std::vector<std::uint32_t> words(512, 0x01020304);
    const std::array<Kind, 2> kinds{
        {{"IR",
          &kelvo::ConnectedApp::importIR,
          files.write("ir.wav", kelvo::WaveFile{.data = kelvo::FileBytes(1024, 0x40)}.bytes()),
          {9, 9, 9, 1}},
         {"AMP", &kelvo::ConnectedApp::importAMP, files.write("amp.amp", kelvo::ampFile(words)), {9, 9, 9, 9, 1}}}};

    Bench<kelvo::ConnectedApp> app;
    app.host().start();
    Bench<kelvo::BareHost> bare;
    Times times;
    for (int run = 0; run < runs; ++run) {
        for (const int delay : kDelays) {
            for (const Kind& kind : kinds) {
                const std::string name = std::string(kind.name) + '/' + std::to_string(delay);
                pauseBefore(run);
                times[name + "/kelvo"].push_back(
                    app.run(delay, [&kind](kelvo::ConnectedApp& host) { (host.*kind.import)(kind.path); }));
                const Packets packets = lastPackets(app.host().manager.activity().outputReports, kind.packetSizes);
                pauseBefore(run);
                times[name + "/bare"].push_back(
                    bare.run(delay, [&packets](kelvo::BareHost& host) { host.transfer(packets); }));
            }
        }
    }
    print(times);
    std::_Exit(EXIT_SUCCESS);
}
