// Values that a person sets: names, numbers and value texts as they are typed, brought into parameter bytes.

#pragma once

#include "tools/device.h"

#include <stdexcept>
#include <string>
#include <vector>

/// A choice of the user that cannot be: the text names it and says why.
struct ChoiceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The one of several names that a person means: "#n" counts from 1; else the name in any case, or its beginning when
/// only one begins so. Names of devices are cut to 30 characters, so longer ones are compared by those; when nothing
/// fits, blanks do not count, for the library drops some of them to make a name fit.
/// @param what  what is looked for, for the message: "slot 3: module"
std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& what);

/// The value that a person typed: a number, or one of the parameter's value texts.
long parseValue(const Parameter& parameter, const std::string& text, const std::string& what);

/// Puts a value in range into the bytes.
/// @return false when the parameter does not lie in them
bool putValue(const Parameter& parameter, long value, std::vector<std::uint8_t>& bytes);
/// Puts an unsigned number of one or two bytes, the high one first.
bool putNumber(unsigned value, unsigned byte, unsigned byteCount, std::vector<std::uint8_t>& bytes);
