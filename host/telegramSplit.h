// Which modules the identifiers of a configuration telegram may stand for.
//
// A module has one identifier or several, and several modules may begin alike or have the same ones: every way of dividing
// the telegram is looked at, slot by slot, together with the parameter bytes that the modules would take. The best one
// breaks the fewest rules of the device; the modules that would do as well in its places are told.

#pragma once

#include "host/configuration.h"
#include "host/device.h"
#include "host/readBack.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace typdescriptor {

/// What may be in a slot.
struct SlotContent {
    enum Kind { kPreset, kModules, kFree, kUnknown };

    Kind kind = kUnknown;
    std::vector<std::size_t> modules; // kModules: all those with these identifiers and blocks
    std::vector<Identifier> identifiers;
    std::vector<const ParameterArea*> blocks;
};

struct TelegramSplit {
    std::vector<std::vector<SlotContent>> slots; // of each the best content, and those that do as well
    bool areParametersUsed = true;               // false when there were too many ways
};

/// The identifier that begins at a byte of a configuration telegram; of one that is cut, what is there.
Identifier identifierAt(const std::vector<std::uint8_t>& configuration, std::size_t offset);
/// How many bytes it has, or would have were it not cut.
std::size_t identifierLength(const std::vector<std::uint8_t>& configuration, std::size_t offset);

/// How well captured bytes fit a block.
struct BlockFit {
    std::size_t there = 0;  // bytes of it that are captured
    bool isConstant = true; // whether what is no parameter is as the device has it
    bool isAllowed = true;  // whether the parameters have values that the device allows
    bool isWhole = true;
};
/// The bits of an area that neither a parameter nor a slot number has, byte by byte.
std::vector<std::uint8_t> constantBits(const ParameterArea& area);
/// @param constant  the block's constantBits()
/// @param offset    of the block in the bytes
BlockFit fitOf(const ParameterArea& block, const std::vector<std::uint8_t>& constant,
               const std::vector<std::uint8_t>& bytes, std::size_t offset, unsigned slot);

/// @param userParameters  those of Set_Prm; null when it was not captured
/// @param planned         what is taken of several that do as well; may be null
TelegramSplit splitTelegram(const Device& device, const std::vector<std::uint8_t>& configuration,
                            const std::vector<std::uint8_t>* userParameters, const Configuration* planned);

} // namespace typdescriptor
