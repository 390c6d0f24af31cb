#include "ControllerModel.h"

#include <algorithm>

#include "WireBytes.h"

namespace kelvo::fuzz {
namespace {

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

std::string numbered(std::size_t number, const std::string& name) {
    return std::to_string(number) + "." + upper(name);
}

}  // namespace

void ControllerModel::frame(const std::array<std::uint8_t, 1024>& buffer) {
    const std::uint8_t value = buffer[5];
    switch (buffer[4]) {
        case 0x85:
            for (std::size_t slot = 0; slot < 10; ++slot) {
                std::string name;
                for (std::size_t i = 0; i < 10 && (buffer[5 + 10 * slot + i] & 0x7F) != 0; ++i) {
                    name += static_cast<char>(buffer[5 + 10 * slot + i] & 0x7F);
                }
                cabLabels[slot] = numbered(27 + slot, name);
            }
            return;
        case 0xE3:
            for (std::size_t slot = 0; slot < 10; ++slot) {
                std::string name;
                for (std::size_t i = 0; i < 10; ++i) {
                    const std::uint8_t byte = buffer[5 + 10 * slot + i];
                    if (byte > 0x7F) {
                        name += "\xC2\xB7";
                    } else {
                        name += byte == 0 ? ' ' : static_cast<char>(byte);
                    }
                }
                ampLabels[slot] = numbered(56 + slot, name);
            }
            return;
        case 0xA5:
            progress = value;
            shownProgress = value <= 199 ? value / 199.0 : shownProgress;
            return;
        case 0xE1:
            acknowledge(ir_, value);
            if (value >= 1 && value <= 3) {
                sendIR(value + 1);
            }
            // The name packet fills the slot, though it may have been cleared or reported since.
            if (value == 3 && !ir_.isSpoiled) {
                label(cabLabels, 27, ir_);
            }
            irTick = value == 4 ? 0 : irTick;
            return;
        case 0xE2:
            acknowledge(amp_, value);
            if (value >= 1 && value <= 4) {
                sendAMP(value + 1);
            }
            if (value == 4 && !amp_.isSpoiled) {
                label(ampLabels, 56, amp_);
            }
            irTick = value == 5 ? 0 : irTick;
            return;
        default:
            return;
    }
}

void ControllerModel::label(Labels& labels, int first, const Import& import) {
    if (import.row >= 0) {
        labels[static_cast<std::size_t>(import.row)] =
            numbered(static_cast<std::size_t>(first + import.row), import.name);
    }
}

void ControllerModel::acknowledge(Import& import, int phase) {
    import.acknowledged = phase == import.acknowledged + 1 ? phase : import.acknowledged;
}

void ControllerModel::sendIR(int phase) {
    irTick = phase;
    sendPacket(0xE1, ir_, phase, 3);
}

void ControllerModel::sendAMP(int phase) {
    ampTick = phase;
    sendPacket(0xE2, amp_, phase, 4);
}

void ControllerModel::sendPacket(std::uint8_t command, Import& import, int phase, int planes) {
    const bool isInOrder = phase == import.lastPhase || phase == import.lastPhase + 1;
    import.isSpoiled = import.isSpoiled || (import.acknowledged <= planes && !(isInOrder && row_ == import.row));
    import.lastPhase = phase;
    test::Bytes body{command, static_cast<std::uint8_t>(row_), static_cast<std::uint8_t>(phase)};
    if (phase > planes) {
        const std::string name = import.name.substr(0, 10);
        body.insert(body.end(), name.begin(), name.end());
        body.resize(13);
    } else {
        for (const std::uint32_t word : import.words) {
            body.push_back(static_cast<std::uint8_t>(word >> (8 * (planes - phase))));
        }
    }
    send(body);
}

void ControllerModel::send(const test::Bytes& body) {
    sent_.push_back(soundFrame(body));
}

}  // namespace kelvo::fuzz
