#include "typefile/identifiers.h"

namespace typdescriptor::internal {

namespace {

constexpr std::uint32_t kInputOnly = 1; // directions of a compact identifier
constexpr std::uint32_t kOutputOnly = 2;

} // namespace

bool isValidCompactByte(std::uint32_t byte)
{
    const bool words = bitOf(byte, 2) != 0;
    const bool isOneByte = !words && (byte & 0x03) != 0x03;
    const bool inputIsWhole = bitOf(byte, 6) != 0;
    const bool outputIsWhole = bitOf(byte, 7) != 0;
    const std::uint32_t direction = byte >> 3 & 0x03;
    if (direction == 0 || (words && bitOf(byte, 5) != 0))
        return false;
    if (isOneByte && (inputIsWhole || outputIsWhole))
        return false;
    return !(direction == kInputOnly && outputIsWhole) && !(direction == kOutputOnly && inputIsWhole);
}

IdentifierKind identifierKind(std::uint32_t byte, std::int32_t normFormat)
{
    if (byte == 0)
        return kCfgEmpty;
    if (normFormat == 0)
        return isValidCompactByte(byte) ? kCfgCompact : kCfgInvalid;
    return isSpecialByte(byte) ? kCfgSpecial : kCfgGeneral;
}

int decodeSpecialByte(std::uint32_t byte, CFG_SPECIAL_INFO& info)
{
    info.mfrLength = byte & kMfrBits;
    info.hasInput = bitOf(byte, 6);
    info.hasOutput = bitOf(byte, 7);
    if (info.hasInput != 0)
        info.kind = info.hasOutput != 0 ? kFormatSpecialBoth : kFormatSpecialInput;
    else
        info.kind = info.hasOutput != 0 ? kFormatSpecialOutput : kFormatSpecialNoLength;
    return 0;
}

std::size_t identifierLength(std::uint32_t byte)
{
    if (!isSpecialByte(byte))
        return 1;
    CFG_SPECIAL_INFO special;
    decodeSpecialByte(byte, special);
    return std::size_t{1} + special.lengthBytes() + special.mfrBytes();
}

} // namespace typdescriptor::internal
