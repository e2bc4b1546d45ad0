// Parameter areas: the bytes of the station or of one kind of module, and the structured parameters that name fields
// inside them.

#pragma once

#include "typefile/typeFile.h"

#include <array>
#include <cstdint>
#include <vector>

namespace typdescriptor::internal {

/// The parameter bytes that a run of records describes.
struct PrmArea {
    std::vector<std::uint8_t>& bytes;
    int first;                                   // byte index of the first of them
    std::array<bool, kMaxPrmTelegram> isTaken{}; // by a field, for each of them

    int length() const { return first + static_cast<int>(bytes.size()); } // with the bytes before the first
};

/// Reads `count` "PS" records and puts their defaults into the bytes.
/// @param entries  receives one entry for each of them, but for keyword records, which only an area from byte 0 has
/// @return 0, kErrPrmRecord or kErrPrmValue
int checkStructuredParameters(Cursor& p, int count, PrmArea& area, std::vector<_parastruct>& entries);

/// A slot parameter block. Blocks are not kept decoded: a device may have hundreds, and a host asks for one at a time.
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

} // namespace typdescriptor::internal
