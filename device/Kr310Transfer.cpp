#include "Kr310Transfer.h"

#include <algorithm>

namespace kelvo {

bool Kr310Transfer::fits(std::uint8_t phase, std::size_t size) const {
    if (phase == lastPhase()) {
        return size == kSlotNameSize;
    }
    return phase >= 1 && phase <= planes_ && size == kSlotWords;
}

std::optional<Kr310Slot> Kr310Transfer::take(std::uint8_t slot, std::uint8_t phase,
                                             std::span<const std::uint8_t> bytes) {
    const bool continues = slot == slot_ && (phase == nextPhase_ || phase + 1 == nextPhase_);
    if (phase != 1 && !continues) {
        reset();
        return std::nullopt;
    }
    if (phase == lastPhase()) {
        reset();
        return assemble(bytes);
    }
    slot_ = slot;
    std::ranges::copy(bytes, bytes_[phase - 1U].begin());
    nextPhase_ = static_cast<std::uint8_t>(phase + 1);
    return std::nullopt;
}

Kr310Slot Kr310Transfer::assemble(std::span<const std::uint8_t> name) const {
    Kr310Slot content;
    content.name.assign(name.begin(), std::ranges::find(name, 0));
    for (std::size_t word = 0; word < kSlotWords; ++word) {
        for (std::size_t plane = 0; plane < planes_; ++plane) {
            content.words[word] = content.words[word] << 8 | bytes_[plane][word];
        }
    }
    return content;
}

}  // namespace kelvo
