// Slot parameter blocks: the parameter bytes of one kind of module, and the structured parameters that name fields
// inside them. Blocks are not kept decoded: a device may have hundreds, and a host asks for one at a time.

#pragma once

#include "descriptor/records.h"
#include "typefile/scan.h"

#include <cstdint>
#include <vector>

namespace typdescriptor::internal {

struct SlotPrmBlock {
    int result; // 0, kErrSlotPrm, kErrPrmRecord or kErrPrmValue; the rest counts after 0 only
    int number = 0;
    std::vector<std::uint8_t> bytes{}; // its own, and the defaults of its structured parameters
    std::vector<_parastruct> entries{};
    Cursor list = nullptr; // its list of structured parameters, keyword records included
    Cursor end = nullptr;
};

/// Parses the block at a place in an image.
/// @param blockCount  highest number that a block may have
SlotPrmBlock checkSlotParaBlock(int blockCount, Cursor position);

/// The byte that two hexadecimal digits give.
unsigned char atohex(const char* text);

} // namespace typdescriptor::internal
