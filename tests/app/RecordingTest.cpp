// Recordings of a pedal, played to the receive side: input reports at their recorded times into ring, unpacker and
// controller, and each import and deletion where the recorded user asked for it.

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "CircleBuffer.h"
#include "DataUnpacking.h"
#include "DirectLink.h"
#include "FuzzedController.h"
#include "RVHidClass.h"
#include "model/UnpackerModel.h"

namespace kelvo::test {
namespace {

namespace fs = std::filesystem;

/// One line of a recording; errors are left out.
struct Transfer {
    double seconds;
    bool isInput;
    Bytes report;
};

std::vector<Transfer> readRecording(const fs::path& path) {
    std::vector<Transfer> transfers;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        Transfer transfer{};
        std::string place;
        std::string digits;
        fields >> transfer.seconds >> place >> digits;
        if (digits == "error") {
            continue;
        }
        transfer.isInput = place.starts_with("in");
        for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
            transfer.report.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(at, 2), nullptr, 16)));
        }
        transfers.push_back(std::move(transfer));
    }
    return transfers;
}

/// The counted bytes of output reports, and the frames in them.
class HostStream {
public:
    void add(std::span<const std::uint8_t> report) {
        const auto counted = report.subspan(1, report[0]);
        bytes_.insert(bytes_.end(), counted.begin(), counted.end());
    }
    [[nodiscard]] std::vector<Bytes> frames() const { return framesIn(bytes_); }
    /// Command, slot and phase of each packet, and command and slot of each deletion.
    [[nodiscard]] std::vector<Bytes> orders() const {
        std::vector<Bytes> orders;
        for (const Bytes& frame : frames()) {
            if (frame[4] != 0xE0) {
                orders.emplace_back(frame.begin() + 4, frame.begin() + (frame[4] == 0xE4 ? 6 : 7));
            }
        }
        return orders;
    }

private:
    Bytes bytes_;
};

class Recording : public testing::TestWithParam<fs::path> {
protected:
    void play(const fs::path& path) {
        AppClassPoint = &controller;
        manager.device = std::make_shared<fuzz::DirectDevice>([this](const auto& report) {
            sent.add(report);
            return true;
        });
        recording = readRecording(path);
        OpenHidDevice(manager, quitWindow);
    }

    std::vector<Transfer> recording;
    HostStream recorded;
    HostStream sent;
    fuzz::DirectManager manager{[this] { serve(); }};
    ScriptedServices services;
    KelvoAppDelegate controller{manager, services.functions()};
    fuzz::ControllerModel model;
    fuzz::User user{controller, services, model};

private:
    void serve() {
        constexpr double pace = 0.010;
        double nextTick = 0;
        for (const auto& [seconds, isInput, report] : recording) {
            for (; nextTick <= seconds; nextTick += pace) {
                tick();
            }
            if (isInput) {
                manager.deliver(report);
                unpacker.report(report);
            } else {
                recorded.add(report);
                actAsTheUserDid();
            }
        }
        tick();
    }
    void tick() {
        DUP_Unpack();
        for (const auto& buffer : unpacker.tick()) {
            model.frame(buffer);
        }
    }
    void actAsTheUserDid() {
        const std::vector<Bytes> orders = recorded.orders();
        for (; done < orders.size(); ++done) {
            const Bytes& order = orders[done];
            if (order[0] == 0xE4) {
                user.deleteCab(order[1], true);
            } else if (order[2] == 1) {
                order[0] == 0xE1 ? user.importIR(order[1], 0) : user.importAMP(order[1], 0);
            }
        }
    }

    fuzz::UnpackerModel unpacker;
    std::size_t done = 0;
};

TEST_P(Recording, leadsToTheModelsLabelsAndToThePacketsThatWereRecorded) {
    play(GetParam());
    user.checkState();
    EXPECT_EQ(sent.frames(), model.takeSent());
    EXPECT_EQ(sent.orders(), recorded.orders());
}

std::vector<fs::path> recordings() {
    std::vector<fs::path> paths;
    std::ranges::copy(fs::directory_iterator(KELVO_RECORDINGS), std::back_inserter(paths));
    return paths;
}

INSTANTIATE_TEST_SUITE_P(Of, Recording, testing::ValuesIn(recordings()), [](const auto& test) {
    std::string name = test.param.stem();
    std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
    return name;
});

}  // namespace
}  // namespace kelvo::test
