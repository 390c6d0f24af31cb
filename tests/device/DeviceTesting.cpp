#include "DeviceTesting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <stdexcept>

namespace kelvo {
namespace {

struct PacketCrc {
    std::uint8_t command;
    std::uint8_t slot;
    std::uint8_t phase;
    unsigned shift;
    std::uint16_t crc;
};

constexpr PacketCrc kPacketCrcs[] = {
    {0xE1, 0, 1, 0, 0x0671},   {0xE1, 0, 2, 0, 0xD806},   {0xE1, 0, 3, 0, 0xBCD2},   {0xE1, 0, 4, 0, 0xB56A},
    {0xE1, 3, 1, 0, 0xC4BA},   {0xE1, 3, 2, 0, 0x1ACD},   {0xE1, 3, 3, 0, 0x7E19},   {0xE1, 3, 4, 0, 0xB0F5},
    {0xE1, 9, 1, 0, 0x6A42},   {0xE1, 9, 2, 0, 0xB435},   {0xE1, 9, 3, 0, 0xD0E1},   {0xE1, 9, 4, 0, 0xADB7},
    {0xE1, 10, 1, 0, 0xA889},  {0xE1, 10, 2, 0, 0x76FE},  {0xE1, 10, 3, 0, 0x122A},  {0xE1, 10, 4, 0, 0xA828},
    {0xE1, 255, 1, 0, 0x965A}, {0xE1, 255, 2, 0, 0x482D}, {0xE1, 255, 3, 0, 0x2CF9}, {0xE1, 255, 4, 0, 0x8898},
    {0xE1, 3, 1, 100, 0x8957}, {0xE1, 3, 2, 100, 0x05FC}, {0xE1, 3, 3, 100, 0x5DF6}, {0xE1, 3, 4, 100, 0x62CF},
    {0xE2, 2, 1, 0, 0xB70D},   {0xE2, 2, 2, 0, 0x697A},   {0xE2, 2, 3, 0, 0x0DAE},   {0xE2, 2, 4, 0, 0xDF78},
    {0xE2, 2, 5, 0, 0x3282},   {0xE2, 255, 1, 0, 0xA454}, {0xE2, 255, 2, 0, 0x7A23}, {0xE2, 255, 3, 0, 0x1EF7},
    {0xE2, 255, 4, 0, 0xCC21}, {0xE2, 255, 5, 0, 0x099A}, {0xE2, 3, 1, 100, 0xBB59}, {0xE2, 3, 2, 100, 0x37F2},
    {0xE2, 3, 3, 100, 0x6FF8}, {0xE2, 3, 4, 100, 0x7913}, {0xE2, 3, 5, 100, 0x7523},
};

struct DeleteCrc {
    std::uint8_t slot;
    std::uint16_t crc;
};

constexpr DeleteCrc kDeleteCrcs[] = {{0, 0x773E}, {3, 0xB5F5}, {9, 0x1B0D}, {10, 0xD9C6}, {255, 0xE715}};

void append(Bytes& bytes, std::string_view text) {
    std::ranges::copy(text, std::back_inserter(bytes));
}

void appendCrc(Bytes& bytes, std::uint16_t crc) {
    bytes.push_back(static_cast<std::uint8_t>(crc >> 8));
    bytes.push_back(static_cast<std::uint8_t>(crc & 0xFF));
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

std::vector<Bytes> makeReports(std::span<const std::uint8_t> frame) {
    std::vector<Bytes> reports;
    while (!frame.empty()) {
        const std::size_t count = std::min<std::size_t>(frame.size(), 63);
        reports.push_back(makeReport(frame.first(count)));
        frame = frame.subspan(count);
    }
    return reports;
}

Bytes packet(std::uint8_t command, std::uint8_t slot, std::uint8_t phase, unsigned shift) {
    const auto entry = std::ranges::find_if(kPacketCrcs, [&](const PacketCrc& known) {
        return known.command == command && known.slot == slot && known.phase == phase && known.shift == shift;
    });
    if (entry == std::ranges::end(kPacketCrcs)) {
        throw std::invalid_argument("no CRC is known for this packet");
    }
    const bool isName = phase == (command == 0xE1 ? 4 : 5);
    const std::uint8_t lengthLow = isName ? 0x0D : 0x03;
    const std::uint8_t lengthHigh = isName ? 0x00 : 0x02;
    Bytes bytes = {0xAA, 0x55, lengthLow, lengthHigh, command, slot, phase};
    if (isName) {
        append(bytes, shift != 0 ? "OTHERNAME!" : command == 0xE1 ? "MYCAB" : "CLEAN");
        bytes.resize(17);
    } else {
        for (unsigned i = 0; i < 512; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(16U * phase + i + shift));
        }
    }
    appendCrc(bytes, entry->crc);
    return bytes;
}

Bytes deletePacket(std::uint8_t slot) {
    const auto entry = std::ranges::find(kDeleteCrcs, slot, &DeleteCrc::slot);
    if (entry == std::ranges::end(kDeleteCrcs)) {
        throw std::invalid_argument("no CRC is known for this slot");
    }
    Bytes bytes = {0xAA, 0x55, 0x03, 0x02, 0xE4, slot};
    bytes.resize(519);
    appendCrc(bytes, entry->crc);
    return bytes;
}

Bytes connectFrame() {
    return {0xAA, 0x55, 0x02, 0x00, 0xE0, 0x00, 0x02, 0x25};
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

VirtualKr310::Reaction sendPhases(VirtualKr310& pedal, std::uint8_t command, std::uint8_t slot, const Bytes& phases,
                                  unsigned shift) {
    std::vector<Bytes> frames;
    std::ranges::transform(phases, std::back_inserter(frames),
                           [&](std::uint8_t phase) { return packet(command, slot, phase, shift); });
    return send(pedal, frames);
}

std::string answered(const VirtualKr310::Reaction& reaction) {
    Bytes bytes;
    for (const InputReport& report : reaction.reports) {
        const std::size_t count = std::min<std::size_t>(report.bytes.at(0), 63);
        bytes.insert(bytes.end(), report.bytes.begin() + 1,
                     report.bytes.begin() + 1 + static_cast<std::ptrdiff_t>(count));
    }
    return hex(bytes);
}

}  // namespace kelvo
