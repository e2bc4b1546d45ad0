#include "tools/diagnosisText.h"

#include "host/hexBytes.h"
#include "tools/terminal.h"

#include <array>

using namespace typdescriptor;

namespace {

constexpr std::size_t kStationBytes = 6;
constexpr const char* kNoText = "(the device has no text for it)";

std::string number(std::size_t value)
{
    return std::to_string(value);
}

std::string stationText(const StationStatus& station, std::size_t size)
{
    std::string text;
    for (const DiagnosisState& state : station.states)
        text += "  " + state.text + '\n';
    if (station.states.empty() && size > 0)
        text += "  no state is set\n";
    if (!station.isPresent || size < kStationBytes)
        return text;
    text += "  master: " + (station.master ? "address " + number(*station.master) : "none") + '\n';
    if (station.identNumber)
        text += "  ident number: " + hexWord(*station.identNumber) + '\n';
    return text;
}

std::string helpText(const std::string& help)
{
    return help.empty() ? "" : "      " + help + '\n';
}

std::string deviceText(const std::vector<DeviceEntry>& entries)
{
    std::string text;
    for (const DeviceEntry& entry : entries) {
        text += "  byte " + number(entry.byte);
        if (entry.firstBit == entry.lastBit)
            text += " bit " + number(entry.firstBit) + (entry.value != 0 ? " set: " : " clear: ");
        else
            text +=
                " bits " + number(entry.firstBit) + '-' + number(entry.lastBit) + " = " + number(entry.value) + ": ";
        text += (entry.text.empty() ? kNoText : entry.text) + '\n' + helpText(entry.help);
    }
    return text;
}

/// For example: slot 3 "left end" (40-4AI Pt100).
std::string slotText(unsigned slot, const std::string& slotName, const std::string& module)
{
    if (slot == 0)
        return "the station";
    return "slot " + number(slot) + (slotName.empty() ? "" : " \"" + slotName + '"') +
           (module.empty() ? "" : " (" + module + ')');
}

/// Identifiers count from 0 on the wire, places and slots from 1.
std::string placeText(const IdentifierPlace& place)
{
    std::string text = "identifier " + number(place.identifier);
    if (place.slot == 0)
        return text + " (place " + number(place.identifier + 1) + ')';
    return text + " (" + slotText(place.slot, place.slotName, "") + ", " + place.module + ')';
}

std::string channelText(const ChannelEntry& entry)
{
    return "  " + placeText(entry.place) + ", channel " + number(entry.channel) + ", " + entry.direction + ", " +
           entry.unit + ": " + (entry.text.empty() ? kNoText : entry.text) + " (error type " + number(entry.errorType) +
           ")\n" + helpText(entry.help);
}

std::string dpv1Text(const Dpv1Entry& entry)
{
    std::string text = "  " + entry.text + " (type " + number(entry.type) + ") of " +
                       slotText(entry.slot, entry.slotName, entry.module);
    if (entry.specifier != "none")
        text += ": " + entry.specifierText;
    if (entry.sequence)
        text += ", sequence number " + number(*entry.sequence);
    if (entry.wantsAcknowledgement)
        text += ", waits for an acknowledgement of its own";
    return text + '\n';
}

std::string userDataText(const DiagnosisBlock& block)
{
    const std::vector<std::uint8_t>& data = block.dpv1->userData;
    return (data.empty() ? "" : "  data: " + asHex(data) + '\n') + deviceText(block.device);
}

std::string modulesText(const DiagnosisBlock& block)
{
    std::string text;
    for (const ModuleState& state : block.modules)
        text += "  " + slotText(state.slot, state.slotName, state.module) + ": " + state.text + '\n';
    return text;
}

std::string linksText(const DiagnosisBlock& block)
{
    std::string text;
    for (const LinkState& link : block.links)
        text += "  publisher " + number(link.publisher) + (link.isActive ? ": active" : ": not active") +
                (link.hasWrongLength ? ", wrong length\n" : "\n");
    return text;
}

std::string identifiersText(const DiagnosisBlock& block)
{
    std::string text;
    for (const IdentifierPlace& place : block.identifiers)
        text += "  " + placeText(place) + " has a diagnosis\n";
    return text.empty() ? "  no identifier has a diagnosis\n" : text;
}

std::string blockText(const DiagnosisBlock& block)
{
    switch (block.kind) {
    case DiagnosisBlock::kDevice:
        return block.device.empty() ? "  nothing is set\n" : deviceText(block.device);
    case DiagnosisBlock::kIdentifier:
        return identifiersText(block);
    case DiagnosisBlock::kChannel:
        return block.channel ? channelText(*block.channel) : "";
    case DiagnosisBlock::kRevision:
        return "  revision " + number(block.revision) + '\n';
    case DiagnosisBlock::kModuleStatus:
        return modulesText(block);
    case DiagnosisBlock::kLinkStatus:
        return linksText(block);
    default:
        return block.dpv1 ? dpv1Text(*block.dpv1) + userDataText(block) : "";
    }
}

const char* headingOf(DiagnosisBlock::Kind kind)
{
    constexpr std::array<const char*, 8> kHeadings = {"Device-related diagnosis",
                                                      "Identifier-related diagnosis",
                                                      "Channel-related diagnosis",
                                                      "Revision number",
                                                      "Alarm",
                                                      "Status",
                                                      "Module status",
                                                      "Link status"};
    return kHeadings.at(kind);
}

} // namespace

std::string diagnosisText(const Diagnosis& diagnosis, bool inColour)
{
    std::string text =
        coloured("Station", Colour::kBold, inColour) + '\n' + stationText(diagnosis.station, diagnosis.telegram.size());
    for (const DiagnosisBlock& block : diagnosis.blocks)
        text += coloured(headingOf(block.kind), Colour::kBold, inColour) + "  [" + asHex(block.bytes) + "]\n" +
                blockText(block);
    for (const DiagnosisState& note : diagnosis.notes)
        text += "note: " + note.text + '\n';
    return text;
}
