#pragma once

#include <cstdint>

#include "TransferPackets.h"

namespace kelvo {

/// One import's way to the device.
struct TransferProgress {
    std::uint64_t number = 0;       ///< of the import, counted over both kinds; 0 for none
    std::uint8_t acknowledged = 0;  ///< packets in turn: what an earlier transfer left on its way does not count
};

/// What a transfer needs from one acknowledgement to the next. Main and receive thread, under the controller's lock.
struct TransferState {
    PointBuffer irdatabuff{};      ///< 24-bit points of the IR being sent.
    std::uint8_t IRTick = 0;       ///< 0 idle, 1 to 4 the packet being sent.
    bool isInportIR = false;       ///< Set by the first IR import, never cleared.
    NameBuffer SendIRFileName{};   ///< Zero-filled before each copy.
    PointBuffer ampdatabuff{};     ///< Unused: the amp data travels through AmpPiontBuff.
    std::uint8_t AMPTick = 0;      ///< 0 idle, 1 to 5 the packet being sent; stays 5 after a finished transfer.
    bool isInportAMP = false;      ///< Set by the first AMP import, never cleared.
    NameBuffer SendAMPFileName{};  ///< Zero-filled before each copy.
    TransferProgress IRProgress;
    TransferProgress AMPProgress;
    std::int64_t selectRow = 0;  ///< The slot, shared by both kinds: an import redirects a running transfer.
};

}  // namespace kelvo
