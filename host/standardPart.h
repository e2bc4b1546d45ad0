// The first bytes of a parameter telegram, which every slave has.

#pragma once

#include "host/device.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace typdescriptor {

/// Behind the station status: two watchdog factors, min TSDR, ident number (high byte first), groups.
constexpr std::size_t kStandardBytes = 7;
constexpr std::size_t kDpv1Bytes = 3; // of the user parameters of a DPV1 slave

// The bits of the station status. Of lock and unlock the second one counts when both are set.
constexpr std::uint8_t kLock = 0x80;
constexpr std::uint8_t kUnlock = 0x40;
constexpr std::uint8_t kSync = 0x20;
constexpr std::uint8_t kFreeze = 0x10;
constexpr std::uint8_t kWatchdog = 0x08;

constexpr unsigned kLeastMinTsdr = 11; // in bit times; 0 leaves it as it is
constexpr const char* kAllowedMinTsdr = "11 to 255 bit times, or 0";

/// The milliseconds of one unit of the watchdog, which the first user parameter of a DPV1 slave chooses.
unsigned watchdogBase(const Device& device, const std::vector<std::uint8_t>& userParameters);

} // namespace typdescriptor
