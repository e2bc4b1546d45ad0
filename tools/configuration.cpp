#include "tools/configuration.h"

#include <algorithm>
#include <set>

namespace {

constexpr std::size_t kMostTelegramBytes = 244;

std::string slotName(std::size_t number)
{
    return "slot " + std::to_string(number);
}

/// The number ahead of a mark, and what follows the mark.
struct Choice {
    unsigned slot = 0;
    std::string rest;
};

Choice splitChoice(const std::string& text, char mark, const std::string& form)
{
    constexpr std::size_t kMostDigits = 4;
    const std::size_t end = text.find(mark);
    const bool isNumber =
        end != std::string::npos && end > 0 && end <= kMostDigits && text.find_first_not_of("0123456789") == end;
    if (!isNumber)
        throw ChoiceError('"' + text + "\": expected " + form);
    return {static_cast<unsigned>(std::stoul(text.substr(0, end))), text.substr(end + 1)};
}

void refuseOtherStations(const Device& device)
{
    if (device.isKgp())
        throw ChoiceError("a KGP station names its modules by number: it has no configuration telegram of identifiers");
    if (device.isCategoryII)
        throw ChoiceError("a station of type " + device.stationType + " has no configuration telegram");
}

void fillPart(const Device& device, const Identifier& identifier, int block, Slot& slot)
{
    if (identifier.format == Identifier::kCompact)
        throw ChoiceError("identifier " + asHex(identifier.fileBytes) +
                          " is in the compact format, which has no form in the telegram");
    slot.identifiers.push_back(identifier);
    if (block >= 0 && static_cast<std::size_t>(block) < device.blocks.size())
        slot.blocks.push_back(device.blocks[static_cast<std::size_t>(block)]);
}

std::vector<Slot> presetSlots(const Device& device)
{
    std::vector<Slot> slots;
    for (const PresetSlot& preset : device.presetSlots) {
        Slot slot;
        slot.name = preset.orderNumber.empty() ? "preset" : preset.orderNumber;
        slot.origin = Slot::kPreset;
        slot.isFixed = preset.isFixed;
        fillPart(device, preset.identifier, preset.block, slot);
        slots.push_back(std::move(slot));
    }
    return slots;
}

Slot slotWith(const Device& device, const Module& module)
{
    Slot slot;
    slot.name = module.name;
    slot.origin = Slot::kChosen;
    for (const ModulePart& part : module.parts)
        fillPart(device, part.identifier, part.block, slot);
    return slot;
}

/// A place that nothing was chosen for, ahead of one that something was.
Slot freeSlot()
{
    Slot slot;
    slot.name = "free place";
    slot.identifiers.push_back(decodeIdentifier(CSLAVE_SLOT_PRESET_TYPE{}));
    return slot;
}

void plugModules(const Device& device, const std::vector<std::string>& choices, Configuration& result)
{
    std::vector<std::string> names;
    for (const Module& module : device.modules)
        names.push_back(module.name);
    const std::size_t preset = device.presetSlots.size();
    const std::size_t most = std::max(static_cast<std::size_t>(std::max(device.data.maxModule, 0)), preset);
    std::set<unsigned> taken;
    for (const std::string& text : choices) {
        const Choice choice = splitChoice(text, '=', "N=MODULE");
        const std::string what = slotName(choice.slot);
        if (choice.slot < 1 || choice.slot > most)
            throw ChoiceError(what + ": the device has slots 1 to " + std::to_string(most));
        if (!taken.insert(choice.slot).second)
            throw ChoiceError(what + " is given twice");
        const Module& module = device.modules.empty()
                                   ? throw ChoiceError(what + ": the device has no modules to choose from")
                                   : device.modules[chooseName(names, choice.rest, what + ": module")];
        if (choice.slot > result.slots.size())
            result.slots.resize(choice.slot, freeSlot());
        Slot& slot = result.slots[choice.slot - 1];
        if (slot.isFixed)
            result.problems.push_back(what + " is fixed: " + module.name + " cannot take the place of what is there");
        else
            slot = slotWith(device, module);
    }
    for (std::size_t i = preset; i < result.slots.size(); ++i) {
        if (result.slots[i].origin == Slot::kFree)
            result.notes.push_back(slotName(i + 1) + " is left free and takes an empty identifier");
    }
}

/// The areas whose parameters a person can set in a slot; the station's for slot 0.
std::vector<ParameterArea*> areasOf(unsigned slot, ParameterArea& station, Configuration& result)
{
    std::vector<ParameterArea*> areas;
    if (slot == 0)
        return {&station};
    if (slot > result.slots.size())
        throw ChoiceError(slotName(slot) + ": nothing is in this slot");
    for (ParameterArea& block : result.slots[slot - 1].blocks)
        areas.push_back(&block);
    return areas;
}

struct ParameterPlace {
    ParameterArea* area = nullptr;
    const Parameter* parameter = nullptr;
};

/// Names may hold "=": the text is split at the first one that gives a name.
ParameterPlace chooseParameter(const std::vector<ParameterArea*>& areas, const std::string& text,
                               const std::string& what, std::string& value)
{
    std::vector<ParameterPlace> places;
    std::vector<std::string> names;
    for (ParameterArea* area : areas) {
        for (const Parameter& parameter : area->parameters) {
            places.push_back({area, &parameter});
            names.push_back(parameter.name);
        }
    }
    if (places.empty())
        throw ChoiceError(what + " has no parameters");
    std::size_t mark = text.find('=');
    if (mark == std::string::npos)
        throw ChoiceError('"' + text + "\": expected SLOT:PARAM=VALUE");
    for (;;) {
        const std::size_t next = text.find('=', mark + 1);
        value = text.substr(mark + 1);
        try {
            return places[chooseName(names, text.substr(0, mark), what + ": parameter")];
        } catch (const ChoiceError&) {
            if (next == std::string::npos)
                throw;
        }
        mark = next;
    }
}

void setValues(const std::vector<std::string>& choices, ParameterArea& station, Configuration& result)
{
    for (const std::string& text : choices) {
        const Choice choice = splitChoice(text, ':', "SLOT:PARAM=VALUE");
        const std::string what = choice.slot == 0 ? "station" : slotName(choice.slot);
        std::string value;
        const ParameterPlace place = chooseParameter(areasOf(choice.slot, station, result), choice.rest, what, value);
        const std::string name = what + ": " + place.parameter->name;
        if (!putValue(*place.parameter, parseValue(*place.parameter, value, name), place.area->bytes))
            throw ChoiceError(name + (choice.slot == 0 ? " lies behind the station's part of the parameters"
                                                       : " lies behind its block"));
    }
}

/// The library gives the place of a slot number without its hundreds.
void putSlotNumbers(Configuration& result)
{
    constexpr unsigned kHundred = 100;
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        for (ParameterArea& block : result.slots[i].blocks) {
            for (const SlotNumberField& field : block.slotNumbers) {
                putNumber(static_cast<unsigned>(i + 1), field.byte, field.byteCount, block.bytes);
                if (field.byte + kHundred < block.bytes.size())
                    result.notes.push_back(slotName(i + 1) + ": its slot number is put into byte " +
                                           std::to_string(field.byte) + " of the block; the type file may mean byte " +
                                           std::to_string(field.byte + kHundred));
            }
        }
    }
}

bool covers(const Parameter& parameter, std::size_t byte)
{
    return byte >= parameter.byte && byte < parameter.byte + parameter.byteCount();
}

/// What a byte of an area holds, by name.
std::string contentOf(const ParameterArea& area, std::size_t byte)
{
    std::string content;
    for (const Parameter& parameter : area.parameters) {
        if (covers(parameter, byte))
            content += (content.empty() ? "" : "; ") + parameter.name;
    }
    for (const SlotNumberField& field : area.slotNumbers) {
        if (byte >= field.byte && byte < field.byte + field.byteCount)
            content += content.empty() ? "slot number" : "; slot number";
    }
    return content.empty() ? "constant" : content;
}

void appendArea(const ParameterArea& area, unsigned slot, const std::string& owner, std::vector<TelegramByte>& telegram)
{
    for (std::size_t i = 0; i < area.bytes.size(); ++i)
        telegram.push_back({area.bytes[i], slot, owner + ": " + contentOf(area, i)});
}

/// What a byte of an identifier is on the wire.
std::string roleOf(const Identifier& identifier, std::size_t byte)
{
    if (byte == 0)
        return "identifier, " + inWords(identifier);
    std::size_t position = 1;
    if (identifier.output && byte == position++)
        return "output length";
    if (identifier.input && byte == position++)
        return "input length";
    return "manufacturer's byte " + std::to_string(byte - position + 1);
}

void buildTelegrams(const ParameterArea& station, Configuration& result)
{
    appendArea(station, 0, "station", result.userParameters);
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        const Slot& slot = result.slots[i];
        const auto number = static_cast<unsigned>(i + 1);
        for (const ParameterArea& block : slot.blocks)
            appendArea(block, number, slot.name, result.userParameters);
        for (const Identifier& identifier : slot.identifiers) {
            for (std::size_t byte = 0; byte < identifier.wireBytes.size(); ++byte)
                result.configuration.push_back(
                    {identifier.wireBytes[byte], number, slot.name + ": " + roleOf(identifier, byte)});
            result.inputBytes += identifier.inputBytes();
            result.outputBytes += identifier.outputBytes();
        }
    }
}

void checkLimit(const std::string& what, std::size_t value, std::size_t most, Configuration& result)
{
    if (value > most)
        result.problems.push_back(what + ": " + std::to_string(value) + ", the device allows at most " +
                                  std::to_string(most));
}

void checkLimits(const Device& device, Configuration& result)
{
    const auto limit = [](int value) { return static_cast<std::size_t>(std::max(value, 0)); };
    if (result.slots.empty())
        result.problems.emplace_back("no module is chosen: the configuration is empty");
    checkLimit("bytes of input data", result.inputBytes, limit(device.data.maxInputLen), result);
    checkLimit("bytes of output data", result.outputBytes, limit(device.data.maxOutputLen), result);
    checkLimit("bytes of input and output data", result.inputBytes + result.outputBytes, limit(device.data.maxDataLen),
               result);
    checkLimit("bytes of user parameters", result.userParameters.size(), device.parameterBudget(), result);
    if (result.configuration.size() > kMostTelegramBytes)
        result.problems.push_back("bytes of configuration: " + std::to_string(result.configuration.size()) +
                                  ", a telegram has at most " + std::to_string(kMostTelegramBytes));
    if (device.has(kFeatureEvenSlotNumber) && result.slots.size() % 2 != 0)
        result.problems.push_back("modules: " + std::to_string(result.slots.size()) +
                                  ", the device needs an even number of them");
}

} // namespace

Configuration configure(const Device& device, const std::vector<std::string>& slots,
                        const std::vector<std::string>& values)
{
    refuseOtherStations(device);
    Configuration result;
    result.slots = presetSlots(device);
    plugModules(device, slots, result);
    ParameterArea station = device.parameters;
    setValues(values, station, result);
    putSlotNumbers(result);
    buildTelegrams(station, result);
    checkLimits(device, result);
    return result;
}
