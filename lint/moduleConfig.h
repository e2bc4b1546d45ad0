// What the identifier bytes of a module say: how many bytes of data it exchanges with the master.
//
// In: the bytes as they stand behind the module's name. Out: its identifiers one by one, the sums, and how many bytes
// the last identifier announces that are not there.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace typdescriptor::lint {

/// One identifier: its own byte, then what a special one announces (length bytes, manufacturer's bytes).
struct ModuleIdentifier {
    std::size_t first = 0; // position of its own byte in the list
    std::size_t count = 0; // bytes it takes, whether they are there or not
    unsigned inputBytes = 0;
    unsigned outputBytes = 0;
    bool isSpecial = false;
};

struct ModuleConfig {
    std::vector<ModuleIdentifier> identifiers;
    unsigned inputBytes = 0;
    unsigned outputBytes = 0;
    std::size_t missing = 0; // bytes that the last identifier announces and the list does not have
};

ModuleConfig decodeModuleConfig(std::span<const std::uint8_t> bytes);

} // namespace typdescriptor::lint
