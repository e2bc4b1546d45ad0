// What a person decides about a slave: modules for its slots, values for its parameters, and the standard part of the
// parameter telegram. A plan is kept as JSON and turned into telegrams by configure().

#pragma once

#include "host/export.h"

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace typdescriptor {

struct Device;

/// What cannot be, or is not allowed, with all of it in the text.
struct Refusal {
    std::string name;                  // stable, for programs: "outOfRange"
    std::string text;                  // for people
    std::optional<unsigned> slot = {}; // 0 for the station; none where it is not about one
    std::string parameter = {};        // empty where it is not about one, as the next two
    std::string value = {};            // as it was given
    std::string allowed = {};          // in words
};

/// A choice of the user that cannot be: the text names it, says why, and what would be allowed.
struct TYPDESCRIPTOR_HOST_API ChoiceError : std::runtime_error {
    explicit ChoiceError(Refusal why) : std::runtime_error(why.text), refusal(std::move(why)) {}

    Refusal refusal;
};

struct ModuleChoice {
    unsigned slot = 0;  // from 1
    std::string module; // its name in any case, the beginning of it, or "#n" in the device's list, from 1
};

struct ValueChoice {
    unsigned slot = 0;     // from 1; 0 for the station
    std::string parameter; // its name in any case, the beginning of it, or "#n" in the slot's list, from 1
    std::string value;     // a number, decimal or with 0x, or one of the parameter's value texts
};

/// The seven bytes that every slave has in its parameter telegram, but for its ident number.
struct StandardParameters {
    unsigned watchdogMilliseconds = 0; // 0: the watchdog is off; at most 650250
    unsigned minTsdr = 11;             // in bit times, 11 to 255, or 0 to leave it as it is
    unsigned groups = 0;               // one bit each for groups 1 to 8
    bool isSync = false;
    bool isFreeze = false;
    bool isLocked = true; // for other masters
};

struct Plan {
    std::vector<ModuleChoice> modules;
    std::vector<ValueChoice> values;
    StandardParameters standard;
};

/// The plan with its modules and parameters by their whole names, or by "#n" where a name means several; values stay as
/// they are. Such a plan means the same when the device gets more modules.
/// @throws ChoiceError  for a choice that cannot be understood
TYPDESCRIPTOR_HOST_API Plan withWholeNames(const Device& device, const Plan& plan);

/// A plan as JSON text, with the device that it is for.
TYPDESCRIPTOR_HOST_API std::string toJson(const Plan& plan, const Device& device);
/// @throws ChoiceError  when the text is no plan, or one for another device
TYPDESCRIPTOR_HOST_API Plan planFromJson(const std::string& text, const Device& device);

} // namespace typdescriptor
