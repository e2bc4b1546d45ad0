// The device as a person wants to read it, section by section.

#pragma once

#include "host/device.h"

#include <string>
#include <vector>

/// One section as text, with its heading.
std::string sectionText(const typdescriptor::Device& device, const std::string& section, bool inColour);
