// Everything at once: the user imports and deletes without waiting, while the pedal is asked again and again for its
// lists and its progress and acknowledges what it gets. Run it under ThreadSanitizer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTimer>
#include <atomic>
#include <thread>

#include "CRC.h"
#include "Kr310Frames.h"
#include "ReliabilityApp.h"
#include "SlotTableView.h"

namespace kelvo::test {
namespace {

constexpr std::uint32_t kImports = 120;

/// Import n carries one value in every word, so that a packet tells which import it belongs to.
std::uint32_t irPoint(std::uint32_t n) {
    return n << 16 | (n ^ 0x5A) << 8 | (0xFF - n);
}
std::uint32_t ampWord(std::uint32_t n) {
    return (0x80 | n) << 24 | irPoint(n);
}

/// Asks for names and progress on a separate thread until it ends.
class Chatter {
public:
    explicit Chatter(const VirtualHidManager& manager) : manager_(manager), thread_([this] { talk(); }) {}
    ~Chatter() {
        end_ = true;
        thread_.join();
    }
    [[nodiscard]] int asked() const { return asked_; }

private:
    void talk() {
        std::array<std::uint8_t, 8> connect{0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00};
        while (!end_) {
            SendUartCmd(connect.data());
            ++asked_;
            EXPECT_TRUE(manager_.waitFor([](const auto& activity) { return activity.pendingReports == 0; }));
            std::this_thread::sleep_for(std::chrono::milliseconds(20));  // the pace of the questions: two ticks each
        }
    }

    const VirtualHidManager& manager_;
    std::atomic<bool> end_ = false;
    std::atomic<int> asked_ = 0;
    std::thread thread_;
};

/// The packets that reached the pedal, as its own frame reader sees them.
std::vector<Frame> packets(const RunningApp& app) {
    FrameReader reader;
    std::vector<Frame> all;
    for (const Report& report : app.manager.activity().outputReports) {
        for (Frame& frame : reader.takeReport(report)) {
            all.push_back(std::move(frame));
        }
    }
    return all;
}

/// The import that a packet of data belongs to; none when its bytes are not all the same.
std::optional<std::uint32_t> importOf(const Frame& packet) {
    const std::span<const std::uint8_t> payload = std::span(packet.data).subspan(2);
    if (payload.size() != 512 || std::ranges::count(payload, payload[0]) != 512) {
        return std::nullopt;
    }
    const std::uint32_t byte = payload[0];
    const bool isAmp = packet.command == 0xE2;
    const std::uint32_t plane = packet.data[1] - (isAmp ? 1U : 0U);
    switch (plane) {
        case 0:
            return byte & 0x7F;
        case 1:
            return byte;
        case 2:
            return byte ^ 0x5A;
        default:
            return 0xFF - byte;
    }
}

class Stress : public testing::Test {
protected:
    Stress() {
        for (std::uint32_t n = 0; n < kImports; ++n) {
            waves_.push_back(files_.write(QStringLiteral("ir%1.wav").arg(n), waveOf(irPoint(n))));
            amps_.push_back(files_.write(QStringLiteral("amp%1.amp").arg(n), ampOf(ampWord(n))));
        }
    }

    SampleDir files_;
    std::vector<QString> waves_;
    std::vector<QString> amps_;
};

TEST_F(Stress, overlappingImportsDeletionsListsAndProgress_neverMixTwoImportsInAPacketOrInASlot) {
    RunningApp app;
    startQuickly(app);
    std::uint32_t n = 0;
    int asked = 0;
    {
        const Chatter chatter(app.manager);
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&] {
            const int row = static_cast<int>(n % 5);
            n % 2 == 0 ? app.importIR(row, waves_[n]) : app.importAMP(row, amps_[n]);
            if (n % 7 == 0) {
                app.controller.deleteCAB();
                app.services.alerts.back().answer(kAlertFirstButtonReturn);
            }
            user.setInterval(static_cast<int>(n * 13 % 40));
            if (++n == kImports) {
                user.stop();
            }
        });
        user.start(1);
        ASSERT_TRUE(serveUntil([&] { return n == kImports; }));
        asked = chatter.asked();
    }
    ASSERT_TRUE(settle(app));
    EXPECT_GT(asked, 10);

    std::size_t data = 0;
    for (const Frame& packet : packets(app)) {
        const bool isIR = packet.command == 0xE1;
        const bool isAmp = packet.command == 0xE2;
        if (!isIR && !isAmp) {
            continue;
        }
        EXPECT_LT(packet.data[0], 5) << "a row that was not chosen";
        if (packet.data[1] <= (isIR ? 3 : 4)) {
            const auto import = importOf(packet);
            ASSERT_TRUE(import.has_value()) << "a packet of two imports, phase " << int{packet.data[1]};
            EXPECT_LT(*import, kImports);
            EXPECT_EQ(*import % 2, isIR ? 0U : 1U);
            ++data;
        }
    }
    EXPECT_GT(data, kImports);

    const Kr310Memory memory = app.pedal.memory();
    for (std::size_t slot = 0; slot < 5; ++slot) {
        const Kr310Slot& cab = memory.cab[slot];
        if (cab.name.starts_with("IR")) {
            const auto import = static_cast<std::uint32_t>(std::stoi(cab.name.substr(2)));
            EXPECT_THAT(cab.words, testing::Each(irPoint(import))) << cab.name;
        }
        const Kr310Slot& amp = memory.amp[slot];
        if (amp.name.starts_with("amp")) {
            const auto import = static_cast<std::uint32_t>(std::stoi(amp.name.substr(3)));
            EXPECT_THAT(amp.words, testing::Each(ampWord(import))) << amp.name;
        }
    }

    app.importIR(9, waves_[42]);
    ASSERT_TRUE(serveUntil([&] { return app.pedal.memory().cab[9].name == "IR42"; }));
    EXPECT_THAT(app.pedal.memory().cab[9].words, testing::Each(0x2A70D5U));
    EXPECT_THAT(changedSlots(app.pedal),
                testing::IsSubsetOf({"CAB 27", "CAB 28", "CAB 29", "CAB 30", "CAB 31", "CAB 36", "AMP 56", "AMP 57",
                                     "AMP 58", "AMP 59", "AMP 60"}));
}

TEST_F(Stress, newImportAtEveryMomentOfARunningOne_isComplete) {
    RunningApp app;
    startQuickly(app);
    for (std::uint32_t n = 0; n < 40; ++n) {
        app.importIR(1, waves_[2 * n]);
        // Each time a little later within the four packets of the first.
        static_cast<void>(serveUntil([] { return false; }, std::chrono::milliseconds(n)));
        app.importIR(2, waves_[2 * n + 1]);
        const std::string name = "IR" + std::to_string(2 * n + 1);
        ASSERT_TRUE(settle(app));
        if (app.pedal.memory().cab[2].name != name) {
            // An acknowledgement of the first, on its way as the second began, has sent a packet out of turn: the
            // pedal then drops the transfer, and the user presses the button again. No acknowledgement is left by now.
            app.importIR(2, waves_[2 * n + 1]);
            ASSERT_TRUE(settle(app));
        }
        ASSERT_EQ(app.pedal.memory().cab[2].name, name) << n;
        EXPECT_THAT(app.pedal.memory().cab[2].words, testing::Each(irPoint(2 * n + 1))) << n;
    }
}

}  // namespace
}  // namespace kelvo::test
