#include "host/configuration.h"

#include "host/configurationParts.h"
#include "host/parameterValue.h"

#include <algorithm>
#include <array>

namespace typdescriptor {

namespace {

/// The areas whose parameters a person can set in a slot; the station's for slot 0.
std::vector<ParameterArea*> areasOf(unsigned slot, Draft& draft)
{
    std::vector<ParameterArea*> areas;
    if (slot == 0)
        return {&draft.station};
    refuseEmptySlot(draft.result, slot);
    for (ParameterArea& block : draft.result.slots[slot - 1].blocks)
        areas.push_back(&block);
    return areas;
}

struct ParameterPlace {
    ParameterArea* area = nullptr;
    const Parameter* parameter = nullptr;
};

ParameterPlace chooseParameter(const std::vector<ParameterArea*>& areas, const ValueChoice& choice)
{
    std::vector<ParameterPlace> places;
    std::vector<std::string> names;
    for (ParameterArea* area : areas) {
        for (const Parameter& parameter : area->parameters) {
            places.push_back({area, &parameter});
            names.push_back(parameter.name);
        }
    }
    return places[chooseName(names, choice.parameter, "parameter", choice.slot)];
}

void setValues(const std::vector<ValueChoice>& choices, Draft& draft)
{
    for (const ValueChoice& choice : choices) {
        const ParameterPlace place = chooseParameter(areasOf(choice.slot, draft), choice);
        const std::string& name = place.parameter->name;
        const std::string what = ownerName(choice.slot) + ": " + name;
        if (!draft.set.insert(place.parameter).second)
            throw ChoiceError({"parameterTwice", what + " is set twice", choice.slot, name, choice.value});
        if (!putValue(*place.parameter, parseValue(*place.parameter, choice.value, choice.slot), place.area->bytes))
            throw ChoiceError({"outsideOfArea",
                               what + (choice.slot == 0 ? " lies behind the station's part of the parameters"
                                                        : " lies behind its block"),
                               choice.slot, name, choice.value});
    }
}

/// A type file gives the place of a slot number without its hundreds.
void putSlotNumbers(const Device& device, Configuration& result)
{
    constexpr unsigned kHundred = 100;
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        for (ParameterArea& block : result.slots[i].blocks) {
            for (const SlotNumberField& field : block.slotNumbers) {
                putNumber(static_cast<unsigned>(i + 1), field.byte, field.byteCount, block.bytes);
                if (!device.gsd && field.byte + kHundred < block.bytes.size())
                    result.notes.push_back(slotName(i + 1) + ": its slot number is put into byte " +
                                           std::to_string(field.byte) + " of the block; the type file may mean byte " +
                                           std::to_string(field.byte + kHundred));
            }
        }
    }
}

} // namespace

std::string slotName(std::size_t number)
{
    return "slot " + std::to_string(number);
}

std::string ownerName(unsigned slot)
{
    return slot == 0 ? "station" : slotName(slot);
}

void refuseEmptySlot(const Configuration& configuration, unsigned slot)
{
    if (slot > configuration.slots.size())
        throw ChoiceError({"emptySlot", slotName(slot) + ": nothing is in this slot", slot});
}

void addProblem(Configuration& result, Refusal why)
{
    result.problems.push_back(why.text);
    result.refusals.push_back(std::move(why));
}

void refuseOtherStations(const Device& device)
{
    if (device.isKgp())
        throw ChoiceError({"kgpStation", "a KGP station names its modules by number: it has no configuration telegram "
                                         "of identifiers"});
    if (device.isCategoryII)
        throw ChoiceError(
            {"otherStation", "a station of type " + device.stationType + " has no configuration telegram"});
}

std::vector<std::uint8_t> valuesOf(const std::vector<TelegramByte>& telegram)
{
    std::vector<std::uint8_t> values;
    values.reserve(telegram.size());
    for (const TelegramByte& byte : telegram)
        values.push_back(byte.value);
    return values;
}

const char* originName(Slot::Origin origin)
{
    constexpr std::array<const char*, 3> kNames = {"free", "preset", "chosen"};
    return kNames.at(static_cast<std::size_t>(origin));
}

Configuration configure(const Device& device, const Plan& plan)
{
    refuseOtherStations(device);
    Configuration result;
    fillSlots(device, plan.modules, result);
    Draft draft{device, result, device.parameters};
    setValues(plan.values, draft);
    putSlotNumbers(device, result);
    buildTelegrams(draft, plan.standard);
    checkLimits(draft);
    return result;
}

} // namespace typdescriptor
