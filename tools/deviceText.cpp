#include "tools/deviceText.h"

#include "host/hexBytes.h"
#include "host/text.h"
#include "tools/terminal.h"

#include <array>
#include <cstdint>
#include <map>

using namespace typdescriptor;

namespace {

constexpr std::size_t kLabelWidth = 26;

std::string number(std::int64_t value)
{
    return std::to_string(value);
}

/// "1 byte", "5 bytes".
std::string counted(long count, const std::string& unit)
{
    return number(count) + ' ' + unit + (count == 1 ? "" : "s");
}

std::string row(const std::string& label, const std::string& value)
{
    return value.empty() ? "" : "  " + padded(label, kLabelWidth) + ' ' + value + '\n';
}

std::string lengthInWords(int bytes, int bits)
{
    return counted(bytes, "byte") + (bits % 8 != 0 ? " (" + counted(bits, "bit") + ')' : "");
}

std::string identificationText(const Device& device)
{
    const bool isLong = device.gsd.has_value();
    return row("model", isLong ? device.gsd->modelName : device.modelName) +
           row("vendor", isLong ? device.gsd->vendorName : device.vendorName) +
           row("ident number", hexWord(device.header.identNumber) + " (" + number(device.header.identNumber) + ')') +
           row("order number", device.orderNumber) + row("family", device.family) + row("periphery", device.periphery) +
           row("station type", device.stationType) + row("protocol chip", chipName(device)) +
           row("bitmap", device.bitmapName) + row("library", device.libraryName) +
           row("type file format", fromField(device.header.version)) +
           row("GSD revision", device.isFromGsd ? number(device.gsdRevision) : "");
}

std::string featuresText(const Device& device)
{
    std::string text = row("station", device.isCategoryII ? "" : device.isModular ? "modular" : "compact");
    if (device.isDpv1.value_or(false))
        text += "  DPV1\n";
    for (const FeatureName& feature : featureNames()) {
        if (device.has(feature.feature))
            text += "  " + std::string(feature.text) + '\n';
    }
    return text;
}

std::string baudRatesText(const Device& device)
{
    std::string text;
    for (const std::string& rate : baudRates(device))
        text += "  " + rate + '\n';
    return text;
}

std::string limitsText(const Device& device)
{
    const SLAVE_TYPEDATA_TYPE& data = device.data;
    if (device.isCategoryII)
        return {};
    std::string text =
        row("modules", number(device.isModular ? device.slotCount() : data.maxModule)) +
        row("input data", lengthInWords(data.maxInputLen, data.maxInputBits)) +
        row("output data", lengthInWords(data.maxOutputLen, data.maxOutputBits)) +
        row("input and output data", counted(data.maxDataLen, "byte")) +
        row("diagnostic data", counted(data.maxDiagDataLen, "byte")) +
        row("user parameters", counted(device.parameterBudget(), "byte")) +
        row("  of them for the station", counted(static_cast<long>(device.parameters.bytes.size()), "byte")) +
        row("slave interval", number(data.minSlaveInterval * 100L) + " us");
    if (data.eterDelay != 0)
        text += row("ETER delay", number(data.eterDelay));
    if (data.maxResponseDelay != 0)
        text += row("response delay", number(data.maxResponseDelay));
    return text;
}

std::string blockReference(int block)
{
    return block == kNoBlock ? "" : ", parameter block " + number(block + 1);
}

std::string slotsText(const Device& device)
{
    std::string text;
    if (device.slotOffset != 0)
        text += row("first slot number shown", number(device.slotOffset));
    if (device.isKgp())
        text += row("slots", number(device.data.slotCount));
    if (device.slotNumbering)
        text += row("slot numbering",
                    fromField(device.slotNumbering->text) + ' ' + number(device.slotNumbering->value1) + ' ' +
                        number(device.slotNumbering->value2) + ' ' + number(device.slotNumbering->digit));
    for (std::size_t i = 0; i < device.presetSlots.size(); ++i) {
        const PresetSlot& slot = device.presetSlots[i];
        const std::string& known = slot.name.empty() ? slot.orderNumber : slot.name;
        const std::string name = known.empty() ? "" : known + ": ";
        text +=
            row("slot " + number(static_cast<long>(i + 1)) + (slot.isFixed ? " (fixed)" : " (preset)"),
                name + asHex(slot.identifier.fileBytes) + "  " + inWords(slot.identifier) + blockReference(slot.block));
    }
    return text;
}

std::string partText(const ModulePart& part, bool hasManyParts)
{
    std::string text = "      ";
    if (!part.orderNumber.empty() && hasManyParts)
        text += part.orderNumber + "  ";
    if (!part.text.empty())
        text += part.text + "  ";
    return text + asHex(part.identifier.fileBytes) + "  " + inWords(part.identifier) + blockReference(part.block) +
           '\n';
}

std::string moduleText(const Module& module, std::size_t index)
{
    std::string text = "  " + padded('#' + std::to_string(index + 1), 5) + module.wholeName() +
                       (module.isFixed ? " (fixed)" : "") +
                       (module.hasSafetyParameters ? " (with safety parameters)\n" : "\n");
    if (!module.infoText.empty())
        text += "      " + module.infoText + '\n';
    if (module.kgp)
        return text + "      module number " + number(module.kgp->number) + ", values " + asHex(module.kgp->values) +
               blockReference(module.parts.front().block) + '\n';
    for (const ModulePart& part : module.parts)
        text += partText(part, !module.isFromOrderList);
    for (const ValueText& channel : module.channelTexts)
        text += "      channel error " + number(channel.value) + ": " + channel.text + '\n';
    return text;
}

std::string modulesText(const Device& device)
{
    std::string text;
    for (std::size_t i = 0; i < device.modules.size(); ++i)
        text += moduleText(device.modules[i], i);
    return text;
}

std::string valueInWords(const Parameter& parameter, std::int64_t value)
{
    const std::string text = parameter.textOf(value);
    return text.empty() ? number(value) : number(value) + " (" + text + ')';
}

std::string parameterText(const Parameter& parameter)
{
    std::string place = "byte " + number(parameter.byte);
    if (parameter.byteCount() > 1)
        place = "bytes " + number(parameter.byte) + '-' + number(parameter.byte + parameter.byteCount() - 1);
    std::string text = "  " + padded(parameter.name, 32) + ' ' + place + ", " + parameter.typeInWords() + ", default " +
                       valueInWords(parameter, parameter.defaultValue) + ", range " + parameter.allowedInWords() +
                       (parameter.isChangeable ? "" : ", not to be changed") +
                       (parameter.mayBeShortened ? ", perhaps of 32 bits in the GSD file\n" : "\n");
    for (const ValueText& value : parameter.texts)
        text += "      " + padded(number(value.value), 6) + ' ' + value.text + '\n';
    return text;
}

std::string areaText(const ParameterArea& area)
{
    std::string text = row("bytes", asHex(area.bytes));
    for (const Parameter& parameter : area.parameters)
        text += parameterText(parameter);
    for (const SlotNumberField& field : area.slotNumbers)
        text += "  slot number of the module goes into byte " + number(field.byte) + " (" +
                counted(field.byteCount, "byte") + ")\n";
    return text;
}

std::string blocksText(const Device& device)
{
    std::map<int, std::string> users;
    const auto addUser = [&users](int block, const std::string& name) {
        if (block != kNoBlock)
            users[block] += (users[block].empty() ? "" : ", ") + name;
    };
    for (std::size_t i = 0; i < device.presetSlots.size(); ++i)
        addUser(device.presetSlots[i].block, "slot " + number(static_cast<long>(i + 1)));
    for (const Module& module : device.modules) {
        for (const ModulePart& part : module.parts)
            addUser(part.block, module.wholeName());
    }
    std::string text;
    for (std::size_t i = 0; i < device.blocks.size(); ++i) {
        const std::string& names = users[static_cast<int>(i)];
        text += " block " + std::to_string(i + 1) + (names.empty() ? "" : " of " + names) + '\n';
        text += areaText(device.blocks[i]);
    }
    return text;
}

std::string helpText(const std::string& help)
{
    return help.empty() ? "" : "      " + help + '\n';
}

std::string diagnosisTextsText(const DiagnosisTexts& texts)
{
    std::string text;
    for (const BitText& bit : texts.bits) {
        const std::string place = "byte " + number(bit.byte) + " bit " + number(bit.bit);
        text += row(place + " set", bit.set) + helpText(bit.setHelp) + row(place + " clear", bit.clear) +
                helpText(bit.clearHelp);
    }
    for (const AreaText& area : texts.areas) {
        text += "  byte " + number(area.byte) + " bits " + number(area.firstBit) + '-' + number(area.lastBit) + '\n';
        for (const ValueText& value : area.texts)
            text += "      " + padded(number(value.value), 6) + ' ' + value.text + '\n';
    }
    return text;
}

std::string diagnosticsText(const Device& device)
{
    std::string text = diagnosisTextsText(device.diagnosisTexts);
    for (const DiagnosisType& type : device.diagnosisTypes)
        text += " of DPV1 type " + number(type.number) + '\n' + diagnosisTextsText(type.texts);
    for (const ValueText& channel : device.channelTexts)
        text += row("channel error " + number(channel.value), channel.text) + helpText(channel.help);
    return text;
}

std::string slotRuleText(const Device& device, const SlotRule& rule)
{
    std::string allowed;
    for (const Module& module : device.modules) {
        if (module.reference && rule.allows(*module.reference))
            allowed += (allowed.empty() ? "" : ", ") + module.wholeName() +
                       (module.reference == rule.preset ? " (default)" : "");
    }
    return row("slot " + number(rule.slot) + ' ' + rule.name, allowed);
}

std::string gsdText(const Device& device)
{
    if (!device.gsd)
        return {};
    const GsdFacts& facts = *device.gsd;
    std::string text = row("revision", facts.revision) + row("hardware release", facts.hardwareRelease) +
                       row("software release", facts.softwareRelease) + row("info text", facts.infoText) +
                       row("safety parameters", facts.hasSafetyParameters ? "yes" : "");
    for (const NamedNumber& delay : facts.maxTsdr)
        text += row("max TSDR at " + delay.name, counted(delay.value, "bit time"));
    for (const SlotRule& rule : facts.slots)
        text += slotRuleText(device, rule);
    for (const NamedNumber& other : facts.others)
        text += row(other.name, number(other.value));
    return text;
}

std::string warningsText(const Device& device)
{
    std::string text;
    for (const GSD_WARNING_ITEM& warning : device.warnings)
        text += "  line " + number(warning.lineNumber) + ": " + resultText(warning.code) + " (" + number(warning.code) +
                ")\n";
    return text;
}

std::string stationParametersText(const Device& device)
{
    return areaText(device.parameters);
}

struct Section {
    const char* name;
    const char* heading;
    std::string (*text)(const Device&);
};
constexpr std::array<Section, 11> kSections = {
    Section{"identification", "Identification", identificationText},
    Section{"features", "Features", featuresText},
    Section{"baudRates", "Baud rates", baudRatesText},
    Section{"limits", "Limits", limitsText},
    Section{"slots", "Slots", slotsText},
    Section{"modules", "Modules", modulesText},
    Section{"parameters", "Parameters of the station", stationParametersText},
    Section{"blocks", "Parameter blocks of the modules", blocksText},
    Section{"diagnostics", "Diagnostic texts", diagnosticsText},
    Section{"gsd", "What the GSD file says and a type file cannot hold", gsdText},
    Section{"warnings", "Warnings", warningsText},
};

} // namespace

std::string sectionText(const Device& device, const std::string& section, bool inColour)
{
    for (const Section& candidate : kSections) {
        if (section != candidate.name)
            continue;
        const std::string text = candidate.text(device);
        return coloured(candidate.heading, Colour::kBold, inColour) + '\n' + (text.empty() ? "  none\n" : text);
    }
    return {};
}
