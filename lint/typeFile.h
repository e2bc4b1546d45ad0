#pragma once

// What the library's check says about a type file (.410), at its place in the file.

#include "lint/rule.h"

#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor::lint {

// At most one finding: the check stops at the first fault.
// `path` leads to a file with these bytes, for the library.
std::vector<Finding> checkTypeFile(std::string_view bytes, const std::string& path);

} // namespace typdescriptor::lint
