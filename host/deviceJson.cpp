#include "host/jsonValues.h"

#include "host/text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace typdescriptor {

using Json = nlohmann::ordered_json;

namespace {

Json dataJson(const std::optional<IoData>& data)
{
    if (!data)
        return nullptr;
    return {{"count", data->count},
            {"unit", data->inWords ? "word" : "byte"},
            {"bytes", data->bytes()},
            {"consistency", data->isConsistent ? "whole" : "unit"}};
}

/// The number of a block as people count, from 1.
Json blockJson(int block)
{
    return block == kNoBlock ? Json() : Json(block + 1);
}

Json valueTextsJson(const std::vector<ValueText>& texts)
{
    return listJson(texts, [](const ValueText& entry) -> Json {
        return {{"value", entry.value}, {"text", entry.text}, {"help", entry.help}};
    });
}

Json identificationJson(const Device& device)
{
    return {{"modelName", device.modelName},
            {"vendorName", device.vendorName},
            {"identNumber", device.header.identNumber},
            {"orderNumber", device.orderNumber},
            {"family", device.family},
            {"periphery", device.periphery},
            {"stationType", device.stationType},
            {"chip", chipName(device)},
            {"bitmapName", device.bitmapName},
            {"libraryName", device.libraryName},
            {"formatVersion", fromField(device.header.version)},
            {"gsdRevision", device.isFromGsd ? Json(device.gsdRevision) : Json()}};
}

Json featuresJson(const Device& device)
{
    Json json = {{"modular", device.isModular}, {"dpv1", device.isDpv1 ? Json(*device.isDpv1) : Json()}};
    for (const FeatureName& feature : featureNames())
        json[feature.name] = device.has(feature.feature);
    return json;
}

Json baudRatesJson(const Device& device)
{
    return baudRates(device);
}

Json limitsJson(const Device& device)
{
    const SLAVE_TYPEDATA_TYPE& data = device.data;
    return {{"maxModules", data.maxModule},
            {"maxInputBytes", data.maxInputLen},
            {"maxInputBits", data.maxInputBits},
            {"maxOutputBytes", data.maxOutputLen},
            {"maxOutputBits", data.maxOutputBits},
            {"maxDataBytes", data.maxDataLen},
            {"maxDiagnosticBytes", data.maxDiagDataLen},
            {"userParameterBytes", device.parameterBudget()},
            {"stationParameterBytes", device.parameters.bytes.size()},
            {"minSlaveIntervalMicroseconds", data.minSlaveInterval * 100},
            {"eterDelay", data.eterDelay},
            {"maxResponseDelay", data.maxResponseDelay}};
}

Json slotsJson(const Device& device)
{
    Json numbering;
    if (device.slotNumbering) {
        numbering = {{"text", fromField(device.slotNumbering->text)},
                     {"value1", device.slotNumbering->value1},
                     {"value2", device.slotNumbering->value2},
                     {"digit", device.slotNumbering->digit}};
    }
    Json preset = Json::array();
    for (const PresetSlot& slot : device.presetSlots) {
        preset.push_back({{"slot", preset.size() + 1},
                          {"fixed", slot.isFixed},
                          {"name", slot.name},
                          {"orderNumber", slot.orderNumber},
                          {"identifier", identifierJson(slot.identifier)},
                          {"block", blockJson(slot.block)}});
    }
    return {{"offset", device.slotOffset},
            {"count", device.slotCount()},
            {"kgpSlots", device.data.slotCount},
            {"numbering", numbering},
            {"preset", preset}};
}

Json partJson(const ModulePart& part)
{
    return {{"text", part.text},
            {"orderNumber", part.orderNumber},
            {"identifier", identifierJson(part.identifier)},
            {"block", blockJson(part.block)}};
}

Json modulesJson(const Device& device)
{
    Json list = Json::array();
    for (const Module& module : device.modules) {
        Json entry = {{"number", list.size() + 1},
                      {"name", module.name},
                      {"fullName", module.fullName},
                      {"reference", module.reference ? Json(*module.reference) : Json()},
                      {"infoText", module.infoText},
                      {"channelErrors", valueTextsJson(module.channelTexts)},
                      {"safetyParameters", module.hasSafetyParameters},
                      {"source", module.isFromOrderList ? "orderNumberList" : "moduleList"},
                      {"fixed", module.isFixed}};
        if (module.kgp) {
            entry["kgp"] = {{"number", module.kgp->number},
                            {"values", module.kgp->values},
                            {"block", blockJson(module.parts.front().block)}};
        }
        entry["parts"] = module.kgp ? Json::array() : listJson(module.parts, partJson);
        list.push_back(std::move(entry));
    }
    return list;
}

Json parameterJson(const Parameter& parameter)
{
    Json json = {{"name", parameter.name}, {"type", typeName(parameter.type)}, {"byte", parameter.byte}};
    if (parameter.type == Parameter::kBit || parameter.type == Parameter::kBitGroup) {
        json["firstBit"] = parameter.firstBit;
        json["bitCount"] = parameter.bitCount;
    }
    json["default"] = parameter.defaultValue;
    json["minimum"] = parameter.minimum;
    json["maximum"] = parameter.maximum;
    json["allowed"] = parameter.allowed;
    json["changeable"] = parameter.isChangeable;
    json["visible"] = parameter.isVisible;
    json["mayBeShortened"] = parameter.mayBeShortened;
    json["texts"] = valueTextsJson(parameter.texts);
    return json;
}

Json areaJson(const ParameterArea& area)
{
    return {{"bytes", area.bytes}, {"parameters", listJson(area.parameters, parameterJson)}};
}

Json parametersJson(const Device& device)
{
    return areaJson(device.parameters);
}

Json blocksJson(const Device& device)
{
    Json list = Json::array();
    for (const ParameterArea& block : device.blocks) {
        Json entry = {{"number", list.size() + 1}};
        entry.update(areaJson(block));
        entry["slotNumbers"] = listJson(block.slotNumbers, [](const SlotNumberField& field) -> Json {
            return {{"byte", field.byte}, {"byteCount", field.byteCount}};
        });
        list.push_back(std::move(entry));
    }
    return list;
}

Json diagnosticsJson(const Device& device)
{
    const auto bit = [](const BitText& entry) -> Json {
        return {{"byte", entry.byte},   {"bit", entry.bit},         {"set", entry.set},
                {"clear", entry.clear}, {"setHelp", entry.setHelp}, {"clearHelp", entry.clearHelp}};
    };
    const auto area = [](const AreaText& entry) -> Json {
        return {{"byte", entry.byte},
                {"firstBit", entry.firstBit},
                {"lastBit", entry.lastBit},
                {"texts", valueTextsJson(entry.texts)}};
    };
    const auto type = [&](const DiagnosisType& entry) -> Json {
        return {{"number", entry.number},
                {"bits", listJson(entry.texts.bits, bit)},
                {"areas", listJson(entry.texts.areas, area)}};
    };
    return {{"bits", listJson(device.diagnosisTexts.bits, bit)},
            {"areas", listJson(device.diagnosisTexts.areas, area)},
            {"types", listJson(device.diagnosisTypes, type)},
            {"channelErrors", valueTextsJson(device.channelTexts)}};
}

/// null for a type file.
Json gsdJson(const Device& device)
{
    if (!device.gsd)
        return nullptr;
    const GsdFacts& facts = *device.gsd;
    const auto named = [](const NamedNumber& entry) -> Json { return {{"name", entry.name}, {"value", entry.value}}; };
    const auto rule = [](const SlotRule& entry) -> Json {
        const auto range = [](const SlotRule::References& allowed) -> Json {
            return {{"first", allowed.first}, {"last", allowed.last}};
        };
        return {{"slot", entry.slot},
                {"name", entry.name},
                {"preset", entry.preset ? Json(*entry.preset) : Json()},
                {"allowed", listJson(entry.allowed, range)}};
    };
    return {{"modelName", facts.modelName},
            {"vendorName", facts.vendorName},
            {"revision", facts.revision},
            {"hardwareRelease", facts.hardwareRelease},
            {"softwareRelease", facts.softwareRelease},
            {"infoText", facts.infoText},
            {"maxModules", facts.maxModule ? Json(*facts.maxModule) : Json()},
            {"maxTsdr", listJson(facts.maxTsdr, named)},
            {"slotDefinitions", listJson(facts.slots, rule)},
            {"safetyParameters", facts.hasSafetyParameters},
            {"others", listJson(facts.others, named)}};
}

Json warningsJson(const Device& device)
{
    return listJson(device.warnings, [](const GSD_WARNING_ITEM& warning) -> Json {
        return {{"line", warning.lineNumber}, {"code", warning.code}, {"text", resultText(warning.code)}};
    });
}

struct Section {
    const char* name;
    Json (*json)(const Device&);
};
constexpr std::array<Section, 11> kSections = {
    Section{"identification", identificationJson},
    Section{"features", featuresJson},
    Section{"baudRates", baudRatesJson},
    Section{"limits", limitsJson},
    Section{"slots", slotsJson},
    Section{"modules", modulesJson},
    Section{"parameters", parametersJson},
    Section{"blocks", blocksJson},
    Section{"diagnostics", diagnosticsJson},
    Section{"gsd", gsdJson},
    Section{"warnings", warningsJson},
};

} // namespace

const std::vector<std::string>& sectionNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> list;
        list.reserve(kSections.size());
        for (const Section& section : kSections)
            list.emplace_back(section.name);
        return list;
    }();
    return names;
}

Json sectionJson(const Device& device, const std::string& section)
{
    for (const Section& candidate : kSections) {
        if (section == candidate.name)
            return candidate.json(device);
    }
    return nullptr;
}

Json identifierJson(const Identifier& identifier)
{
    return {{"format", formatName(identifier.format)},
            {"bytes", identifier.fileBytes},
            {"wireBytes", identifier.wireBytes},
            {"input", dataJson(identifier.input)},
            {"output", dataJson(identifier.output)},
            {"manufacturerBytes", identifier.manufacturerBytes},
            {"text", inWords(identifier)}};
}

} // namespace typdescriptor
