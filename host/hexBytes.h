// Bytes as people write them.

#pragma once

#include "host/export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

/// "0C 1F", for any bytes.
TYPDESCRIPTOR_HOST_API std::string asHex(const std::vector<std::uint8_t>& bytes);
/// "0x0C1F", for any word.
TYPDESCRIPTOR_HOST_API std::string hexWord(unsigned value);

/// The bytes that words of hexadecimal digits spell: "00 0C", "0x00,0x0C", "000C", "[00:0C]", "\x00\x0C", "00h 0Ch".
/// @param wrong  receives the first word that is none
/// @return nothing when a word is none
TYPDESCRIPTOR_HOST_API std::optional<std::vector<std::uint8_t>> parseHexBytes(const std::vector<std::string>& arguments,
                                                                              std::string& wrong);

} // namespace typdescriptor
