// Ten thousand imports with random faults, through the whole program in one process: what a sound pedal was given it
// holds, and neither memory nor descriptors nor threads grow. Prints a line for every session.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "ReliabilityApp.h"

namespace kelvo::test {
namespace {

constexpr std::uint32_t kSessions = 20;
constexpr std::uint32_t kRounds = 250;  ///< of an IR and an amp each
constexpr std::uint32_t kSeed = 20240229;
/// The toolkit's caches have been filled by then.
constexpr std::uint32_t kSettled = 10;
constexpr std::size_t kSlackKiB = 4096;

class Soak {
public:
    explicit Soak(const SampleDir& files) : files_(files) {}

    void session() {
        RunningApp app;
        startQuickly(app);
        for (std::uint32_t round = 0; round < kRounds; ++round) {
            const bool strikes = below(10) == 0;
            if (strikes) {
                app.pedal.setFaults(randomFaults(app));
            }
            import(app, strikes);
            if (strikes) {
                // Long enough for most transfers to come to their end under the fault, whichever that is.
                static_cast<void>(serveUntil([] { return false; }, std::chrono::milliseconds(40)));
                app.pedal.setFaults({});
                EXPECT_TRUE(settle(app));
            }
        }
        EXPECT_TRUE(app.services.alerts.empty());
    }

    std::size_t imports = 0;
    std::size_t faulty = 0;

private:
    std::uint32_t below(std::uint32_t limit) {
        return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(random_);
    }

    Faults randomFaults(const RunningApp& app) {
        Faults faults;
        switch (below(8)) {
            case 0:
                faults.silentFromPhase = static_cast<std::uint8_t>(below(6));
                break;
            case 1:
                faults.duplicateAcknowledgement = true;
                break;
            case 2:
                faults.wrongAcknowledgement = true;
                break;
            case 3:
                faults.corruptCrcEvery = 1 + below(4);
                break;
            case 4:
                faults.refuseReport = triedReports(app) + 1 + below(60);
                break;
            case 5:
                faults.splitReports = 1 + below(63);
                break;
            case 6:
                faults.countOver63 = true;
                break;
            default:
                faults.garbageBefore = true;
                break;
        }
        return faults;
    }

    /// One IR and one amp at the same time, into the same row: they share the row, not the slot.
    void import(RunningApp& app, bool mayFail) {
        const auto row = below(10);
        const std::uint32_t point = static_cast<std::uint32_t>(imports) * 2654435761U;
        const QString wave = files_.write("ir.wav", waveOf(point & 0xFFFFFF));
        const QString amp = files_.write("amp.amp", ampOf(point));
        app.importIR(static_cast<int>(row), wave);
        app.importAMP(static_cast<int>(row), amp);
        imports += 2;
        if (mayFail) {
            ++faulty;
            return;
        }
        EXPECT_TRUE(serveUntil([&] {
            const Kr310Memory memory = app.pedal.memory();
            return memory.cab[row].name == "IR" && memory.cab[row].words[511] == (point & 0xFFFFFF) &&
                   memory.amp[row].name == "amp" && memory.amp[row].words[511] == point;
        })) << imports;
        const Kr310Memory memory = app.pedal.memory();
        EXPECT_THAT(memory.cab[row].words, testing::Each(point & 0xFFFFFF));
        EXPECT_THAT(memory.amp[row].words, testing::Each(point));
        EXPECT_TRUE(serveUntil([&] { return app.controller.transferState().IRTick == 0; }));
    }

    const SampleDir& files_;
    std::mt19937 random_{kSeed};
};

TEST(SoakTest, tenThousandImportsWithRandomFaults_arriveAndLeakNothing) {
    const SampleDir files;
    Soak soak(files);
    Holdings settled;
    for (std::uint32_t session = 1; session <= kSessions && !testing::Test::HasFailure(); ++session) {
        soak.session();
        const Holdings now = holdings();
        std::printf("%zu imports, %zu rounds with faults: %zu KiB, %zu descriptors, %zu threads\n", soak.imports,
                    soak.faulty, now.memory, now.descriptors.size(), now.threads);
        std::fflush(stdout);
        if (session == kSettled) {
            settled = now;
        }
    }
    const Holdings end = holdings();
    EXPECT_EQ(soak.imports, 10000U);
    EXPECT_GT(soak.faulty, 400U);
    EXPECT_LT(end.memory, settled.memory + kSlackKiB);
    EXPECT_EQ(end.descriptors.size(), settled.descriptors.size());
    EXPECT_EQ(end.threads, settled.threads);
}

}  // namespace
}  // namespace kelvo::test
