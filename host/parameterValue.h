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
/// only one begins so. Names of type files are cut to 30 characters, so longer ones are compared by those, too; when
/// nothing fits, blanks do not count, for the library drops some of them to make a name fit.
/// @param kind  "module" or "parameter", of a slot; for the refusal
/// @throws ChoiceError  when none or several are meant
std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& kind,
                       unsigned slot);
/// How a name is to be written so that chooseName finds it again: itself, or "#n" where it means several.
std::string unmistakable(const std::vector<std::string>& names, std::size_t index);

/// The whole names of the device's modules.
std::vector<std::string> moduleNames(const Device& device);

/// The value that a person typed for a parameter of a slot: a number, or one of its value texts.
/// @throws ChoiceError  when it is none, or one that the device does not allow
std::int64_t parseValue(const Parameter& parameter, const std::string& text, unsigned slot);

/// Puts a value in range into the bytes.
/// @return false when the parameter does not lie in them
bool putValue(const Parameter& parameter, std::int64_t value, std::vector<std::uint8_t>& bytes);
/// Puts a number of one to four bytes, the high one first.
bool putNumber(std::uint32_t value, unsigned byte, unsigned byteCount, std::vector<std::uint8_t>& bytes);

/// The value that the bytes hold; nothing when the parameter does not lie in them.
std::optional<std::int64_t> valueIn(const Parameter& parameter, const std::vector<std::uint8_t>& bytes);

} // namespace typdescriptor
