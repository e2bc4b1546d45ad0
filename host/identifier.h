// What a configuration identifier says: which data a module exchanges with the master.
//
// In: the identifier as the library hands it out, which keeps the bytes of the type file (input length before output
// length). Out: both directions decoded, the bytes as they go over the wire, and the whole in words.

#pragma once

#include "host/export.h"

#include "descriptor/cTypDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

/// The data of one direction.
struct IoData {
    unsigned count = 0; // of bytes or words
    bool inWords = false;
    bool isConsistent = false; // over the whole length; else unit by unit

    unsigned bytes() const { return inWords ? 2 * count : count; }
};

struct Identifier {
    enum Format { kEmpty, kGeneral, kCompact, kSpecial };

    Format format = kEmpty;
    std::optional<IoData> input;
    std::optional<IoData> output;
    std::vector<std::uint8_t> manufacturerBytes;
    std::vector<std::uint8_t> fileBytes; // as in the type file
    std::vector<std::uint8_t> wireBytes; // as in the configuration telegram

    unsigned inputBytes() const { return input ? input->bytes() : 0; }
    unsigned outputBytes() const { return output ? output->bytes() : 0; }
};

TYPDESCRIPTOR_HOST_API Identifier decodeIdentifier(const CSLAVE_SLOT_PRESET_TYPE& preset);

/// "general", "special", ...
TYPDESCRIPTOR_HOST_API const char* formatName(Identifier::Format format);
/// For example "8 bytes input, consistent over the whole length; 2 words output, consistent word by word".
TYPDESCRIPTOR_HOST_API std::string inWords(const Identifier& identifier);
} // namespace typdescriptor
