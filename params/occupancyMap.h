// Which bytes of a parameter area are taken by a structured parameter that does not share them, or by any that does.

#pragma once

#include "typefile/format.h"

#include <array>
#include <cstdint>

using OccupancyMap = std::array<std::uint8_t, typefile::kMaxPrmTelegram>;

inline constexpr std::uint8_t kByteFree = 255;
inline constexpr std::uint8_t kByteUsed = 0;

/// A map for an area of which nothing is used yet.
inline OccupancyMap freeOccupancyMap()
{
    OccupancyMap map;
    map.fill(kByteFree);
    return map;
}
