// A configuration as a person wants to read it.

#pragma once

#include "host/configuration.h"
#include "host/readBack.h"

#include <string>
#include <vector>

/// The slots, then both telegrams with a table of where each byte comes from.
std::string configurationText(const typdescriptor::Device& device, const typdescriptor::Configuration& configuration,
                              bool inColour);

/// What captured telegrams say, slot by slot, and what is otherwise than planned.
/// @param differences  null when nothing was planned
std::string captureText(const typdescriptor::Capture& capture,
                        const std::vector<typdescriptor::Difference>* differences, bool inColour);
