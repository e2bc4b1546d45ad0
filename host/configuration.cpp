#include "host/configuration.h"

#include "host/hexBytes.h"
#include "host/parameterValue.h"

#include <algorithm>
#include <set>

namespace typdescriptor {

namespace {

constexpr std::size_t kMostTelegramBytes = 244;

std::string slotName(std::size_t number)
{
    return "slot " + std::to_string(number);
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

/// What the file's SlotDefinition allows in a slot.
void checkSlotRule(const Device& device, unsigned slot, const Module& module, Configuration& result)
{
    if (!device.gsd)
        return;
    for (const SlotRule& rule : device.gsd->slots) {
        if (rule.slot != slot || !module.reference || rule.allows(*module.reference))
            continue;
        std::string allowed;
        for (const Module& other : device.modules) {
            if (other.reference && rule.allows(*other.reference))
                allowed += (allowed.empty() ? "" : ", ") + other.name;
        }
        result.problems.push_back(slotName(slot) + " does not take " + module.name + ", allowed are " + allowed);
    }
}

void plugModules(const Device& device, const std::vector<ModuleChoice>& choices, Configuration& result)
{
    std::vector<std::string> names;
    for (const Module& module : device.modules)
        names.push_back(module.name);
    const std::size_t preset = device.presetSlots.size();
    const std::size_t most = device.slotCount();
    std::set<unsigned> taken;
    for (const ModuleChoice& choice : choices) {
        const std::string what = slotName(choice.slot);
        if (choice.slot < 1 || choice.slot > most)
            throw ChoiceError(what + ": the device has slots 1 to " + std::to_string(most));
        if (!taken.insert(choice.slot).second)
            throw ChoiceError(what + " is given twice");
        if (device.modules.empty())
            throw ChoiceError(what + ": the device has no modules to choose from");
        const Module& module = device.modules[chooseName(names, choice.module, what + ": module")];
        if (choice.slot > result.slots.size())
            result.slots.resize(choice.slot, freeSlot());
        Slot& slot = result.slots[choice.slot - 1];
        if (slot.isFixed)
            result.problems.push_back(what + " is fixed: " + module.name + " cannot take the place of what is there");
        else
            slot = slotWith(device, module);
        checkSlotRule(device, choice.slot, module, result);
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

ParameterPlace chooseParameter(const std::vector<ParameterArea*>& areas, const std::string& wanted,
                               const std::string& what)
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
    return places[chooseName(names, wanted, what + ": parameter")];
}

std::string ownerName(unsigned slot)
{
    return slot == 0 ? "station" : slotName(slot);
}

void setValues(const std::vector<ValueChoice>& choices, ParameterArea& station, Configuration& result)
{
    std::set<const Parameter*> taken;
    for (const ValueChoice& choice : choices) {
        const std::string what = ownerName(choice.slot);
        const ParameterPlace place = chooseParameter(areasOf(choice.slot, station, result), choice.parameter, what);
        const std::string name = what + ": " + place.parameter->name;
        if (!taken.insert(place.parameter).second)
            throw ChoiceError(name + " is set twice");
        if (!putValue(*place.parameter, parseValue(*place.parameter, choice.value, name), place.area->bytes))
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

/// Watchdog time as the product of two factors: the smallest that is not below what is wanted.
struct WatchdogFactors {
    unsigned first = 0;
    unsigned second = 0;
};

WatchdogFactors watchdogFactors(unsigned units)
{
    constexpr unsigned kMost = 255;
    WatchdogFactors best{kMost, kMost};
    for (unsigned first = 1; first <= kMost; ++first) {
        const unsigned second = (units + first - 1) / first;
        if (second <= kMost && first * second < best.first * best.second)
            best = {first, second};
    }
    return best;
}

/// Whether the user parameters of a DPV1 slave ask for a watchdog that counts in milliseconds.
bool hasFastWatchdog(const Device& device, const ParameterArea& station)
{
    constexpr std::uint8_t kBase1ms = 0x04;
    return device.isDpv1.value_or(false) && !station.bytes.empty() && (station.bytes[0] & kBase1ms) != 0;
}

void addWatchdog(const StandardParameters& standard, unsigned base, Configuration& result)
{
    constexpr unsigned kMostUnits = 255 * 255;
    if (standard.watchdogMilliseconds > kMostUnits * base)
        throw ChoiceError("watchdog: " + std::to_string(standard.watchdogMilliseconds) + " ms, allowed are 1 to " +
                          std::to_string(kMostUnits * base) + " ms, or 0 for none");
    WatchdogFactors factors;
    if (standard.watchdogMilliseconds == 0) {
        result.notes.emplace_back("the watchdog is off: outputs keep their values when the master falls silent");
    } else {
        factors = watchdogFactors((standard.watchdogMilliseconds + base - 1) / base);
        const unsigned reached = factors.first * factors.second * base;
        if (reached != standard.watchdogMilliseconds)
            result.notes.push_back("the watchdog takes " + std::to_string(reached) + " ms: " +
                                   std::to_string(standard.watchdogMilliseconds) + " ms is no product of its factors");
    }
    result.parameters.push_back({static_cast<std::uint8_t>(factors.first), 0, "watchdog factor 1"});
    result.parameters.push_back({static_cast<std::uint8_t>(factors.second), 0, "watchdog factor 2"});
}

/// The seven bytes ahead of the user parameters.
void addStandardPart(const Device& device, const StandardParameters& standard, unsigned watchdogBase,
                     Configuration& result)
{
    constexpr unsigned kLeastMinTsdr = 11;
    constexpr unsigned kMostByte = 255;
    if (standard.minTsdr > kMostByte || (standard.minTsdr != 0 && standard.minTsdr < kLeastMinTsdr))
        throw ChoiceError("min TSDR: " + std::to_string(standard.minTsdr) + ", allowed are 11 to 255 bit times, or 0");
    if (standard.groups > kMostByte)
        throw ChoiceError("groups: " + std::to_string(standard.groups) + ", allowed are 0 to 255");
    if (standard.isSync && !device.has(kFeatureSyncMode))
        result.problems.emplace_back("sync mode: the device does not support it");
    if (standard.isFreeze && !device.has(kFeatureFreezeMode))
        result.problems.emplace_back("freeze mode: the device does not support it");
    const auto status =
        static_cast<std::uint8_t>((standard.isLocked ? 0x80 : 0) | (standard.isSync ? 0x20 : 0) |
                                  (standard.isFreeze ? 0x10 : 0) | (standard.watchdogMilliseconds != 0 ? 0x08 : 0));
    const unsigned ident = device.header.identNumber;
    result.parameters.push_back({status, 0, "station status: lock, sync, freeze, watchdog"});
    addWatchdog(standard, watchdogBase, result);
    result.parameters.push_back({static_cast<std::uint8_t>(standard.minTsdr), 0, "min TSDR"});
    result.parameters.push_back({static_cast<std::uint8_t>(ident >> 8U), 0, "ident number, high byte"});
    result.parameters.push_back({static_cast<std::uint8_t>(ident & 0xFFU), 0, "ident number, low byte"});
    result.parameters.push_back({static_cast<std::uint8_t>(standard.groups), 0, "groups"});
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
    result.parameters.insert(result.parameters.end(), result.userParameters.begin(), result.userParameters.end());
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

std::vector<std::uint8_t> valuesOf(const std::vector<TelegramByte>& telegram)
{
    std::vector<std::uint8_t> values;
    values.reserve(telegram.size());
    for (const TelegramByte& byte : telegram)
        values.push_back(byte.value);
    return values;
}

namespace {

/// Whether a type file may have lost half of a parameter: it keeps those of 32 bits as if they had 16.
bool mayBeShortened(const Device& device, const Configuration& result)
{
    const auto isWord = [](const Parameter& parameter) { return parameter.bitCount == 16; };
    const auto hasWord = [&isWord](const ParameterArea& area) {
        return std::any_of(area.parameters.begin(), area.parameters.end(), isWord);
    };
    return hasWord(device.parameters) || std::any_of(result.slots.begin(), result.slots.end(), [&](const Slot& slot) {
               return std::any_of(slot.blocks.begin(), slot.blocks.end(), hasWord);
           });
}

} // namespace

Configuration configure(const Device& device, const Plan& plan)
{
    constexpr unsigned kUsualBase = 10; // milliseconds
    refuseOtherStations(device);
    Configuration result;
    result.slots = presetSlots(device);
    plugModules(device, plan.modules, result);
    ParameterArea station = device.parameters;
    setValues(plan.values, station, result);
    putSlotNumbers(result);
    addStandardPart(device, plan.standard, hasFastWatchdog(device, station) ? 1 : kUsualBase, result);
    buildTelegrams(station, result);
    checkLimits(device, result);
    if (device.gsd && device.gsd->hasSafetyParameters)
        result.notes.emplace_back(
            "the device has safety parameters (F_ keywords), which are not part of these telegrams");
    if (!device.gsd && mayBeShortened(device, result))
        result.notes.emplace_back(
            "a type file keeps parameters of 32 bits in 16: where the GSD file has such ones, their "
            "bytes are not these");
    return result;
}

} // namespace typdescriptor
