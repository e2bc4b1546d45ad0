// Everything that a descriptor can be asked.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <string>

/// What every query says about all that there is, as bytes. Two forms of one device type give the same.
std::string answersOf(cTypDescriptor& device);
/// What the head line says; not found any more by a second check.
std::string orderNumberOf(cTypDescriptor& device);

/// Asks about what there is not: indexes below 0, just behind the last one, and far away.
void askOutside(cTypDescriptor& device);
