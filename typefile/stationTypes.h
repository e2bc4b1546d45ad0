// The station types that a header may name, as whole blank-padded fields.

#pragma once

#include "typefile/format.h"

#include <array>
#include <string_view>

namespace typdescriptor::internal {

inline constexpr std::string_view kStationDpsClass1 = "DPS/CLASS1     ";
inline constexpr std::string_view kStationDpAsi = "DPASI/GATE     ";
inline constexpr std::string_view kStationKgp = "KGP/QX410L     ";
inline constexpr std::string_view kStationFixedProfile = "QX410U/VRC     ";
inline constexpr std::string_view kStationQx410k = "QX410K         ";
inline constexpr std::string_view kStationQmx = "QMX            ";

inline constexpr std::array<std::string_view, 4> kStationsCategoryII{
    "QX410B/24V/QMX ",
    "QX410C/24V/QMX ",
    kStationQx410k,
    kStationQmx,
};

inline constexpr std::array<std::string_view, 15> kStationsCategoryI{
    "QX410B/24V/DP  ", "QX410B/AC      ",    "QX410B/ANALOG  ", "QX410C/24V/DP  ", "QX410C/AC      ",
    "QX410C/ANALOG  ", kStationFixedProfile, "QX410U/DP      ", "PPROCDPS       ", "PPROCDPS/GATE  ",
    kStationDpsClass1, "DPS/CLASS2     ",    "DPS/CLASS3     ", kStationDpAsi,     kStationKgp,
};

} // namespace typdescriptor::internal
