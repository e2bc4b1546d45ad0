// A device type from a file, or from a folder of files by its ident number.

#pragma once

#include "host/device.h"
#include "host/export.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace typdescriptor {

/// Why there is no device: the text names the file, the line where there is one, and what is wrong.
class TYPDESCRIPTOR_HOST_API LoadError : public std::runtime_error {
public:
    LoadError(const std::string& text, int resultCode, int gsdLine)
        : std::runtime_error(text), code(resultCode), line(gsdLine)
    {}

    int code; // the library's ResultCode; 0 when the file cannot be read at all
    int line; // of the GSD file, from 1; -1 when the fault has none
};

struct LoadOptions {
    /// Whether a GSD file is read a second time for what a type file has no place for (Device::gsd). Without it the
    /// device is what its compiled type file says.
    bool withGsdFacts = true;
};

/// The device type in a GSD file or a type file; the name tells which (see the constructors of cTypDescriptor).
/// @throws LoadError  when the file cannot be read, does not compile or is not valid
TYPDESCRIPTOR_HOST_API Device loadDevice(const std::string& file, LoadOptions options = {});

/// The ident number that a file states, whether or not the rest of it is valid; nothing when it states none or cannot be
/// read.
TYPDESCRIPTOR_HOST_API std::optional<unsigned> identNumberOf(const std::string& file);

struct FindOptions {
    bool isRecursive = false; // folders of the folder as well; links to folders are not followed
};

/// The GSD files and type files (".410") of a folder that state an ident number, in the order of their names: a device has
/// one for each language, and devices of one ident number may differ in their revision.
/// @throws LoadError  when the folder cannot be read
TYPDESCRIPTOR_HOST_API std::vector<std::string> findDevices(const std::string& folder, unsigned identNumber,
                                                            FindOptions options = {});

} // namespace typdescriptor
