#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "SlotContent.h"

namespace kelvo {

/// LENGTH of a packet of words and of a deletion: command, slot, phase and 512 bytes.
inline constexpr std::uint16_t kDataLength = 515;
/// LENGTH of a packet with a name: command, slot, phase and 10 bytes.
inline constexpr std::uint16_t kNameLengthField = 13;

/// The largest frame sent to the device: LENGTH 515 and six bytes around it.
inline constexpr std::size_t kPacketSize = 521;

using PacketBuffer = std::array<std::uint8_t, kPacketSize>;

/// Writes the header, a LENGTH of 515 and the command. Does not change any other byte.
void layOutHeader(PacketBuffer& packet, std::uint8_t command);

/// How one kind of data is sent. Phases 1 to namePhase - 1 carry one byte of every word each, the most significant one
/// first; namePhase carries the name.
struct TransferKind {
    std::uint8_t command;
    std::uint8_t namePhase;
};

extern const TransferKind kIRTransfer;
extern const TransferKind kAMPTransfer;

/// The progress of one transfer. Aligned to its size, so that an atomic copy is lock-free with clang++ too.
struct alignas(8) TransferProgress {
    std::uint32_t number = 0;  ///< of the transfer; 0 before the first
    std::int16_t row = -1;     ///< the row whose slot it fills; -1 for none
    /// Packets that have been acknowledged in order. Late acknowledgements of an earlier transfer do not count.
    std::uint8_t acknowledged = 0;
    /// A packet was sent out of order or to another slot, so the slot may not contain this file afterwards.
    bool isSpoiled = false;

    bool operator==(const TransferProgress&) const = default;
};

/// A transfer of 512 words and a name into a slot. Each packet is sent after the acknowledgement of the previous one.
/// The caller sends the packets. One thread at a time.
class Transfer {
public:
    explicit Transfer(const TransferKind& kind) : kind_(kind) {}

    /// Starts with the first packet, also while an earlier transfer is unfinished.
    void begin(std::uint32_t number, int row, const PointBuffer& words, const NameBuffer& name);

    /// The device has acknowledged a phase. The packet of the following phase becomes the next one, even if
    /// acknowledgements come out of order. Returns false when no packet follows: after the name, and for a phase that
    /// does not exist.
    [[nodiscard]] bool acknowledge(std::uint8_t phase);

    /// Writes the packet of the current phase without its CRC. Only the low byte of `slot` is sent. Returns false in a
    /// phase without a packet, after writing only the header.
    [[nodiscard]] bool layOutPacket(PacketBuffer& packet, std::int64_t slot);

    /// The phase of the last packet; its acknowledgement ends the transfer.
    [[nodiscard]] std::uint8_t lastPhase() const { return kind_.namePhase; }

    /// The current phase: that of the packet to send next or sent last; 0 when idle.
    [[nodiscard]] std::uint8_t tick() const { return tick_; }
    void setIdle() { tick_ = 0; }

    /// The slot of the row has been cleared. If the name has been sent already, the transfer no longer fills a slot;
    /// otherwise it still will.
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
