#pragma once

// Which statement of a file is to blame when the library's check refuses what it compiled from it. The check gives a code and
// no place; the entry is found here by the same limits.

#include "lint/finding.h"

#include <optional>
#include <string>
#include <vector>

namespace typdescriptor::lint {

class DeviceIndex;

struct Culprit {
    Span place;
    std::string why;
    std::vector<Note> notes = {};
};

// Nothing when no statement breaks a limit that leads to the code.
std::optional<Culprit> culpritOf(int code, const DeviceIndex& device);

} // namespace typdescriptor::lint
