// The device of the one file that show, diag and config work on.

#pragma once

#include "host/device.h"
#include "tools/checkedFile.h"
#include "tools/exitStatus.h"

#include <string>

/// Builds, checks and reads the device type in a file. What is wrong goes to standard error; warnings do not.
/// @return kExitGood and the device; else the status to end with
ExitStatus loadDevice(const std::string& file, typdescriptor::Device& device);

/// Why the library refuses a file, with every other error of the file.
/// @param code  the library's
FileReport refusalReport(const std::string& file, int code);
