#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "FrameSearch.h"

namespace kelvo::fuzz {

/// A simple model of what the controller must send and show. Shares no code with `app/` and `protocol/`.
class ControllerModel {
public:
    using Words = std::array<std::uint32_t, 512>;
    using Labels = std::array<std::string, 10>;

    /// Chooses a row for a transfer; -1 means none.
    void choose(int row) { row_ = row; }
    void importIR(const Words& points, const std::string& name) {
        ir_ = {points, name, row_};
        label(cabLabels, 27, ir_);
        sendIR(1);
    }
    void importAMP(const Words& words, const std::string& name) {
        amp_ = {words, name, row_};
        label(ampLabels, 56, amp_);
        sendAMP(1);
    }
    void deleteCab(int row) {
        test::Bytes body{0xE4, static_cast<std::uint8_t>(row)};
        body.resize(515);
        send(body);
        if (row >= 0) {
            cabLabels[static_cast<std::size_t>(row)] = std::to_string(row + 27) + "EMPTY";
        }
        if (ir_.row == row && (ir_.lastPhase == 4 || ir_.acknowledged == 4)) {
            ir_.row = -1;
        }
    }
    /// Handles a frame from the device, with all 1024 bytes of the unpacker's buffer.
    void frame(const std::array<std::uint8_t, 1024>& buffer);

    /// The frames that must have been sent since the last call.
    std::vector<test::Bytes> takeSent() { return std::exchange(sent_, {}); }

    Labels cabLabels;
    Labels ampLabels;
    std::uint8_t progress = 0;
    /// The bar's value: the last progress up to 199, divided by 199. Larger values do not change it.
    double shownProgress = 0.0;
    int irTick = 0;
    int ampTick = 0;

private:
    struct Import {
        Words words{};
        std::string name;
        int row = -1;
        int lastPhase = 0;       ///< that was sent
        int acknowledged = 0;    ///< the last phase, of those in order
        bool isSpoiled = false;  ///< a packet was out of order or for another row
    };

    static void label(Labels& labels, int first, const Import& import);
    static void acknowledge(Import& import, int phase);
    void sendIR(int phase);
    void sendAMP(int phase);
    void sendPacket(std::uint8_t command, Import& import, int phase, int planes);
    void send(const test::Bytes& body);

    Import ir_;
    Import amp_;
    int row_ = 0;
    std::vector<test::Bytes> sent_;
};

}  // namespace kelvo::fuzz
