#include "host/readBack.h"

#include "host/configurationParts.h"
#include "host/hexBytes.h"
#include "host/parameterValue.h"
#include "host/standardPart.h"
#include "host/telegramSplit.h"

#include <algorithm>

namespace typdescriptor {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Reads the telegrams of one capture, from their beginnings to their ends.
class BackReader {
public:
    BackReader(const Device& source, const CapturedTelegrams& captured, const Configuration* plan)
        : device(source), telegrams(captured), planned(plan)
    {}

    Capture read();

private:
    void addProblem(Refusal why) { capture.problems.push_back(std::move(why)); }
    Bytes configurationBytes();
    void readStandard();
    void checkStandard(std::uint8_t status);
    void readStation();
    void readSlots(const Bytes& configuration);
    CapturedSlot slotOf(const std::vector<SlotContent>& contents, std::size_t slot);
    void checkSlot(const CapturedSlot& slot, unsigned number);
    ParameterArea takeArea(const ParameterArea& area, unsigned slot);
    void checkConstants(const ParameterArea& area, const ParameterArea& captured, unsigned slot);
    void addValues(const ParameterArea& area, unsigned slot, std::vector<CapturedValue>& values);
    void addPlan();
    void planValues(const std::vector<CapturedValue>& values, unsigned slot);

    const Device& device;
    const CapturedTelegrams& telegrams;
    const Configuration* planned;
    Bytes userParameters;
    std::size_t position = 0; // in them
    bool areBlocksKnown = true;
    Capture capture;
};

/// Those captured, or, when none were, those that the slave must have got.
Bytes BackReader::configurationBytes()
{
    if (!telegrams.configuration.empty())
        return telegrams.configuration;
    if (planned != nullptr) {
        capture.notes.emplace_back("Chk_Cfg was not captured: the modules are the planned ones");
        return valuesOf(planned->configuration);
    }
    const bool areAllFixed = std::all_of(device.presetSlots.begin(), device.presetSlots.end(),
                                         [](const PresetSlot& slot) { return slot.isFixed; });
    Bytes presets;
    for (const PresetSlot& slot : device.presetSlots)
        presets.insert(presets.end(), slot.identifier.wireBytes.begin(), slot.identifier.wireBytes.end());
    areBlocksKnown = areAllFixed && !presets.empty();
    if (areBlocksKnown)
        capture.notes.emplace_back("Chk_Cfg was not captured: the slots are the device's fixed ones");
    return areBlocksKnown ? presets : Bytes();
}

void BackReader::checkStandard(std::uint8_t status)
{
    constexpr std::uint8_t kReserved = 0x07;
    const Bytes& bytes = telegrams.parameters;
    if ((status & kReserved) != 0)
        addProblem({"reservedBit", "Set_Prm: byte 0 (0x" + asHex({status}) + "): a reserved bit is set", 0});
    if ((status & kWatchdog) != 0 && (bytes[1] == 0 || bytes[2] == 0))
        addProblem({"watchdogFactor", "Set_Prm: the watchdog is on, and one of its factors is 0", 0, "watchdog", "0",
                    "1 to 255"});
    const std::string minTsdr = std::to_string(bytes[3]);
    if (bytes[3] != 0 && bytes[3] < kLeastMinTsdr)
        addProblem({"outOfRange", "Set_Prm: min TSDR: " + minTsdr + ", allowed are " + kAllowedMinTsdr, 0, "min TSDR",
                    minTsdr, kAllowedMinTsdr});
    if ((status & kSync) != 0 && !device.has(kFeatureSyncMode))
        addProblem({"noSyncMode", "Set_Prm: sync mode: the device does not support it", 0, "sync mode", "on", "off"});
    if ((status & kFreeze) != 0 && !device.has(kFeatureFreezeMode))
        addProblem(
            {"noFreezeMode", "Set_Prm: freeze mode: the device does not support it", 0, "freeze mode", "on", "off"});
    if ((status & (kLock | kUnlock)) == 0)
        capture.notes.emplace_back("Set_Prm neither locks nor unlocks the slave: it is meant to change min TSDR alone");
    if (*capture.identNumber != device.header.identNumber)
        addProblem({"identNumber",
                    "Set_Prm: ident number " + hexWord(*capture.identNumber) + " is not that of the device, " +
                        hexWord(device.header.identNumber),
                    0, "ident number", hexWord(*capture.identNumber), hexWord(device.header.identNumber)});
}

void BackReader::readStandard()
{
    const Bytes& bytes = telegrams.parameters;
    if (bytes.empty())
        return;
    if (bytes.size() < kStandardBytes) {
        addProblem({"cutParameters", "Set_Prm has " + std::to_string(bytes.size()) +
                                         (bytes.size() == 1 ? " byte" : " bytes") + ": its standard part alone takes " +
                                         std::to_string(kStandardBytes)});
        return;
    }
    userParameters.assign(bytes.begin() + kStandardBytes, bytes.end());
    const std::uint8_t status = bytes[0];
    StandardParameters standard;
    standard.isLocked = (status & (kLock | kUnlock)) == kLock;
    standard.isSync = (status & kSync) != 0;
    standard.isFreeze = (status & kFreeze) != 0;
    if ((status & kWatchdog) != 0)
        standard.watchdogMilliseconds = bytes[1] * bytes[2] * watchdogBase(device, userParameters);
    standard.minTsdr = bytes[3];
    standard.groups = bytes[6];
    capture.standard = standard;
    capture.identNumber = bytes[4] * 256U + bytes[5];
    checkStandard(status);
}

void BackReader::checkConstants(const ParameterArea& area, const ParameterArea& captured, unsigned slot)
{
    const Bytes constant = constantBits(area);
    for (std::size_t i = 0; i < captured.bytes.size(); ++i) {
        if (((captured.bytes[i] ^ area.bytes[i]) & constant[i]) != 0)
            addProblem({"constantDiffers",
                        ownerName(slot) + ": byte " + std::to_string(i) + " of its parameters is " +
                            asHex({captured.bytes[i]}) + ", the device has " + asHex({area.bytes[i]}) + " there",
                        slot,
                        {},
                        asHex({captured.bytes[i]}),
                        asHex({area.bytes[i]})});
    }
    for (const SlotNumberField& field : area.slotNumbers) {
        Bytes wanted = captured.bytes;
        if (putNumber(slot, field.byte, field.byteCount, wanted) && wanted != captured.bytes)
            addProblem({"slotNumberDiffers",
                        ownerName(slot) + ": byte " + std::to_string(field.byte) +
                            " of its parameters does not hold its slot number",
                        slot});
    }
}

/// The captured bytes of an area, and what they hold.
ParameterArea BackReader::takeArea(const ParameterArea& area, unsigned slot)
{
    ParameterArea captured = area;
    const std::size_t there = std::min(area.bytes.size(), userParameters.size() - position);
    const auto first = userParameters.begin() + static_cast<std::ptrdiff_t>(position);
    captured.bytes.assign(first, first + static_cast<std::ptrdiff_t>(there));
    position += there;
    if (there < area.bytes.size())
        addProblem({"cutParameters",
                    ownerName(slot) + ": " + std::to_string(there) + " of " + std::to_string(area.bytes.size()) +
                        " bytes of its parameters are there",
                    slot});
    checkConstants(area, captured, slot);
    return captured;
}

void BackReader::addValues(const ParameterArea& area, unsigned slot, std::vector<CapturedValue>& values)
{
    for (const Parameter& parameter : area.parameters) {
        const auto value = valueIn(parameter, area.bytes);
        if (!value)
            continue;
        const bool isDefault = *value == parameter.defaultValue;
        const bool isAllowed = parameter.type == Parameter::kBinary || parameter.allows(*value);
        values.push_back({parameter.name, *value, parameter.textOf(*value), isDefault, isAllowed});
        const std::string what = ownerName(slot) + ": " + parameter.name + ": ";
        const std::string number = std::to_string(*value);
        if (!isAllowed && !parameter.mayBeShortened)
            addProblem({"outOfRange", what + number + " is out of its range, " + parameter.allowedInWords(), slot,
                        parameter.name, number, parameter.allowedInWords()});
        else if (!isDefault && !parameter.isChangeable)
            addProblem({"notChangeable",
                        what + number + " is set, the device fixes it at " + std::to_string(parameter.defaultValue),
                        slot, parameter.name, number, std::to_string(parameter.defaultValue)});
    }
}

void BackReader::readStation()
{
    if (!capture.standard)
        return;
    capture.stationArea = takeArea(device.parameters, 0);
    addValues(capture.stationArea, 0, capture.stationValues);
}

CapturedSlot BackReader::slotOf(const std::vector<SlotContent>& contents, std::size_t slot)
{
    const SlotContent& best = contents.front();
    CapturedSlot captured;
    captured.identifiers = best.identifiers;
    if (best.kind == SlotContent::kPreset) {
        captured.origin = Slot::kPreset;
        captured.name = nameOf(device.presetSlots[slot]);
        return captured; // modules that are like it change no byte
    }
    if (best.kind == SlotContent::kFree)
        captured.name = "free place";
    for (const SlotContent& content : contents) {
        for (const std::size_t module : content.modules) {
            if (captured.name.empty()) {
                captured.origin = Slot::kChosen;
                captured.module = module;
                captured.name = device.modules[module].wholeName();
            } else if (best.kind == SlotContent::kModules) {
                captured.alternatives.push_back(device.modules[module].wholeName());
            }
        }
    }
    return captured;
}

void BackReader::checkSlot(const CapturedSlot& slot, unsigned number)
{
    Bytes wire;
    for (const Identifier& identifier : slot.identifiers)
        wire.insert(wire.end(), identifier.wireBytes.begin(), identifier.wireBytes.end());
    const bool isFixed = number <= device.presetSlots.size() && device.presetSlots[number - 1].isFixed;
    if (slot.name.empty())
        addProblem({"unknownIdentifier",
                    slotName(number) + ": no module of the device has the identifier " + asHex(wire),
                    number,
                    {},
                    asHex(wire),
                    {}});
    if (isFixed && slot.origin != Slot::kPreset)
        addProblem({"fixedSlot",
                    slotName(number) + " is fixed at " + asHex(device.presetSlots[number - 1].identifier.wireBytes) +
                        ": " + asHex(wire) + " cannot take its place",
                    number,
                    {},
                    asHex(wire),
                    asHex(device.presetSlots[number - 1].identifier.wireBytes)});
    if (number == device.slotCount() + 1)
        addProblem({"unknownSlot",
                    slotName(number) + ": the device has slots 1 to " + std::to_string(device.slotCount()),
                    number,
                    {},
                    {},
                    "1 to " + std::to_string(device.slotCount())});
    for (Refusal& why :
         slot.module ? slotRefusals(device, number, device.modules[*slot.module]) : std::vector<Refusal>())
        addProblem(std::move(why));
}

void BackReader::readSlots(const Bytes& configuration)
{
    const TelegramSplit split =
        splitTelegram(device, configuration, capture.standard ? &userParameters : nullptr, planned);
    if (capture.standard && !split.areParametersUsed)
        capture.notes.emplace_back("the parameters were not used to tell modules apart");
    for (std::size_t i = 0; i < split.slots.size(); ++i) {
        CapturedSlot slot = slotOf(split.slots[i], i);
        const auto number = static_cast<unsigned>(i + 1);
        checkSlot(slot, number);
        for (const ParameterArea* block : split.slots[i].front().blocks) {
            if (!capture.standard)
                break;
            slot.blocks.push_back(takeArea(*block, number));
            addValues(slot.blocks.back(), number, slot.values);
        }
        capture.slots.push_back(std::move(slot));
    }
    for (std::size_t offset = 0; offset < configuration.size();) {
        const std::size_t length = identifierLength(configuration, offset);
        if (offset + length > configuration.size())
            addProblem({"cutConfiguration", "Chk_Cfg is cut: its last identifier has " +
                                                std::to_string(configuration.size() - offset) + " of " +
                                                std::to_string(length) + " bytes"});
        offset += length;
    }
}

void BackReader::planValues(const std::vector<CapturedValue>& values, unsigned slot)
{
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const CapturedValue& value : values)
        names.push_back(value.parameter);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!values[i].isDefault)
            capture.plan.values.push_back({slot, unmistakable(names, i), std::to_string(values[i].value)});
    }
}

/// The choices that give the captured telegrams.
void BackReader::addPlan()
{
    const std::vector<std::string> names = moduleNames(device);
    capture.plan.standard = capture.standard.value_or(StandardParameters{});
    planValues(capture.stationValues, 0);
    for (std::size_t i = 0; i < capture.slots.size(); ++i) {
        const CapturedSlot& slot = capture.slots[i];
        const auto number = static_cast<unsigned>(i + 1);
        if (slot.module)
            capture.plan.modules.push_back({number, unmistakable(names, *slot.module)});
        planValues(slot.values, number);
    }
}

Capture BackReader::read()
{
    readStandard();
    const Bytes configuration = configurationBytes();
    readStation();
    if (!configuration.empty())
        readSlots(configuration);
    const std::size_t left = userParameters.size() - position;
    if (left > 0 && areBlocksKnown)
        addProblem({"parametersLeft",
                    "Set_Prm: " + std::to_string(left) + (left == 1 ? " byte" : " bytes") +
                        " behind the parameters of the modules: " +
                        asHex({userParameters.end() - static_cast<std::ptrdiff_t>(left), userParameters.end()})});
    else if (left > 0)
        capture.notes.push_back("Set_Prm: " + std::to_string(left) + " bytes are of modules, which Chk_Cfg would name");
    addPlan();
    return std::move(capture);
}

} // namespace

Capture readBack(const Device& device, const CapturedTelegrams& telegrams, const Configuration* planned)
{
    refuseOtherStations(device);
    return BackReader(device, telegrams, planned).read();
}

} // namespace typdescriptor
