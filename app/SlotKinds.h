#pragma once

#include "SlotBank.h"

namespace kelvo {

extern const SlotKind kCabSlots;
extern const SlotKind kAmpSlots;

}  // namespace kelvo
