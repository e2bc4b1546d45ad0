// The device as a person wants to read it, section by section.

#pragma once

#include "tools/device.h"

#include <string>
#include <vector>

/// The names of the sections, in their order; the same in text and JSON.
const std::vector<std::string>& sectionNames();

/// One section as text, with its heading.
std::string sectionText(const Device& device, const std::string& section, bool inColour);
