#include "lint/moduleConfig.h"

namespace typdescriptor::lint {

namespace {

constexpr unsigned kInput = 1; // of the two direction bits, in every format
constexpr unsigned kOutput = 2;

/// Bytes of a length code, which counts units from one; bit 6 says whether a unit is a word.
unsigned dataBytes(unsigned byte, unsigned lengthMask)
{
    const unsigned units = (byte & lengthMask) + 1;
    return (byte & 0x40U) != 0 ? 2 * units : units;
}

ModuleIdentifier generalIdentifier(unsigned byte, std::size_t first)
{
    ModuleIdentifier identifier{.first = first, .count = 1};
    const unsigned direction = (byte >> 4U) & 3U;
    const unsigned bytes = dataBytes(byte, 0x0FU);
    identifier.inputBytes = (direction & kInput) != 0 ? bytes : 0;
    identifier.outputBytes = (direction & kOutput) != 0 ? bytes : 0;
    return identifier;
}

/// A special identifier: a length byte for each direction, the output's first, then the manufacturer's bytes.
ModuleIdentifier specialIdentifier(std::span<const std::uint8_t> bytes, std::size_t first)
{
    constexpr unsigned kNoManufacturerBytes = 15;
    constexpr unsigned kLengthMask = 0x3F;
    ModuleIdentifier identifier{.first = first, .count = 1, .isSpecial = true};
    const unsigned direction = bytes[first] >> 6U;
    const auto takeLength = [&](unsigned wanted, unsigned& length) {
        if ((direction & wanted) == 0)
            return;
        const std::size_t position = first + identifier.count;
        ++identifier.count;
        if (position < bytes.size())
            length = dataBytes(bytes[position], kLengthMask);
    };
    takeLength(kOutput, identifier.outputBytes);
    takeLength(kInput, identifier.inputBytes);
    const unsigned manufacturerBytes = bytes[first] & 0x0FU;
    if (manufacturerBytes != kNoManufacturerBytes)
        identifier.count += manufacturerBytes;
    return identifier;
}

} // namespace

ModuleConfig decodeModuleConfig(std::span<const std::uint8_t> bytes)
{
    constexpr unsigned kDirectionBits = 0x30;
    ModuleConfig config;
    std::size_t next = 0;
    while (next < bytes.size()) {
        const bool isGeneral = (bytes[next] & kDirectionBits) != 0;
        const ModuleIdentifier identifier =
            isGeneral ? generalIdentifier(bytes[next], next) : specialIdentifier(bytes, next);
        config.identifiers.push_back(identifier);
        config.inputBytes += identifier.inputBytes;
        config.outputBytes += identifier.outputBytes;
        next += identifier.count;
    }
    config.missing = next - bytes.size();
    return config;
}

} // namespace typdescriptor::lint
