#pragma once

#include <string>
#include <vector>

#include "Kr310Memory.h"

namespace kelvo {

/// One line for each slot, the CAB slots first: CAB 27 "BRIGHT" crc32 a0a36dee
[[nodiscard]] std::vector<std::string> memoryLines(const Kr310Memory& memory);

}  // namespace kelvo
