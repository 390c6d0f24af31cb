#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Kr310Memory.h"

namespace kelvo {

/// Collects the packets of one import: byte planes, the most significant first, then the name.
class Kr310Transfer {
public:
    /// `planes` is the number of byte planes, 3 or 4; the name is phase `planes` + 1.
    explicit Kr310Transfer(std::uint8_t planes) : planes_(planes) {}

    /// Whether a packet of this phase must have this many bytes after slot and phase.
    [[nodiscard]] bool fits(std::uint8_t phase, std::size_t size) const;
    [[nodiscard]] std::uint8_t lastPhase() const { return static_cast<std::uint8_t>(planes_ + 1); }

    /// Adds one packet that fits. Returns the new content of the slot after the name, if all packets have come in order
    /// and for the same slot.
    [[nodiscard]] std::optional<Kr310Slot> take(std::uint8_t slot, std::uint8_t phase,
                                                std::span<const std::uint8_t> bytes);

    /// Discards an unfinished transfer.
    void reset() { nextPhase_ = 1; }

private:
    [[nodiscard]] Kr310Slot assemble(std::span<const std::uint8_t> name) const;

    std::uint8_t planes_;
    std::uint8_t slot_ = 0;
    std::uint8_t nextPhase_ = 1;  // the expected phase; phase 1 is always accepted
    std::array<std::array<std::uint8_t, kSlotWords>, 4> bytes_{};
};

}  // namespace kelvo
