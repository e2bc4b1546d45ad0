#include "tools/diagnosis.h"

#include <algorithm>
#include <array>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStationBytes = 6;
constexpr std::size_t kMasterByte = 3;
constexpr std::size_t kIdentByte = 4;
constexpr unsigned kNoMaster = 255;
constexpr std::size_t kChannelBlockSize = 3;
constexpr unsigned kLengthMask = 0x3F; // of a block's header byte

struct StationBit {
    std::size_t byte;
    unsigned bit;
    const char* text;
};
constexpr std::array<StationBit, 16> kStationBits = {
    StationBit{0, 0, "station does not exist (said by the master)"},
    StationBit{0, 1, "station is not ready for data exchange"},
    StationBit{0, 2, "configuration fault"},
    StationBit{0, 3, "extended diagnosis: there is a fault"},
    StationBit{0, 4, "requested function is not supported"},
    StationBit{0, 5, "invalid answer of the station (said by the master)"},
    StationBit{0, 6, "parameter fault"},
    StationBit{0, 7, "locked by another master (said by the master)"},
    StationBit{1, 0, "must be parameterised anew"},
    StationBit{1, 1, "static diagnosis: the station cannot give valid data"},
    StationBit{1, 3, "watchdog on"},
    StationBit{1, 4, "freeze mode"},
    StationBit{1, 5, "sync mode"},
    StationBit{1, 6, "not present (said by the master)"},
    StationBit{1, 7, "deactivated (said by the master)"},
    StationBit{2, 7, "diagnosis overflow: more than fits the telegram"},
};

constexpr std::array<const char*, 16> kChannelErrors = {"reserved",
                                                        "short circuit",
                                                        "undervoltage",
                                                        "overvoltage",
                                                        "overload",
                                                        "overtemperature",
                                                        "line break",
                                                        "upper limit exceeded",
                                                        "lower limit exceeded",
                                                        "error",
                                                        "reserved",
                                                        "reserved",
                                                        "reserved",
                                                        "reserved",
                                                        "reserved",
                                                        "reserved"};
constexpr std::array<const char*, 4> kDirections = {"", "input", "output", "input and output"};
constexpr std::array<const char*, 8> kUnits = {"", "bit", "2 bits", "4 bits", "byte", "word", "2 words", ""};

std::string hexByte(std::uint8_t byte)
{
    return "0x" + asHex({byte});
}

bool hasBit(std::uint8_t byte, unsigned bit)
{
    return (byte >> bit & 1U) != 0;
}

void explainStation(const Device& device, const Bytes& telegram, Diagnosis& diagnosis)
{
    StationStatus& station = diagnosis.station;
    for (const StationBit& row : kStationBits) {
        if (row.byte < telegram.size() && hasBit(telegram[row.byte], row.bit))
            station.states.emplace_back(row.text);
    }
    if (telegram.size() > kMasterByte && telegram[kMasterByte] != kNoMaster)
        station.master = telegram[kMasterByte];
    if (telegram.size() < kStationBytes) {
        diagnosis.problems.push_back("the answer has " + std::to_string(telegram.size()) +
                                     (telegram.size() == 1 ? " byte" : " bytes") +
                                     ": the station status alone takes 6");
        return;
    }
    station.identNumber = telegram[kIdentByte] * 256U + telegram[kIdentByte + 1];
    if (*station.identNumber != device.header.identNumber)
        diagnosis.problems.push_back("ident number " + asHex({telegram[kIdentByte], telegram[kIdentByte + 1]}) +
                                     " is not that of the device, " +
                                     asHex({static_cast<std::uint8_t>(device.header.identNumber >> 8U),
                                            static_cast<std::uint8_t>(device.header.identNumber & 0xFFU)}));
}

/// One byte of the device-related diagnosis: its bits, then the areas that begin in it.
void explainDeviceByte(const Device& device, unsigned number, std::uint8_t byte, std::vector<DeviceEntry>& entries)
{
    unsigned inAreas = 0; // bits that belong to an area
    std::vector<DeviceEntry> areas;
    for (const AreaText& area : device.areaTexts) {
        if (area.byte != number)
            continue;
        const unsigned mask = (1U << (area.lastBit - area.firstBit + 1)) - 1;
        const unsigned value = byte >> area.firstBit & mask;
        inAreas |= mask << area.firstBit;
        const auto text = std::find_if(area.texts.begin(), area.texts.end(),
                                       [value](const ValueText& row) { return row.value == static_cast<int>(value); });
        if (text == area.texts.end() && value == 0)
            continue;
        areas.push_back(
            {number, area.firstBit, area.lastBit, value, text == area.texts.end() ? std::string() : text->text});
    }
    for (unsigned bit = 0; bit < 8; ++bit) {
        const unsigned value = hasBit(byte, bit) ? 1 : 0;
        const auto known = std::find_if(device.bitTexts.begin(), device.bitTexts.end(),
                                        [=](const BitText& row) { return row.byte == number && row.bit == bit; });
        const bool isKnown = known != device.bitTexts.end();
        const std::string text = isKnown ? (value != 0 ? known->set : known->clear) : std::string();
        if (!text.empty() || (value != 0 && (inAreas >> bit & 1U) == 0))
            entries.push_back({number, bit, bit, value, text});
    }
    entries.insert(entries.end(), areas.begin(), areas.end());
}

void explainDevice(const Device& device, DiagnosisBlock& block)
{
    for (std::size_t i = 1; i < block.bytes.size(); ++i)
        explainDeviceByte(device, static_cast<unsigned>(i), block.bytes[i], block.device);
}

void explainIdentifiers(DiagnosisBlock& block)
{
    for (std::size_t i = 1; i < block.bytes.size(); ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            if (hasBit(block.bytes[i], bit))
                block.identifiers.push_back(static_cast<unsigned>(8 * (i - 1)) + bit);
        }
    }
}

std::string channelErrorText(const Device& device, unsigned errorType)
{
    if (errorType < kChannelErrors.size())
        return kChannelErrors[errorType];
    const auto known = std::find_if(device.channelTexts.begin(), device.channelTexts.end(),
                                    [=](const ValueText& row) { return row.value == static_cast<int>(errorType); });
    return known == device.channelTexts.end() ? std::string() : known->text;
}

void explainChannel(const Device& device, DiagnosisBlock& block)
{
    ChannelEntry entry;
    entry.identifier = block.bytes[0] & kLengthMask;
    entry.channel = block.bytes[1] & 0x3FU;
    entry.direction = kDirections[block.bytes[1] >> 6U];
    entry.unit = kUnits[block.bytes[2] >> 5U];
    entry.errorType = block.bytes[2] & 0x1FU;
    entry.text = channelErrorText(device, entry.errorType);
    block.channel = entry;
}

std::string placeOf(const DiagnosisBlock& block, std::uint8_t header)
{
    constexpr std::array<const char*, 4> kNames = {"device-related block", "identifier-related block", "channel entry",
                                                   "revision number"};
    return std::string(kNames[block.kind]) + " at byte " + std::to_string(block.offset + 1) + " (header " +
           hexByte(header) + ")";
}

/// The bytes that a block says it has, its header byte included; 0 when that cannot be.
std::size_t blockLength(DiagnosisBlock::Kind kind, std::uint8_t header)
{
    constexpr std::size_t kShortest = 2;
    const std::size_t length = header & kLengthMask;
    if (kind == DiagnosisBlock::kChannel)
        return kChannelBlockSize;
    if (kind == DiagnosisBlock::kRevision)
        return 1;
    return length < kShortest ? 0 : length;
}

/// Explains the block at an offset.
/// @return the offset behind it; the end of the telegram when nothing behind it can be told
std::size_t explainBlock(const Device& device, const Bytes& telegram, std::size_t offset, Diagnosis& diagnosis)
{
    const std::uint8_t header = telegram[offset];
    DiagnosisBlock block;
    block.kind = static_cast<DiagnosisBlock::Kind>(header >> 6U);
    block.offset = offset;
    const std::size_t length = blockLength(block.kind, header);
    const std::size_t there = telegram.size() - offset;
    if (length == 0) {
        diagnosis.problems.push_back(placeOf(block, header) +
                                     ": a block has at least 2 bytes, the rest cannot be read");
        return telegram.size();
    }
    const auto start = telegram.begin() + static_cast<std::ptrdiff_t>(offset);
    block.bytes.assign(start, start + static_cast<std::ptrdiff_t>(std::min(length, there)));
    if (length > there)
        diagnosis.problems.push_back(placeOf(block, header) + ": the answer is cut, " + std::to_string(there) + " of " +
                                     std::to_string(length) + " bytes are there");
    if (block.kind == DiagnosisBlock::kDevice)
        explainDevice(device, block);
    else if (block.kind == DiagnosisBlock::kIdentifier)
        explainIdentifiers(block);
    else if (block.kind == DiagnosisBlock::kRevision)
        block.revision = header & kLengthMask;
    else if (length <= there)
        explainChannel(device, block);
    diagnosis.blocks.push_back(std::move(block));
    return offset + std::min(length, there);
}

/// Takes the bytes of one word.
bool takeHexWord(std::string word, Bytes& bytes)
{
    if (word.starts_with("0x") || word.starts_with("0X"))
        word.erase(0, 2);
    if (word.size() == 1)
        word.insert(0, 1, '0');
    if (word.empty() || word.size() % 2 != 0 || word.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return false;
    for (std::size_t i = 0; i < word.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(word.substr(i, 2), nullptr, 16)));
    return true;
}

} // namespace

Diagnosis explainDiagnosis(const Device& device, const Bytes& telegram)
{
    Diagnosis diagnosis;
    explainStation(device, telegram, diagnosis);
    const auto most = static_cast<std::size_t>(std::max(device.data.maxDiagDataLen, 0));
    if (most > 0 && telegram.size() > most)
        diagnosis.problems.push_back("the answer has " + std::to_string(telegram.size()) +
                                     " bytes: the device gives at most " + std::to_string(most));
    for (std::size_t offset = kStationBytes; offset < telegram.size();)
        offset = explainBlock(device, telegram, offset, diagnosis);
    return diagnosis;
}

std::optional<Bytes> parseHexBytes(const std::vector<std::string>& arguments, std::string& wrong)
{
    constexpr const char* kSeparators = " \t\r\n,;:-";
    Bytes bytes;
    for (const std::string& argument : arguments) {
        for (std::size_t start = argument.find_first_not_of(kSeparators); start != std::string::npos;) {
            const std::size_t end = argument.find_first_of(kSeparators, start);
            const std::string word = argument.substr(start, end == std::string::npos ? end : end - start);
            if (!takeHexWord(word, bytes)) {
                wrong = word;
                return std::nullopt;
            }
            start = argument.find_first_not_of(kSeparators, end);
        }
    }
    return bytes;
}
