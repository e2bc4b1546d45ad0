// The two telegrams that a master needs to run a slave: its user parameters and its configuration.
//
// In: the device, the modules chosen for its slots, and the parameter values set. Out: the bytes of both telegrams, each
// with where it comes from, and what the device does not allow. The user parameters are the bytes behind the standard
// part: those of the station, then the blocks of the plugged modules in slot order.

#pragma once

#include "tools/device.h"
#include "tools/parameterValue.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <vector>

struct TelegramByte {
    std::uint8_t value = 0;
    unsigned slot = 0; // from 1; 0 for the station
    std::string source;
};

/// A slot with what is in it. Slots count from 1, in the order of the telegrams.
struct Slot {
    enum Origin { kFree, kPreset, kChosen };

    std::string name;
    Origin origin = kFree;
    bool isFixed = false;
    std::vector<Identifier> identifiers;
    std::vector<ParameterArea> blocks;
};

struct Configuration {
    std::vector<Slot> slots;
    std::vector<TelegramByte> userParameters;
    std::vector<TelegramByte> configuration;
    unsigned inputBytes = 0;
    unsigned outputBytes = 0;
    std::vector<std::string> notes;
    std::vector<std::string> problems; // the telegrams are not what the device allows
};

/// @param slots   "N=MODULE", one for each slot
/// @param values  "SLOT:PARAM=VALUE"; slot 0 is the station
/// @throws ChoiceError  for a choice that cannot be understood, or a device without such telegrams
Configuration configure(const Device& device, const std::vector<std::string>& slots,
                        const std::vector<std::string>& values);

std::string configurationText(const Device& device, const Configuration& configuration, bool inColour);
nlohmann::ordered_json configurationJson(const Configuration& configuration);
