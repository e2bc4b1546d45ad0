// Everything that a descriptor can be asked, loaded or not.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <string>

/// Appends to `answers`, as bytes, what every query says, for each index that there is and those beside. It allocates
/// nothing itself while `answers` has room.
void ask(cTypDescriptor& device, std::string& answers);

/// The same as a text of its own. Two forms of one device type give the same.
std::string answersOf(cTypDescriptor& device);
