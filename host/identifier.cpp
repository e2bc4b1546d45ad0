#include "host/identifier.h"

#include "host/hexBytes.h"

#include <string_view>

namespace typdescriptor {

namespace {

constexpr int kSpecialKind = 5;
constexpr int kCompactKind = 3;
constexpr int kGeneralKind = 1;

constexpr unsigned kInputFlag = 1; // of the direction, in every format
constexpr unsigned kOutputFlag = 2;

/// Length code, unit and consistency as the standard's formats share them; the codes count from one unit.
IoData standardData(unsigned byte, unsigned lengthMask)
{
    IoData data;
    data.count = (byte & lengthMask) + 1;
    data.inWords = (byte & 0x40U) != 0;
    data.isConsistent = (byte & 0x80U) != 0 && data.bytes() > 1;
    return data;
}

void setDirections(Identifier& identifier, unsigned direction, const IoData& data)
{
    if ((direction & kInputFlag) != 0)
        identifier.input = data;
    if ((direction & kOutputFlag) != 0)
        identifier.output = data;
}

void decodeGeneral(Identifier& identifier, unsigned byte)
{
    setDirections(identifier, (byte >> 4U) & 3U, standardData(byte, 0x0FU));
}

/// The one-byte format of older station types: its consistency is given for each direction.
void decodeCompact(Identifier& identifier, unsigned byte)
{
    const unsigned code = byte & 3U;
    IoData data;
    data.inWords = (byte & 0x04U) != 0;
    data.count = data.inWords || code == 0 ? code + 1 : (code + 1) / 2;
    setDirections(identifier, (byte >> 3U) & 3U, data);
    if (identifier.input)
        identifier.input->isConsistent = (byte & 0x40U) != 0;
    if (identifier.output)
        identifier.output->isConsistent = (byte & 0x80U) != 0;
}

void decodeSpecial(Identifier& identifier, const CSLAVE_SLOT_PRESET_TYPE& preset)
{
    constexpr unsigned kNoManufacturerBytes = 15;
    const auto first = static_cast<std::uint8_t>(preset.lengthByte1);
    const auto second = static_cast<std::uint8_t>(preset.lengthByte2);
    const unsigned direction = preset.identifier >> 6U;
    if ((direction & kInputFlag) != 0)
        identifier.input = standardData(first, 0x3FU);
    if (direction == kOutputFlag)
        identifier.output = standardData(first, 0x3FU);
    if (direction == (kInputFlag | kOutputFlag))
        identifier.output = standardData(second, 0x3FU);

    std::vector<std::uint8_t>& file = identifier.fileBytes;
    std::vector<std::uint8_t>& wire = identifier.wireBytes;
    if (direction == (kInputFlag | kOutputFlag)) {
        file.insert(file.end(), {first, second});
        wire.insert(wire.end(), {second, first}); // the wire has the output length first
    } else if (direction != 0) {
        file.push_back(first);
        wire.push_back(first);
    }
    const unsigned count = preset.identifier & 0x0FU;
    if (count != kNoManufacturerBytes)
        identifier.manufacturerBytes.assign(preset.mfrData, preset.mfrData + count);
    file.insert(file.end(), identifier.manufacturerBytes.begin(), identifier.manufacturerBytes.end());
    wire.insert(wire.end(), identifier.manufacturerBytes.begin(), identifier.manufacturerBytes.end());
}

std::string dataInWords(const IoData& data, std::string_view direction)
{
    const std::string_view unit = data.inWords ? "word" : "byte";
    std::string words = std::to_string(data.count) + ' ' + std::string(unit);
    words.append(data.count == 1 ? " " : "s ").append(direction);
    if (data.isConsistent)
        return words + ", consistent over the whole length";
    if (data.bytes() > 1)
        words.append(", consistent ").append(unit).append(" by ").append(unit);
    return words;
}

} // namespace

Identifier decodeIdentifier(const CSLAVE_SLOT_PRESET_TYPE& preset)
{
    Identifier identifier;
    identifier.fileBytes = {preset.identifier};
    identifier.wireBytes = {preset.identifier};
    switch (preset.kind) {
    case kGeneralKind:
        identifier.format = Identifier::kGeneral;
        decodeGeneral(identifier, preset.identifier);
        break;
    case kCompactKind:
        identifier.format = Identifier::kCompact;
        decodeCompact(identifier, preset.identifier);
        break;
    case kSpecialKind:
        identifier.format = Identifier::kSpecial;
        decodeSpecial(identifier, preset);
        break;
    default:
        break;
    }
    return identifier;
}

const char* formatName(Identifier::Format format)
{
    switch (format) {
    case Identifier::kGeneral:
        return "general";
    case Identifier::kCompact:
        return "compact";
    case Identifier::kSpecial:
        return "special";
    default:
        return "empty";
    }
}

std::string inWords(const Identifier& identifier)
{
    if (identifier.format == Identifier::kEmpty)
        return "free place";
    std::string words;
    if (identifier.input)
        words = dataInWords(*identifier.input, "input");
    if (identifier.output)
        words += (words.empty() ? "" : "; ") + dataInWords(*identifier.output, "output");
    if (words.empty())
        words = "no data";
    if (!identifier.manufacturerBytes.empty())
        words += "; manufacturer's bytes " + asHex(identifier.manufacturerBytes);
    return words;
}

} // namespace typdescriptor
