// What a GSD file says of a device and a type file cannot hold.

#pragma once

#include "host/device.h"

#include <string>

namespace typdescriptor {

/// Adds to a device that was read from a GSD file what the library does not keep: names in full, revisions, DPV1, the
/// file's own Max_Module, slots, parameters of 32 bits, lists of values, help texts, texts of modules' channels.
/// @param gsd  the bytes of the file; where it does not say something, the device stays as it is
TYPDESCRIPTOR_HOST_API void addGsdFacts(Device& device, std::string gsd);

} // namespace typdescriptor
