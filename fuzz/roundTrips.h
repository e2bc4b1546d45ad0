// The forms of one device type, and that they say the same.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <string>
#include <vector>

/// Whether a check can have this result.
bool isCheckCode(int result);
/// Checks a descriptor; its result must be one that a check has.
int check(cTypDescriptor& device);

/// The object image; empty when there is none.
std::vector<char> objectOf(const cTypDescriptor& device);
/// The type file in an object image.
std::string typeFileIn(const std::vector<char>& object);

/// Asks a device whose check succeeded everything, takes it through its other forms (object image, written type file,
/// host record, a second check) and requires the same answers wherever nothing may be lost. Returns the answers.
std::string takeRound(cTypDescriptor& device);
