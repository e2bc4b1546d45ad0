// What the device and its file do not allow.

#include "host/configurationParts.h"
#include "host/parameterValue.h"

#include <algorithm>

namespace typdescriptor {

namespace {

constexpr std::size_t kMostTelegramBytes = 244;

void checkLimit(const char* name, const std::string& what, std::size_t value, std::size_t most, Configuration& result)
{
    if (value > most)
        addProblem(result, {name,
                            what + ": " + std::to_string(value) + ", allowed are at most " + std::to_string(most),
                            std::nullopt,
                            {},
                            std::to_string(value),
                            "at most " + std::to_string(most)});
}

/// A value that nobody gave: the file's own default may be one that the file does not allow.
void checkDefaults(const Draft& draft, const ParameterArea& area, unsigned slot)
{
    for (const Parameter& parameter : area.parameters) {
        const auto value = valueIn(parameter, area.bytes);
        const bool isKnown = !parameter.mayBeShortened && parameter.type != Parameter::kBinary;
        if (!isKnown || !value || draft.set.contains(&parameter) || parameter.allows(*value))
            continue;
        addProblem(draft.result, {"defaultOutOfRange",
                                  ownerName(slot) + ": " + parameter.name + ": its default " + std::to_string(*value) +
                                      " is out of its own range, " + parameter.allowedInWords(),
                                  slot, parameter.name, std::to_string(*value), parameter.allowedInWords()});
    }
}

/// What a type file has lost of its GSD file, where it may matter here.
void noteLosses(const Draft& draft)
{
    const Device& device = draft.device;
    std::vector<std::string>& notes = draft.result.notes;
    if (device.gsd)
        return;
    const auto mayBeShortened = [](const ParameterArea& area) {
        return std::any_of(area.parameters.begin(), area.parameters.end(),
                           [](const Parameter& parameter) { return parameter.mayBeShortened; });
    };
    const auto& slots = draft.result.slots;
    const bool isAnyShortened =
        mayBeShortened(draft.station) || std::any_of(slots.begin(), slots.end(), [&](const Slot& slot) {
            return std::any_of(slot.blocks.begin(), slot.blocks.end(), mayBeShortened);
        });
    if (isAnyShortened)
        notes.emplace_back("a type file keeps parameters of 32 bits in 16: where the GSD file has such ones, their "
                           "bytes are not these");
    if (device.isModular)
        notes.emplace_back("a type file keeps neither Max_Module nor SlotDefinition: what the GSD file allows in which "
                           "slot is not checked");
}

} // namespace

void checkLimits(const Draft& draft)
{
    const Device& device = draft.device;
    Configuration& result = draft.result;
    const auto limit = [](int value) { return static_cast<std::size_t>(std::max(value, 0)); };
    if (result.slots.empty())
        addProblem(result, {"noModule", "no module is chosen: the configuration is empty"});
    checkLimit("tooMuchInput", "bytes of input data", result.inputBytes, limit(device.data.maxInputLen), result);
    checkLimit("tooMuchOutput", "bytes of output data", result.outputBytes, limit(device.data.maxOutputLen), result);
    checkLimit("tooMuchData", "bytes of input and output data", result.inputBytes + result.outputBytes,
               limit(device.data.maxDataLen), result);
    checkLimit("tooManyParameters", "bytes of user parameters", result.userParameters.size(), device.parameterBudget(),
               result);
    checkLimit("tooLongConfiguration", "bytes of configuration", result.configuration.size(), kMostTelegramBytes,
               result);
    if (device.has(kFeatureEvenSlotNumber) && result.slots.size() % 2 != 0)
        addProblem(result,
                   {"oddSlotCount",
                    "modules: " + std::to_string(result.slots.size()) + ", the device needs an even number of them",
                    std::nullopt,
                    {},
                    std::to_string(result.slots.size()),
                    "an even number"});
    checkDefaults(draft, draft.station, 0);
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        for (const ParameterArea& block : result.slots[i].blocks)
            checkDefaults(draft, block, static_cast<unsigned>(i + 1));
    }
    if (device.gsd && device.gsd->hasSafetyParameters)
        result.notes.emplace_back(
            "the device has safety parameters (F_ keywords), which are not part of these telegrams");
    noteLosses(draft);
}

} // namespace typdescriptor
