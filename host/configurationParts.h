// The steps of configure(), each of which adds to a configuration that is being made.

#pragma once

#include "host/configuration.h"

#include <set>

namespace typdescriptor {

/// "slot 3".
std::string slotName(std::size_t number);
/// "station" for slot 0.
std::string ownerName(unsigned slot);

/// @throws ChoiceError  for a device without these telegrams
void refuseOtherStations(const Device& device);

/// @throws ChoiceError  for a slot behind the last one
void refuseEmptySlot(const Configuration& configuration, unsigned slot);

/// What a preset is called.
std::string nameOf(const PresetSlot& preset);

/// What the file's SlotDefinition has against a module in a slot; often nothing.
std::vector<Refusal> slotRefusals(const Device& device, unsigned slot, const Module& module);

/// Adds a refusal that does not end the work.
void addProblem(Configuration& result, Refusal why);

/// A configuration in the making.
struct Draft {
    const Device& device;
    Configuration& result;
    ParameterArea station = {};
    std::set<const Parameter*> set = {}; // those that the plan gives a value
};

/// Puts the presets, the modules that slots have by themselves and the chosen ones into the slots.
void fillSlots(const Device& device, const std::vector<ModuleChoice>& choices, Configuration& result);
/// What the device and its file do not allow.
void checkLimits(const Draft& draft);
/// Makes both telegrams.
/// @throws ChoiceError  for a standard part that cannot be
void buildTelegrams(const Draft& draft, const StandardParameters& standard);

} // namespace typdescriptor
