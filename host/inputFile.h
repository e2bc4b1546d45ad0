// Files that a device type may be read from.

#pragma once

#include <string>

namespace typdescriptor {

/// Whether the library takes a file of that name for a GSD file.
bool isGsdFileName(const std::string& name);
/// Whether a file of that name is worth a look in a folder: a GSD file or a ".410".
bool isDeviceFileName(const std::string& name);

/// Why a file cannot be read; empty when it can.
std::string whyUnreadable(const std::string& file);

/// The bytes of a file that can be read.
/// @param problem  receives why that is not possible; it stays empty otherwise
std::string bytesOfFile(const std::string& file, std::string& problem);

} // namespace typdescriptor
