// DP configuration identifiers, as checks, reader and generator take them: what a first byte begins, and how many bytes
// belong to it. (cfgDecoder.h has the whole interpreter.)

#pragma once

#include <cstddef>
#include <cstdint>

namespace typdescriptor::internal {

/// What an identifier byte begins.
enum IdentifierKind : int {
    kCfgInvalid = -1,
    kCfgEmpty = 0,
    kCfgGeneral = 1,
    kCfgCompact = 3,
    kCfgSpecial = 5, // its length and manufacturer bytes follow
};

/// Formats of an identifier value: the high 16 bits, over the byte or bytes in the low 16 bits.
enum CfgFormat : std::uint32_t {
    kFormatEmpty = 0,
    kFormatGeneral = 1,
    kFormatCompact = 3,
    kFormatSpecialInput = 6,  // input length byte in the low byte
    kFormatSpecialOutput = 7, // output length byte in the high byte
    kFormatSpecialBoth = 8,   // input length byte low, output length byte high
    kFormatSpecialNoLength = 11,
    kFormatNone = 0xFFFF,
};

/// A special-format identifier byte, taken apart.
struct CFG_SPECIAL_INFO {
    std::uint32_t mfrLength = 0; // 0 to 15
    std::uint32_t hasInput = 0;
    std::uint32_t hasOutput = 0;
    std::uint32_t kind = 0; // kFormatSpecial...

    /// Number of length bytes that follow the identifier byte: 0, 1 or 2.
    unsigned lengthBytes() const { return hasInput + hasOutput; }
    /// Number of manufacturer bytes that follow them; a length of 15 stands for none.
    unsigned mfrBytes() const { return mfrLength < 15 ? mfrLength : 0; }
};

inline constexpr std::uint32_t kIoBits = 0x30;  // clear in a special-format byte, set in a general one
inline constexpr std::uint32_t kMfrBits = 0x0F; // of a special-format byte: its manufacturer length

constexpr std::uint8_t bitOf(std::uint32_t byte, unsigned number)
{
    return static_cast<std::uint8_t>(byte >> number & 1U);
}

/// Whether a byte begins a special identifier in the formats of the standard; else an empty or a general one.
constexpr bool isSpecialByte(std::uint32_t byte)
{
    return byte != 0 && (byte & kIoBits) == 0;
}

/// Whether a byte is an identifier in the library's compact format.
bool isValidCompactByte(std::uint32_t byte);

/// @param normFormat  0: the library's compact format; else the formats of the standard, in which every byte begins one
IdentifierKind identifierKind(std::uint32_t byte, std::int32_t normFormat);

/// Takes a special-format identifier byte apart.
/// @return 0
int decodeSpecialByte(std::uint32_t byte, CFG_SPECIAL_INFO& info);

/// Length of the identifier that a byte begins in the formats of the standard: 1, or that of a special identifier with
/// its length and manufacturer bytes.
std::size_t identifierLength(std::uint32_t byte);

} // namespace typdescriptor::internal
