#include "host/gsdFactReader.h"
#include "host/parameterValue.h"
#include "host/text.h"

#include <algorithm>
#include <utility>

namespace typdescriptor {

using gsdfile::Statement;

namespace {

constexpr unsigned kKeptBits = 16; // of a parameter, by the library

/// The library gives the place of a slot number without its hundreds.
void placeSlotNumber(unsigned byte, ParameterArea& area)
{
    constexpr unsigned kHundred = 100;
    for (SlotNumberField& field : area.slotNumbers) {
        if (byte % kHundred == field.byte)
            field.byte = byte;
    }
}

/// What the library keeps of a parameter; null when it leaves it out.
Parameter* placedAs(const Parameter& parameter, ParameterArea& area)
{
    for (Parameter& known : area.parameters) {
        if (known.byte == parameter.byte && known.firstBit == parameter.firstBit &&
            known.bitCount == std::min(parameter.bitCount, kKeptBits))
            return &known;
    }
    return nullptr;
}

} // namespace

const Definition* FactReader::definitionOf(const Statement& statement) const
{
    const auto reference = numberOf(statement);
    if (!reference)
        return nullptr;
    const auto known = definitions.find(*reference);
    return known == definitions.end() ? nullptr : &known->second;
}

std::vector<ValueText> FactReader::textsOf(std::int64_t reference) const
{
    const auto texts = valueTexts.find(reference);
    return texts == valueTexts.end() ? std::vector<ValueText>() : texts->second.texts;
}

/// Describes the parameters of an area as the file does, and puts in the defaults that the library's 16 bits do not hold.
void FactReader::applyParameters(const std::vector<const Statement*>& references, ParameterArea& area) const
{
    for (const Statement* statement : references) {
        const Definition* const definition = definitionOf(*statement);
        if (definition == nullptr || !statement->argument)
            continue;
        Parameter parameter = definition->parameter;
        parameter.byte = asUnsigned(statement->argument->first.value);
        if (definition->isSlotNumber) {
            placeSlotNumber(parameter.byte, area);
            continue;
        }
        const bool isLong = parameter.bitCount > kKeptBits;
        if (definition->texts)
            parameter.texts = textsOf(*definition->texts);
        Parameter* const known = placedAs(parameter, area);
        if (known == nullptr)
            continue;
        if (isLong)
            putValue(parameter, parameter.defaultValue, area.bytes);
        *known = std::move(parameter);
    }
}

/// A block of a module's own: modules that the library lets share one may differ in what it does not keep.
int FactReader::ownBlock(int index, const GsdModule& module)
{
    ParameterArea own = device.blocks[static_cast<std::size_t>(index)];
    applyParameters(module.parameterReferences, own);
    for (std::size_t i = 0; i < device.blocks.size(); ++i) {
        if (isSameArea(device.blocks[i], own))
            return static_cast<int>(i);
    }
    device.blocks.push_back(std::move(own));
    return static_cast<int>(device.blocks.size()) - 1;
}

/// The block described as a module has it: the first one in its place, others that share it in one of their own.
int FactReader::describedBlock(int block, const GsdModule& module)
{
    if (block == kNoBlock)
        return block;
    const auto index = static_cast<std::size_t>(block);
    if (!describedBlocks.insert(index).second)
        return ownBlock(block, module);
    applyParameters(module.parameterReferences, device.blocks[index]);
    return block;
}

/// Finds each of the device's modules in the file by its bytes and name, and adds what the file says of it.
void FactReader::applyModules()
{
    std::vector<bool> isTaken(modules.size());
    for (Module& module : device.modules) {
        std::vector<std::uint8_t> bytes;
        for (const ModulePart& part : module.parts)
            bytes.insert(bytes.end(), part.identifier.wireBytes.begin(), part.identifier.wireBytes.end());
        for (std::size_t i = 0; i < modules.size(); ++i) {
            if (isTaken[i] || modules[i].bytes != bytes || !isNameOf(module.name, modules[i].name))
                continue;
            isTaken[i] = true;
            module.fullName = modules[i].name;
            module.reference = modules[i].reference;
            module.infoText = modules[i].infoText;
            module.channelTexts = modules[i].channelTexts;
            module.hasSafetyParameters = modules[i].hasSafetyParameters;
            for (ModulePart& part : module.parts)
                part.block = describedBlock(part.block, modules[i]);
            break;
        }
    }
}

/// The presets are the identifiers of the modules that are preset, in the order of the file; of a device with a single
/// module they are that module's.
void FactReader::namePresets()
{
    std::size_t slot = 0;
    for (const GsdModule& module : modules) {
        if (!module.isPreset && modules.size() > 1)
            continue;
        for (std::size_t bytes = 0; slot < device.presetSlots.size() && bytes < module.bytes.size(); ++slot) {
            PresetSlot& preset = device.presetSlots[slot];
            preset.name = module.name;
            preset.channelTexts = module.channelTexts;
            preset.block = describedBlock(preset.block, module);
            bytes += preset.identifier.wireBytes.size();
        }
    }
}

/// The texts as the file has them, in full, with their helps.
void FactReader::applyDiagnosis()
{
    if (!stationTexts.bits.empty() || !stationTexts.areas.empty())
        device.diagnosisTexts = std::move(stationTexts);
    for (ValueText& known : device.channelTexts) {
        const auto text = std::find_if(channelTexts.begin(), channelTexts.end(),
                                       [&known](const ValueText& own) { return own.value == known.value; });
        if (text != channelTexts.end())
            known = *text;
    }
}

} // namespace typdescriptor
