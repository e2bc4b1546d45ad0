#include "host/configurationParts.h"
#include "host/hexBytes.h"
#include "host/parameterValue.h"
#include "host/readBack.h"
#include "host/telegramSplit.h"

#include <algorithm>

namespace typdescriptor {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::string valueWithText(const Parameter& parameter, std::int64_t value)
{
    const std::string text = parameter.textOf(value);
    return std::to_string(value) + (text.empty() ? "" : " (" + text + ')');
}

void addDifference(std::vector<Difference>& differences, const char* name, unsigned slot, const std::string& parameter,
                   const std::string& planned, const std::string& captured)
{
    if (planned == captured)
        return;
    const std::string what = ownerName(slot) + (parameter.empty() ? "" : ": " + parameter);
    differences.push_back(
        {name, what + ": planned is " + planned + ", captured " + captured, slot, parameter, planned, captured});
}

/// Two areas of one block: the parameters, then what is none.
void compareAreas(const ParameterArea& planned, const ParameterArea& captured, unsigned slot,
                  std::vector<Difference>& differences)
{
    for (const Parameter& parameter : captured.parameters) {
        const auto wanted = valueIn(parameter, planned.bytes);
        const auto found = valueIn(parameter, captured.bytes);
        if (wanted && found)
            addDifference(differences, "parameter", slot, parameter.name, valueWithText(parameter, *wanted),
                          valueWithText(parameter, *found));
    }
    const Bytes constant = constantBits(planned);
    for (std::size_t i = 0; i < std::min(planned.bytes.size(), captured.bytes.size()); ++i) {
        if (((planned.bytes[i] ^ captured.bytes[i]) & constant[i]) != 0)
            addDifference(differences, "constant", slot, "byte " + std::to_string(i), asHex({planned.bytes[i]}),
                          asHex({captured.bytes[i]}));
    }
}

Bytes wireOf(const std::vector<Identifier>& identifiers)
{
    Bytes wire;
    for (const Identifier& identifier : identifiers)
        wire.insert(wire.end(), identifier.wireBytes.begin(), identifier.wireBytes.end());
    return wire;
}

std::string nameWithBytes(const std::string& name, const std::vector<Identifier>& identifiers)
{
    return (name.empty() ? "no module of the device" : name) + " [" + asHex(wireOf(identifiers)) + ']';
}

void compareSlots(const Configuration& planned, const Capture& capture, std::vector<Difference>& differences)
{
    const std::string nothing = "nothing";
    for (std::size_t i = 0; i < std::max(planned.slots.size(), capture.slots.size()); ++i) {
        const auto number = static_cast<unsigned>(i + 1);
        const Slot* const wanted = i < planned.slots.size() ? &planned.slots[i] : nullptr;
        const CapturedSlot* const found = i < capture.slots.size() ? &capture.slots[i] : nullptr;
        const bool isSame = wanted != nullptr && found != nullptr && wanted->module == found->module &&
                            wireOf(wanted->identifiers) == wireOf(found->identifiers);
        if (!isSame) {
            addDifference(differences, "module", number, {},
                          wanted == nullptr ? nothing : nameWithBytes(wanted->name, wanted->identifiers),
                          found == nullptr ? nothing : nameWithBytes(found->name, found->identifiers));
            continue;
        }
        for (std::size_t block = 0; block < std::min(wanted->blocks.size(), found->blocks.size()); ++block)
            compareAreas(wanted->blocks[block], found->blocks[block], number, differences);
    }
}

void compareStandard(const StandardParameters& planned, const StandardParameters& captured,
                     std::vector<Difference>& differences)
{
    const auto yesOrNo = [](bool isSo) { return std::string(isSo ? "yes" : "no"); };
    const auto add = [&differences](const char* what, const std::string& wanted, const std::string& found) {
        addDifference(differences, "standard", 0, what, wanted, found);
    };
    add("watchdog in ms", std::to_string(planned.watchdogMilliseconds), std::to_string(captured.watchdogMilliseconds));
    add("min TSDR", std::to_string(planned.minTsdr), std::to_string(captured.minTsdr));
    add("groups", std::to_string(planned.groups), std::to_string(captured.groups));
    add("sync mode", yesOrNo(planned.isSync), yesOrNo(captured.isSync));
    add("freeze mode", yesOrNo(planned.isFreeze), yesOrNo(captured.isFreeze));
    add("locked for other masters", yesOrNo(planned.isLocked), yesOrNo(captured.isLocked));
}

} // namespace

std::vector<Difference> differencesOf(const Device& device, const Configuration& planned, const Capture& capture)
{
    std::vector<Difference> differences;
    const Capture wanted = readBack(device, {valuesOf(planned.configuration), valuesOf(planned.parameters)}, &planned);
    if (capture.standard && wanted.standard) {
        addDifference(differences, "identNumber", 0, "ident number", hexWord(wanted.identNumber.value_or(0)),
                      hexWord(capture.identNumber.value_or(0)));
        compareStandard(*wanted.standard, *capture.standard, differences);
        compareAreas(wanted.stationArea, capture.stationArea, 0, differences);
    }
    if (!capture.slots.empty())
        compareSlots(planned, capture, differences);
    return differences;
}

} // namespace typdescriptor
