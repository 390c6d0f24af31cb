#include "DeviceTesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>

namespace kelvo {
namespace {

std::vector<Bytes> packets(std::uint8_t command, std::uint8_t slot, const Bytes& phases, std::uint8_t namePhase,
                           std::string_view name) {
    std::vector<Bytes> frames;
    for (const std::uint8_t phase : phases) {
        Bytes data = {slot, phase};
        if (phase == namePhase) {
            std::ranges::copy(name, std::back_inserter(data));
            data.resize(12);
        } else {
            for (unsigned i = 0; i < 512; ++i) {
                data.push_back(static_cast<std::uint8_t>(16U * phase + i));
            }
        }
        frames.push_back(writeFrame({command, data}));
    }
    return frames;
}

}  // namespace

std::string hex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Bytes unhex(std::string_view text) {
    Bytes bytes;
    for (std::size_t at = 0; at + 2 <= text.size(); at += 3) {
        std::from_chars(text.data() + at, text.data() + at + 2, bytes.emplace_back(), 16);
    }
    return bytes;
}

Bytes makeReport(std::span<const std::uint8_t> payload) {
    Bytes report(64, 0x5C);
    report[0] = static_cast<std::uint8_t>(payload.size());
    std::ranges::copy(payload, report.begin() + 1);
    return report;
}

std::vector<Bytes> makeReports(std::span<const std::uint8_t> frame, std::size_t perReport) {
    std::vector<Bytes> reports;
    while (!frame.empty()) {
        const std::size_t count = std::min(frame.size(), perReport);
        reports.push_back(makeReport(frame.first(count)));
        frame = frame.subspan(count);
    }
    return reports;
}

Bytes connectFrame() {
    return unhex("AA 55 02 00 E0 00 02 25");
}

std::vector<Bytes> cab(std::uint8_t slot, const Bytes& phases) {
    return packets(0xE1, slot, phases, 4, "MYCAB");
}

std::vector<Bytes> amp(std::uint8_t slot, const Bytes& phases) {
    return packets(0xE2, slot, phases, 5, "CLEAN");
}

Bytes deletion(std::uint8_t slot) {
    Bytes data(514);
    data[0] = slot;
    return writeFrame({0xE4, data});
}

Faults faultsOf(const std::string& texts) {
    Faults faults;
    std::istringstream names(texts);
    for (std::string name; names >> name;) {
        EXPECT_EQ(switchOn(name, faults), std::nullopt);
    }
    return faults;
}

VirtualKr310::Reaction send(VirtualKr310& pedal, const std::vector<Bytes>& frames) {
    VirtualKr310::Reaction all;
    for (const Bytes& frame : frames) {
        for (const Bytes& report : makeReports(frame)) {
            VirtualKr310::Reaction reaction = pedal.receive(report);
            std::ranges::move(reaction.reports, std::back_inserter(all.reports));
            std::ranges::move(reaction.changes, std::back_inserter(all.changes));
        }
    }
    return all;
}

std::string answered(const std::vector<InputReport>& reports) {
    FrameReader reader;
    std::ostringstream text;
    for (const InputReport& report : reports) {
        for (const Frame& frame : reader.takeReport(report.bytes)) {
            text << (text.str().empty() ? "" : " | ");
            if (report.due.count() != 0) {
                text << report.due.count() / 1000 << " ms ";
            }
            text << hex(std::span(&frame.command, 1)) << ": " << hex(frame.data);
        }
    }
    return text.str();
}

}  // namespace kelvo
