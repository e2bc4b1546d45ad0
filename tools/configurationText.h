// A configuration as a person wants to read it.

#pragma once

#include "host/configuration.h"

#include <string>

/// The slots, then both telegrams with a table of where each byte comes from.
std::string configurationText(const typdescriptor::Device& device, const typdescriptor::Configuration& configuration,
                              bool inColour);
