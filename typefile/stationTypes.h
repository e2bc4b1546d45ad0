// The station types that a header may name, one row each.

#pragma once

#include "typefile/format.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

/// Numbers as hosts know them.
enum StationCategory : std::int32_t {
    kCategoryI = 0,
    kCategoryII = 1,
    kCategoryUnknown = 65535,
};

/// What rules of its own a station has.
enum class StationKind : std::uint8_t {
    kPlain,
    kFixedProfile, // one hardware profile
    kQx410k,       // fixed category-II values
    kDpAsi,        // a gateway
    kKgp,          // numbered slots
    kBareName,     // a name without its blanks
};

struct Station {
    std::string_view name; // the whole field, blank-padded
    StationCategory category;
    StationKind kind;
    std::string_view oldFamily; // of files before major version 5, whose header names none
};

inline constexpr std::string_view kStationDpsClass1 = "DPS/CLASS1     ";
inline constexpr std::string_view kStationDpAsi = "DPASI/GATE     ";
inline constexpr std::string_view kStationKgp = "KGP/QX410L     ";
inline constexpr std::string_view kStationQmx = "QMX            ";

// A field padded with blanks never matches a bare name. The last row stands for every other text.
inline constexpr std::array<Station, 22> kStations{{
    {"QX410B/24V/QMX ", kCategoryII, StationKind::kPlain, "QX 410B   "},
    {"QX410C/24V/QMX ", kCategoryII, StationKind::kPlain, "QX 410C   "},
    {"QX410K         ", kCategoryII, StationKind::kQx410k, "DP        "},
    {kStationQmx, kCategoryII, StationKind::kPlain, "DP        "},
    {"QX410B/24V/DP  ", kCategoryI, StationKind::kPlain, "QX 410B   "},
    {"QX410B/AC      ", kCategoryI, StationKind::kPlain, "QX 410B   "},
    {"QX410B/ANALOG  ", kCategoryI, StationKind::kPlain, "QX 410B   "},
    {"QX410C/24V/DP  ", kCategoryI, StationKind::kPlain, "QX 410C   "},
    {"QX410C/AC      ", kCategoryI, StationKind::kPlain, "QX 410C   "},
    {"QX410C/ANALOG  ", kCategoryI, StationKind::kPlain, "QX 410C   "},
    {"QX410U/VRC     ", kCategoryI, StationKind::kFixedProfile, "QX 410U   "},
    {"QX410U/DP      ", kCategoryI, StationKind::kPlain, "QX 410U   "},
    {"PPROCDPS       ", kCategoryI, StationKind::kPlain, "KORVANT   "},
    {"PPROCDPS/GATE  ", kCategoryI, StationKind::kPlain, "KORVANT   "},
    {kStationDpsClass1, kCategoryI, StationKind::kPlain, "DP-NORM   "},
    {"DPS/CLASS2     ", kCategoryI, StationKind::kPlain, "DP-NORM   "},
    {"DPS/CLASS3     ", kCategoryI, StationKind::kPlain, "DP-NORM   "},
    {kStationDpAsi, kCategoryI, StationKind::kDpAsi, "DP-NORM   "},
    {kStationKgp, kCategoryI, StationKind::kKgp, "DP-NORM   "},
    {"QX410B", kCategoryUnknown, StationKind::kBareName, "QX 410B   "},
    {"QX410C", kCategoryUnknown, StationKind::kBareName, "QX 410C   "},
    {"", kCategoryUnknown, StationKind::kPlain, "DP-NORM   "},
}};

/// The row of a station type.
constexpr const Station& stationOf(std::string_view name)
{
    return *std::find_if(kStations.begin(), kStations.end() - 1,
                         [name](const Station& station) { return station.name == name; });
}

} // namespace typdescriptor::internal
