#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "SlotContent.h"

namespace kelvo {

/// LENGTH of a packet of words, and of a deletion: command, slot, phase and 512 bytes. The wire.
inline constexpr std::uint16_t kDataLength = 515;
/// LENGTH of a packet with a name: command, slot, phase and 10 bytes. The wire.
inline constexpr std::uint16_t kNameLengthField = 13;

/// The largest frame that goes to the device: LENGTH 515 and six bytes around it.
inline constexpr std::size_t kPacketSize = 521;

using PacketBuffer = std::array<std::uint8_t, kPacketSize>;

/// Writes the header, a LENGTH of 515 and the command; all other bytes stay what they were.
void layOutHeader(PacketBuffer& packet, std::uint8_t command);

/// How one kind of data travels: phases 1 to namePhase - 1 carry one byte of every word each, from the highest byte
/// that is sent down to the lowest; namePhase carries the name.
struct TransferKind {
    std::uint8_t command;
    std::uint8_t namePhase;
};

extern const TransferKind kIRTransfer;
extern const TransferKind kAMPTransfer;

/// How far one transfer has come. Aligned to its size, so that clang++ keeps an atomic copy of it without a lock.
struct alignas(8) TransferProgress {
    std::uint32_t number = 0;  ///< of the transfer; 0: none has begun
    std::int16_t row = -1;     ///< whose slot it fills; -1 for none
    /// Packets that have been acknowledged in turn. What an earlier transfer left on its way does not count.
    std::uint8_t acknowledged = 0;
    /// A packet went out of turn or to another slot, so that the slot may not hold this file in the end.
    bool isSpoiled = false;

    bool operator==(const TransferProgress&) const = default;
};

/// One kind's transfer: 512 words and a name into a slot, in packets of which each is sent after the acknowledgement of
/// the one before. The caller sends the packets. One thread at a time.
class Transfer {
public:
    explicit Transfer(const TransferKind& kind) : kind_(kind) {}

    /// Begins anew with the first packet, whatever has become of the transfer before.
    void begin(std::uint32_t number, int row, const PointBuffer& words, const NameBuffer& name);

    /// The device has acknowledged a phase. The packet after it is the next one, in whatever order acknowledgements
    /// come. Returns false where none follows: after the name, and for a phase that does not exist.
    [[nodiscard]] bool acknowledge(std::uint8_t phase);

    /// Lays out the packet of the present phase for `slot`, of which the low byte is sent; all but the CRC. Returns
    /// false in a phase without a packet; then only the header was written.
    [[nodiscard]] bool layOutPacket(PacketBuffer& packet, std::int64_t slot);

    /// The phase of the last packet; its acknowledgement ends the transfer.
    [[nodiscard]] std::uint8_t lastPhase() const { return kind_.namePhase; }

    /// The phase of the packet that is sent next or has been sent last; 0 when idle.
    [[nodiscard]] std::uint8_t tick() const { return tick_; }
    void setIdle() { tick_ = 0; }

    /// The slot of the row has been cleared. A transfer that has sent its name already no longer fills it; one that has
    /// not will.
    void slotCleared(int row);

    [[nodiscard]] const TransferProgress& progress() const { return progress_; }
    [[nodiscard]] const PointBuffer& words() const { return words_; }
    [[nodiscard]] const NameBuffer& name() const { return name_; }

private:
    const TransferKind& kind_;
    std::uint8_t tick_ = 0;
    std::uint8_t lastSent_ = 0;
    PointBuffer words_{};
    NameBuffer name_{};
    TransferProgress progress_;
};

}  // namespace kelvo
