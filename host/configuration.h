// The two telegrams that a master needs to run a slave: its parameters (Set_Prm) and its configuration (Chk_Cfg).
//
// In: the device and what a person has decided (plan.h). Out: the bytes of both telegrams, each with where it comes from,
// and what the device does not allow. The parameters are the seven standard bytes, then the user parameters: those of the
// station, then the blocks of the plugged modules in slot order.

#pragma once

#include "host/device.h"
#include "host/plan.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

struct TelegramByte {
    std::uint8_t value = 0;
    unsigned slot = 0; // from 1; 0 for the station
    std::string source;
};

/// The bytes alone.
TYPDESCRIPTOR_HOST_API std::vector<std::uint8_t> valuesOf(const std::vector<TelegramByte>& telegram);

/// A slot with what is in it. Slots count from 1, in the order of the telegrams.
struct Slot {
    enum Origin { kFree, kPreset, kChosen };

    std::string name;     // of what is in it, in full where the device knows it
    std::string slotName; // of the place itself, from a GSD file's SlotDefinition; often empty
    Origin origin = kFree;
    bool isFixed = false;
    std::optional<std::size_t> module = {}; // in Device::modules; none for what only the presets have
    std::vector<Identifier> identifiers;
    std::vector<ParameterArea> blocks;
    std::vector<ValueText> channelTexts; // of its channels' maker-specific errors
};

/// "free", "preset", "chosen".
TYPDESCRIPTOR_HOST_API const char* originName(Slot::Origin origin);

struct Configuration {
    std::vector<Slot> slots;
    std::vector<TelegramByte> parameters;     // Set_Prm, whole
    std::vector<TelegramByte> userParameters; // of them, those behind the standard ones
    std::vector<TelegramByte> configuration;  // Chk_Cfg
    unsigned inputBytes = 0;
    unsigned outputBytes = 0;
    std::vector<std::string> notes;
    std::vector<std::string> problems; // the telegrams are not what the device allows
    std::vector<Refusal> refusals;     // the same, taken apart: one for each problem, in their order
};

/// A problem is what the device does not allow; the telegrams are made all the same.
/// @throws ChoiceError  for a choice that cannot be understood, or a device without such telegrams
TYPDESCRIPTOR_HOST_API Configuration configure(const Device& device, const Plan& plan);

/// The choices of a command line, put over a plan: a module takes the place of the one that was chosen for its slot, whose
/// values go with it; a value takes that of the same parameter. Names may hold "=" and ":" themselves.
/// @param slots   "N=MODULE", one for each slot
/// @param values  "SLOT:PARAM=VALUE"; slot 0 is the station
/// @param base    the plan that is changed; its standard part stays
/// @throws ChoiceError  for a text of another form, or a module or parameter that is not there
TYPDESCRIPTOR_HOST_API Plan planFromArguments(const Device& device, const std::vector<std::string>& slots,
                                              const std::vector<std::string>& values, const Plan& base = {});

} // namespace typdescriptor
