#pragma once

// What the library says about a file: it is compiled, and what was compiled is checked. The library reads a file by its name;
// bytes that stand in no file are written into a temporary one.

#include "descriptor/cTypDescriptor.h"

#include <array>
#include <vector>

namespace typdescriptor::lint {

struct LibraryVerdict {
    static constexpr std::size_t kMandatory = 18;

    int code = 0;            // of the compilation, or of the check of what was compiled
    bool isCompiled = false; // the code is that of the check
    long line = 0;           // the physical line of a fault in the compilation, from 1
    std::vector<GSD_WARNING_ITEM> warnings;
    std::array<unsigned char, kMandatory> mandatory{}; // as getGsdFoundMandatories() gives them
};

} // namespace typdescriptor::lint
