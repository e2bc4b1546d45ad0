// Everything that a descriptor can be asked.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <string>

/// What every query says about all that there is, as bytes; two forms of one device type give the same. Asked as well is
/// about what there is not: indexes below 0, just behind the last one, and far away. The results must be those of a
/// device whose check succeeded.
std::string answersOf(cTypDescriptor& device);
/// The same of a device in any state, with any results. Allocates nothing but room for the answers.
void askAnything(cTypDescriptor& device, std::string& answers);
/// What the head line says; not found any more by a second check.
std::string orderNumberOf(cTypDescriptor& device);
