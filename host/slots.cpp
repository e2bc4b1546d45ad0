// Which module is in which slot.

#include "host/configurationParts.h"
#include "host/hexBytes.h"
#include "host/parameterValue.h"

#include <algorithm>

namespace typdescriptor {

namespace {

void fillPart(const Device& device, const Identifier& identifier, int block, Slot& slot)
{
    if (identifier.format == Identifier::kCompact)
        throw ChoiceError({"compactIdentifier", "identifier " + asHex(identifier.fileBytes) +
                                                    " is in the compact format, which has no form in the telegram"});
    slot.identifiers.push_back(identifier);
    if (block >= 0 && static_cast<std::size_t>(block) < device.blocks.size())
        slot.blocks.push_back(device.blocks[static_cast<std::size_t>(block)]);
}

void addPresets(const Device& device, std::vector<Slot>& slots)
{
    for (const PresetSlot& preset : device.presetSlots) {
        Slot slot;
        slot.name = nameOf(preset);
        slot.origin = Slot::kPreset;
        slot.isFixed = preset.isFixed;
        slot.channelTexts = preset.channelTexts;
        fillPart(device, preset.identifier, preset.block, slot);
        slots.push_back(std::move(slot));
    }
}

/// The names that a SlotDefinition gives the slots.
void nameSlots(const Device& device, std::vector<Slot>& slots)
{
    for (const SlotRule& rule : device.gsd ? device.gsd->slots : std::vector<SlotRule>()) {
        if (rule.slot >= 1 && rule.slot <= slots.size())
            slots[rule.slot - 1].slotName = rule.name;
    }
}

Slot slotWith(const Device& device, std::size_t module, Slot::Origin origin)
{
    Slot slot;
    slot.name = device.modules[module].wholeName();
    slot.origin = origin;
    slot.module = module;
    slot.channelTexts = device.modules[module].channelTexts;
    for (const ModulePart& part : device.modules[module].parts)
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

/// The place of a slot, with free ones ahead of it where there were none.
Slot& slotAt(unsigned slot, std::vector<Slot>& slots)
{
    if (slot > slots.size())
        slots.resize(slot, freeSlot());
    return slots[slot - 1];
}

/// The modules that a file's SlotDefinition puts into its slots.
void addDefaultModules(const Device& device, std::vector<Slot>& slots)
{
    if (!device.gsd)
        return;
    for (const SlotRule& rule : device.gsd->slots) {
        const auto known = std::find_if(device.modules.begin(), device.modules.end(), [&rule](const Module& module) {
            return module.reference && module.reference == rule.preset;
        });
        if (known == device.modules.end() || rule.slot <= device.presetSlots.size() || rule.slot > device.slotCount())
            continue;
        slotAt(rule.slot, slots) =
            slotWith(device, static_cast<std::size_t>(known - device.modules.begin()), Slot::kPreset);
    }
}

} // namespace

std::string nameOf(const PresetSlot& preset)
{
    if (!preset.name.empty())
        return preset.name;
    return preset.orderNumber.empty() ? "preset" : preset.orderNumber;
}

std::vector<Refusal> slotRefusals(const Device& device, unsigned slot, const Module& module)
{
    std::vector<Refusal> refusals;
    for (const SlotRule& rule : device.gsd ? device.gsd->slots : std::vector<SlotRule>()) {
        const auto takes = [&rule](const Module& candidate) {
            return candidate.reference && rule.allows(*candidate.reference);
        };
        if (rule.slot != slot || takes(module))
            continue;
        std::string allowed;
        for (const Module& other : device.modules) {
            if (takes(other))
                allowed += (allowed.empty() ? "" : ", ") + other.wholeName();
        }
        allowed = allowed.empty() ? "none" : allowed;
        refusals.push_back({"moduleNotAllowed",
                            slotName(slot) + " does not take " + module.wholeName() + ", allowed are " + allowed,
                            slot,
                            {},
                            module.wholeName(),
                            allowed});
    }
    return refusals;
}

void fillSlots(const Device& device, const std::vector<ModuleChoice>& choices, Configuration& result)
{
    const std::size_t most = device.slotCount();
    const std::string slotRange = "1 to " + std::to_string(most);
    addPresets(device, result.slots);
    addDefaultModules(device, result.slots);
    std::set<unsigned> taken;
    for (const ModuleChoice& choice : choices) {
        const std::string what = slotName(choice.slot);
        if (choice.slot < 1 || choice.slot > most)
            throw ChoiceError({"unknownSlot",
                               what + ": the device has slots " + slotRange,
                               choice.slot,
                               {},
                               choice.module,
                               slotRange});
        if (!taken.insert(choice.slot).second)
            throw ChoiceError({"slotTwice", what + " is given twice", choice.slot, {}, choice.module, {}});
        const std::size_t index = chooseName(moduleNames(device), choice.module, "module", choice.slot);
        const Module& module = device.modules[index];
        Slot& slot = slotAt(choice.slot, result.slots);
        if (slot.isFixed)
            addProblem(result, {"fixedSlot",
                                what + " is fixed: " + module.wholeName() + " cannot take the place of " + slot.name,
                                choice.slot,
                                {},
                                module.wholeName(),
                                slot.name});
        else
            slot = slotWith(device, index, Slot::kChosen);
        for (Refusal& why : slotRefusals(device, choice.slot, module))
            addProblem(result, std::move(why));
    }
    nameSlots(device, result.slots);
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        const Slot& slot = result.slots[i];
        if (slot.origin == Slot::kFree)
            result.notes.push_back(slotName(i + 1) + " is left free and takes an empty identifier");
        if (slot.module && device.modules[*slot.module].hasSafetyParameters)
            result.notes.push_back(slotName(i + 1) + ": " + slot.name +
                                   " has safety parameters (F_ keywords), which are not part of these telegrams");
    }
}

} // namespace typdescriptor
