// A diagnosis as text and as JSON.

#include "tools/diagnosis.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <array>

using Json = nlohmann::ordered_json;

namespace {

std::string number(std::size_t value)
{
    return std::to_string(value);
}

std::string stationText(const StationStatus& station)
{
    std::string text;
    for (const std::string& state : station.states)
        text += "  " + state + '\n';
    if (station.states.empty())
        text += "  no state is set\n";
    text += "  master: " + (station.master ? "address " + number(*station.master) : "none") + '\n';
    if (station.identNumber)
        text += "  ident number: " + hexWord(*station.identNumber) + '\n';
    return text;
}

std::string deviceEntryText(const DeviceEntry& entry)
{
    std::string text = "  byte " + number(entry.byte);
    if (entry.firstBit == entry.lastBit)
        text += " bit " + number(entry.firstBit) + (entry.value != 0 ? " set: " : " clear: ");
    else
        text += " bits " + number(entry.firstBit) + '-' + number(entry.lastBit) + " = " + number(entry.value) + ": ";
    return text + (entry.text.empty() ? "(the device has no text for it)" : entry.text) + '\n';
}

/// Identifiers count from 0 on the wire; the place of the module counts from 1.
std::string identifierText(unsigned identifier)
{
    return "identifier " + number(identifier) + " (place " + number(identifier + 1) + ')';
}

std::string channelText(const ChannelEntry& entry)
{
    std::string text = "  " + identifierText(entry.identifier) + ", channel " + number(entry.channel);
    if (*entry.direction != '\0')
        text += std::string(", ") + entry.direction;
    if (*entry.unit != '\0')
        text += std::string(", ") + entry.unit;
    text += ": " + (entry.text.empty() ? "(the device has no text for it)" : entry.text);
    return text + " (error type " + number(entry.errorType) + ")\n";
}

std::string blockText(const DiagnosisBlock& block)
{
    std::string text;
    switch (block.kind) {
    case DiagnosisBlock::kDevice:
        for (const DeviceEntry& entry : block.device)
            text += deviceEntryText(entry);
        return text.empty() ? "  nothing is set\n" : text;
    case DiagnosisBlock::kIdentifier:
        for (const unsigned identifier : block.identifiers)
            text += "  " + identifierText(identifier) + " has a diagnosis\n";
        return text.empty() ? "  no identifier has a diagnosis\n" : text;
    case DiagnosisBlock::kChannel:
        return block.channel ? channelText(*block.channel) : "";
    default:
        return "  revision " + number(block.revision) + '\n';
    }
}

constexpr std::array<const char*, 4> kHeadings = {"Device-related diagnosis", "Identifier-related diagnosis",
                                                  "Channel-related diagnosis", "Revision number"};
constexpr std::array<const char*, 4> kKinds = {"device", "identifier", "channel", "revision"};

Json blockJson(const DiagnosisBlock& block)
{
    Json json = {{"kind", kKinds[block.kind]}, {"offset", block.offset}, {"bytes", block.bytes}};
    if (block.kind == DiagnosisBlock::kDevice) {
        json["entries"] = Json::array();
        for (const DeviceEntry& entry : block.device)
            json["entries"].push_back({{"byte", entry.byte},
                                       {"firstBit", entry.firstBit},
                                       {"lastBit", entry.lastBit},
                                       {"value", entry.value},
                                       {"text", entry.text}});
    }
    if (block.kind == DiagnosisBlock::kIdentifier)
        json["identifiers"] = block.identifiers;
    if (block.kind == DiagnosisBlock::kRevision)
        json["revision"] = block.revision;
    if (block.channel)
        json["channel"] = {{"identifier", block.channel->identifier}, {"channel", block.channel->channel},
                           {"direction", block.channel->direction},   {"unit", block.channel->unit},
                           {"errorType", block.channel->errorType},   {"text", block.channel->text}};
    return json;
}

} // namespace

std::string diagnosisText(const Diagnosis& diagnosis, bool inColour)
{
    std::string text = coloured("Station", Colour::kBold, inColour) + '\n' + stationText(diagnosis.station);
    for (const DiagnosisBlock& block : diagnosis.blocks)
        text += coloured(kHeadings[block.kind], Colour::kBold, inColour) + "  [" + asHex(block.bytes) + "]\n" +
                blockText(block);
    return text;
}

Json diagnosisJson(const Diagnosis& diagnosis)
{
    const StationStatus& station = diagnosis.station;
    Json blocks = Json::array();
    for (const DiagnosisBlock& block : diagnosis.blocks)
        blocks.push_back(blockJson(block));
    return {{"station",
             {{"states", station.states},
              {"master", station.master ? Json(*station.master) : Json()},
              {"identNumber", station.identNumber ? Json(*station.identNumber) : Json()}}},
            {"blocks", blocks},
            {"problems", diagnosis.problems}};
}
