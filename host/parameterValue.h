// Values that a person sets: names, numbers and value texts as they are typed, brought into parameter bytes.

#pragma once

#include "host/device.h"
#include "host/plan.h"

#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

/// The names that a text may mean, by their indexes: see chooseName.
std::vector<std::size_t> namesFor(const std::vector<std::string>& names, const std::string& wanted);
/// The one of several names that a person means: "#n" counts from 1; else the name in any case, or its beginning when
/// only one begins so. Names of devices are cut to 30 characters, so longer ones are compared by those; when nothing
/// fits, blanks do not count, for the library drops some of them to make a name fit.
/// @param what  what is looked for, for the message: "slot 3: module"
std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& what);

/// The value that a person typed: a number, or one of the parameter's value texts.
std::int64_t parseValue(const Parameter& parameter, const std::string& text, const std::string& what);

/// Puts a value in range into the bytes.
/// @return false when the parameter does not lie in them
bool putValue(const Parameter& parameter, std::int64_t value, std::vector<std::uint8_t>& bytes);
/// Puts a number of one to four bytes, the high one first.
bool putNumber(std::uint32_t value, unsigned byte, unsigned byteCount, std::vector<std::uint8_t>& bytes);

/// The value that the bytes hold; nothing when the parameter does not lie in them.
std::optional<std::int64_t> valueIn(const Parameter& parameter, const std::vector<std::uint8_t>& bytes);

} // namespace typdescriptor
