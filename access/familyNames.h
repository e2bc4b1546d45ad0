// The device family of type files before major version 5, which follows from the station type; later ones name it in
// their header.

#pragma once

#include "typefile/stationTypes.h"

#include <array>
#include <string_view>

struct OldFamily {
    std::string_view stationType; // whole, or its beginning
    std::string_view family;
};

// The first row that fits counts. The last one fits every station type.
inline constexpr std::array<OldFamily, 8> kOldFamilies{{
    {typefile::kStationFixedProfile, "QX 410U   "},
    {typefile::kStationQmx, "DP        "},
    {typefile::kStationQx410k, "DP        "},
    {"QX410B", "QX 410B   "},
    {"QX410C", "QX 410C   "},
    {"QX410U", "QX 410U   "},
    {"PPROC", "KORVANT   "},
    {"", "DP-NORM   "},
}};
