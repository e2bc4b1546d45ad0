// Structured parameters: "PS" records, each naming a field of a parameter area.

#pragma once

#include "descriptor/records.h"
#include "typefile/scan.h"

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

/// Reads `count` records and puts their defaults into the bytes.
/// @param entries  receives one entry for each of them, but for keyword records, which only an area from byte 0 has
/// @return 0, kErrPrmRecord or kErrPrmValue
int checkStructuredParameters(Cursor& p, int count, PrmArea& area, std::vector<_parastruct>& entries);

/// Whether a text is a value of a data type.
/// @param type   0 bit, 1 bit string, 2 byte, 3 signed, 4 unsigned, 5 bit group
/// @param bits   of a bit group, for the limits of its value; 0 for a default
/// @param count  of a bit group: its binary digits, for a default
/// @return 1 or 0
int checkRanges(char type, const char* text, int bits, int count);

} // namespace typdescriptor::internal
