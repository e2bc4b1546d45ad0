// The device that show, diag and config work on: a file's, or the one of a folder that states an ident number.

#pragma once

#include "host/device.h"
#include "tools/checkedFile.h"
#include "tools/exitStatus.h"

#include <optional>
#include <string>

/// How the command line says which device is meant.
struct DeviceChoice {
    std::string path;         // a file, or a folder of files
    std::string ident;        // of the device in a folder, as it was typed; empty when it was not
    bool isRecursive = false; // folders of the folder as well

    bool isFolder() const;
};

/// "0x0C21" or "3105".
std::optional<unsigned> identFromArgument(const std::string& text);

/// Builds, checks and reads the device type that is meant. What is wrong goes to standard error; warnings do not.
/// @return kExitGood and the device; else the status to end with
ExitStatus loadDevice(const DeviceChoice& choice, typdescriptor::Device& device);
/// The same for the ident number that an answer on the bus has.
ExitStatus loadDevice(const DeviceChoice& folder, unsigned ident, typdescriptor::Device& device);

/// Why the library refuses a file, with every other error of the file.
/// @param code  the library's
FileReport refusalReport(const std::string& file, int code);
