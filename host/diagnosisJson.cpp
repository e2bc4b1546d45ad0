#include "host/jsonValues.h"

#include <nlohmann/json.hpp>

namespace typdescriptor {

using Json = nlohmann::ordered_json;

namespace {

Json stateJson(const DiagnosisState& state)
{
    return {{"name", state.name}, {"text", state.text}, {"offset", state.offset}, {"byteCount", state.byteCount}};
}

Json statesJson(const std::vector<DiagnosisState>& states)
{
    return listJson(states, stateJson);
}

/// A slot or an address that may not be known.
template <class Number>
Json knownJson(const Number& number, bool isKnown)
{
    return isKnown ? Json(number) : Json();
}

Json placeJson(const IdentifierPlace& place)
{
    return {{"identifier", place.identifier},
            {"slot", knownJson(place.slot, place.slot != 0)},
            {"module", place.module},
            {"slotName", place.slotName}};
}

Json entryJson(const DeviceEntry& entry)
{
    return {{"byte", entry.byte},   {"offset", entry.offset}, {"firstBit", entry.firstBit}, {"lastBit", entry.lastBit},
            {"value", entry.value}, {"text", entry.text},     {"help", entry.help}};
}

Json channelJson(const ChannelEntry& entry)
{
    Json json = placeJson(entry.place);
    json.update(Json{{"channel", entry.channel},
                     {"direction", entry.direction},
                     {"unit", entry.unit},
                     {"errorType", entry.errorType},
                     {"name", entry.name},
                     {"text", entry.text},
                     {"help", entry.help}});
    return json;
}

Json dpv1Json(const Dpv1Entry& entry)
{
    return {{"type", entry.type},
            {"name", entry.name},
            {"text", entry.text},
            {"slot", entry.slot},
            {"module", entry.module},
            {"slotName", entry.slotName},
            {"specifier", entry.specifier},
            {"specifierText", entry.specifierText},
            {"sequence", knownJson(entry.sequence.value_or(0), entry.sequence.has_value())},
            {"wantsAcknowledgement", entry.wantsAcknowledgement},
            {"userData", entry.userData}};
}

Json moduleJson(const ModuleState& state)
{
    return {{"slot", state.slot},
            {"module", state.module},
            {"slotName", state.slotName},
            {"name", state.name},
            {"text", state.text}};
}

Json linkJson(const LinkState& link)
{
    return {{"publisher", link.publisher}, {"active", link.isActive}, {"wrongLength", link.hasWrongLength}};
}

Json blockJson(const DiagnosisBlock& block)
{
    Json json = {{"kind", kindName(block.kind)}, {"offset", block.offset}, {"bytes", block.bytes}};
    switch (block.kind) {
    case DiagnosisBlock::kIdentifier:
        json["identifiers"] = listJson(block.identifiers, placeJson);
        break;
    case DiagnosisBlock::kRevision:
        json["revision"] = block.revision;
        break;
    case DiagnosisBlock::kModuleStatus:
        json["modules"] = listJson(block.modules, moduleJson);
        break;
    case DiagnosisBlock::kLinkStatus:
        json["links"] = listJson(block.links, linkJson);
        break;
    case DiagnosisBlock::kChannel:
        break;
    default:
        json["entries"] = listJson(block.device, entryJson);
    }
    if (block.channel)
        json["channel"] = channelJson(*block.channel);
    if (block.dpv1)
        json["dpv1"] = dpv1Json(*block.dpv1);
    return json;
}

} // namespace

Json diagnosisJson(const Diagnosis& diagnosis)
{
    const StationStatus& station = diagnosis.station;
    return {{"bytes", diagnosis.telegram},
            {"station",
             {{"present", station.isPresent},
              {"states", statesJson(station.states)},
              {"master", station.master ? Json(*station.master) : Json()},
              {"identNumber", station.identNumber ? Json(*station.identNumber) : Json()}}},
            {"blocks", listJson(diagnosis.blocks, blockJson)},
            {"notes", statesJson(diagnosis.notes)},
            {"problems", statesJson(diagnosis.problems)}};
}

} // namespace typdescriptor
