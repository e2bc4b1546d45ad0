#include "host/diagnosis.h"

#include "host/diagnosisBlocks.h"
#include "host/hexBytes.h"

#include <algorithm>
#include <array>

namespace typdescriptor {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStationBytes = 6;
constexpr std::size_t kMasterByte = 3;
constexpr std::size_t kIdentByte = 4;
constexpr unsigned kNoMaster = 255;
constexpr std::size_t kChannelBlockSize = 3;
constexpr unsigned kLengthMask = 0x3F; // of a block's header byte
constexpr std::size_t kMostBytes = 244;
constexpr unsigned kShortestDpv1 = 4; // alarm or status, with its header

struct StationBit {
    std::size_t byte;
    unsigned bit;
    const char* name;
    const char* text;
};
constexpr std::array kStationBits = {
    StationBit{0, 0, "stationNonExistent", "station does not exist (said by the master)"},
    StationBit{0, 1, "stationNotReady", "station is not ready for data exchange"},
    StationBit{0, 2, "configurationFault", "configuration fault"},
    StationBit{0, 3, "extendedDiagnosis", "extended diagnosis: there is a fault"},
    StationBit{0, 4, "notSupported", "requested function is not supported"},
    StationBit{0, 5, "invalidSlaveResponse", "invalid answer of the station (said by the master)"},
    StationBit{0, 6, "parameterFault", "parameter fault"},
    StationBit{0, 7, "masterLock", "locked by another master (said by the master)"},
    StationBit{1, 0, "parametersRequested", "must be parameterised anew"},
    StationBit{1, 1, "staticDiagnosis", "static diagnosis: the station cannot give valid data"},
    StationBit{1, 3, "watchdogOn", "watchdog on"},
    StationBit{1, 4, "freezeMode", "freeze mode"},
    StationBit{1, 5, "syncMode", "sync mode"},
    StationBit{1, 7, "deactivated", "deactivated (said by the master)"},
    StationBit{2, 7, "diagnosisOverflow", "diagnosis overflow: more than fits the telegram"},
};
constexpr std::uint8_t kAbsent = 0x01;            // in the first byte
constexpr std::uint8_t kExtendedDiagnosis = 0x08; // in the first byte
constexpr std::uint8_t kFixedBit = 0x04;          // in the second byte: always 1
constexpr std::uint8_t kOverflow = 0x80;          // in the third byte
/// The bits of the three status bytes that say nothing and are 0.
constexpr std::array<std::uint8_t, 3> kReservedBits = {0x00, 0x40, 0x7F};

struct ErrorType {
    const char* name;
    const char* text;
};
constexpr unsigned kFirstMakerError = 16;
constexpr ErrorType kReservedError = {"reserved", "reserved"};
constexpr std::array<ErrorType, 10> kChannelErrors = {
    kReservedError,
    ErrorType{"shortCircuit", "short circuit"},
    ErrorType{"undervoltage", "undervoltage"},
    ErrorType{"overvoltage", "overvoltage"},
    ErrorType{"overload", "overload"},
    ErrorType{"overtemperature", "overtemperature"},
    ErrorType{"lineBreak", "line break"},
    ErrorType{"upperLimitExceeded", "upper limit exceeded"},
    ErrorType{"lowerLimitExceeded", "lower limit exceeded"},
    ErrorType{"error", "error"},
};
constexpr std::array<const char*, 4> kDirections = {"reserved direction", "input", "output", "input and output"};
constexpr std::array<const char*, 8> kUnits = {"reserved type", "bit",  "2 bits",  "4 bits",
                                               "byte",          "word", "2 words", "reserved type"};

std::string hexByte(std::uint8_t byte)
{
    return "0x" + asHex({byte});
}

bool hasBit(std::uint8_t byte, unsigned bit)
{
    return (byte >> bit & 1U) != 0;
}

std::string countedBytes(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

void explainIdent(const Device& device, const Bytes& telegram, Diagnosis& diagnosis)
{
    const unsigned ident = identNumberIn(telegram).value_or(0);
    diagnosis.station.identNumber = ident;
    if (ident != device.header.identNumber)
        diagnosis.problems.push_back(
            {"identNumber",
             "ident number " + hexWord(ident) + " is not that of the device, " + hexWord(device.header.identNumber),
             kIdentByte, 2});
}

/// The bits that are the same in every answer of a station.
void checkFixedBits(const Bytes& telegram, Diagnosis& diagnosis)
{
    if (telegram.size() > 1 && (telegram[1] & kFixedBit) == 0)
        diagnosis.problems.push_back({"fixedBit", "bit 2 of byte 1 is 0: it is 1 in every answer of a station", 1, 1});
    for (std::size_t i = 0; i < std::min(telegram.size(), kReservedBits.size()); ++i) {
        if ((telegram[i] & kReservedBits[i]) != 0)
            diagnosis.problems.push_back(
                {"reservedBit", "byte " + std::to_string(i) + " (" + hexByte(telegram[i]) + "): a reserved bit is set",
                 i, 1});
    }
}

void explainStation(const Device& device, const Bytes& telegram, Diagnosis& diagnosis)
{
    StationStatus& station = diagnosis.station;
    for (const StationBit& row : kStationBits) {
        if (row.byte < telegram.size() && hasBit(telegram[row.byte], row.bit))
            station.states.push_back({row.name, row.text, row.byte, 1});
    }
    station.isPresent = telegram.empty() || (telegram[0] & kAbsent) == 0;
    if (telegram.size() > kMasterByte && telegram[kMasterByte] != kNoMaster)
        station.master = telegram[kMasterByte];
    if (station.isPresent)
        checkFixedBits(telegram, diagnosis);
    else
        diagnosis.notes.push_back(
            {"madeByMaster", "the station does not answer: the master made this diagnosis, its other bytes say nothing",
             0, telegram.size()});
    if (telegram.size() < kStationBytes)
        diagnosis.problems.push_back({"cut",
                                      "the answer has " + countedBytes(telegram.size()) +
                                          ": the station status alone takes " + std::to_string(kStationBytes),
                                      0, telegram.size()});
    else if (station.isPresent)
        explainIdent(device, telegram, diagnosis);
}

/// The bits `first` to `last` of a run of bytes as a number; nothing when they do not all lie in it.
std::optional<unsigned> valueOf(const Bytes& block, unsigned byte, unsigned first, unsigned last)
{
    if (byte + last / 8 >= block.size())
        return std::nullopt;
    unsigned value = 0;
    for (unsigned bit = first; bit <= last; ++bit)
        value |= (hasBit(block[byte + bit / 8], bit % 8) ? 1U : 0U) << (bit - first);
    return value;
}

std::vector<DeviceEntry> areasOf(const DiagnosisTexts& texts, const Bytes& block, unsigned first)
{
    std::vector<DeviceEntry> entries;
    for (const AreaText& area : texts.areas) {
        const auto value = area.byte < first ? std::nullopt : valueOf(block, area.byte, area.firstBit, area.lastBit);
        if (!value)
            continue;
        const auto text = std::find_if(area.texts.begin(), area.texts.end(),
                                       [&value](const ValueText& row) { return row.value == *value; });
        DeviceEntry entry{area.byte, 0, area.firstBit, area.lastBit, *value, {}, {}};
        if (text != area.texts.end()) {
            entry.text = text->text;
            entry.help = text->help;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool covers(const DeviceEntry& area, unsigned byte, unsigned bit)
{
    const unsigned position = 8 * byte + bit;
    return position >= 8 * area.byte + area.firstBit && position <= 8 * area.byte + area.lastBit;
}

void addBits(const DiagnosisTexts& texts, std::uint8_t value, unsigned byte, const std::vector<DeviceEntry>& areas,
             std::vector<DeviceEntry>& entries)
{
    for (unsigned bit = 0; bit < 8; ++bit) {
        const bool isSet = hasBit(value, bit);
        const auto known = std::find_if(texts.bits.begin(), texts.bits.end(),
                                        [=](const BitText& row) { return row.byte == byte && row.bit == bit; });
        DeviceEntry entry{byte, 0, bit, bit, isSet ? 1U : 0U, {}, {}};
        if (known != texts.bits.end()) {
            entry.text = isSet ? known->set : known->clear;
            entry.help = isSet ? known->setHelp : known->clearHelp;
        }
        const bool isInArea =
            std::any_of(areas.begin(), areas.end(), [=](const DeviceEntry& area) { return covers(area, byte, bit); });
        if (!entry.text.empty() || (isSet && !isInArea))
            entries.push_back(std::move(entry));
    }
}

/// Says where an identifier is named that the configuration does not have.
void checkIdentifier(const DiagnosisContext& context, const IdentifierPlace& place, std::size_t offset,
                     Diagnosis& diagnosis)
{
    if (context.configuration != nullptr && place.slot == 0)
        diagnosis.problems.push_back(
            {"identifierNotConfigured",
             "identifier " + std::to_string(place.identifier) + ": the configuration has none of this number", offset,
             1});
}

void explainIdentifiers(const DiagnosisContext& context, DiagnosisBlock& block, Diagnosis& diagnosis)
{
    for (std::size_t i = 1; i < block.bytes.size(); ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            if (!hasBit(block.bytes[i], bit))
                continue;
            block.identifiers.push_back(placeOfIdentifier(context, static_cast<unsigned>(8 * (i - 1)) + bit));
            checkIdentifier(context, block.identifiers.back(), block.offset + i, diagnosis);
        }
    }
}

/// The text that the device has for a maker's error type: that of the module, or else of the station.
void setMakerText(const DiagnosisContext& context, ChannelEntry& entry)
{
    const auto take = [&entry](const std::vector<ValueText>& texts) {
        const auto known = std::find_if(texts.begin(), texts.end(),
                                        [&entry](const ValueText& row) { return row.value == entry.errorType; });
        if (known == texts.end())
            return false;
        entry.text = known->text;
        entry.help = known->help;
        return true;
    };
    entry.name = "makerSpecific";
    const Slot* const slot = slotOf(context, entry.place.slot);
    if (slot != nullptr && take(slot->channelTexts))
        return;
    take(context.device.channelTexts);
}

void explainChannel(const DiagnosisContext& context, DiagnosisBlock& block, Diagnosis& diagnosis)
{
    ChannelEntry entry;
    const unsigned direction = block.bytes[1] >> 6U;
    const unsigned unit = block.bytes[2] >> 5U;
    entry.place = placeOfIdentifier(context, block.bytes[0] & kLengthMask);
    checkIdentifier(context, entry.place, block.offset, diagnosis);
    entry.channel = block.bytes[1] & 0x3FU;
    entry.direction = kDirections[direction];
    entry.unit = kUnits[unit];
    entry.errorType = block.bytes[2] & 0x1FU;
    if (entry.errorType < kFirstMakerError) {
        const ErrorType& type =
            entry.errorType < kChannelErrors.size() ? kChannelErrors[entry.errorType] : kReservedError;
        entry.name = type.name;
        entry.text = type.text;
    } else {
        setMakerText(context, entry);
    }
    if (direction == 0)
        diagnosis.problems.push_back(
            {"reservedDirection", "channel entry: direction 0 is reserved", block.offset + 1, 1});
    if (unit == 0 || unit == kUnits.size() - 1)
        diagnosis.problems.push_back({"reservedChannelType",
                                      "channel entry: channel type " + std::to_string(unit) + " is reserved",
                                      block.offset + 2, 1});
    block.channel = std::move(entry);
}

std::string placeOf(const DiagnosisBlock& block)
{
    constexpr std::array<const char*, 4> kNames = {"device-related block", "identifier-related block", "channel entry",
                                                   "revision number"};
    return std::string(kNames[block.kind]) + " at byte " + std::to_string(block.offset) + " (header " +
           hexByte(block.bytes[0]) + ")";
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

void explainContents(const DiagnosisContext& context, DiagnosisBlock& block, bool isWhole, Diagnosis& diagnosis)
{
    switch (block.kind) {
    case DiagnosisBlock::kDevice:
        if (context.isDpv1 && (block.bytes[0] & kLengthMask) >= kShortestDpv1)
            explainDpv1(context, block, diagnosis);
        else
            block.device = entriesOf(context.device.diagnosisTexts, block, 1);
        break;
    case DiagnosisBlock::kIdentifier:
        explainIdentifiers(context, block, diagnosis);
        break;
    case DiagnosisBlock::kChannel:
        if (isWhole)
            explainChannel(context, block, diagnosis);
        break;
    default:
        block.revision = block.bytes[0] & kLengthMask;
    }
}

/// Explains the block at an offset.
/// @return the offset behind it; the end of the telegram when nothing behind it can be told
std::size_t explainBlock(const DiagnosisContext& context, std::size_t offset, Diagnosis& diagnosis)
{
    const Bytes& telegram = diagnosis.telegram;
    DiagnosisBlock block;
    block.kind = static_cast<DiagnosisBlock::Kind>(telegram[offset] >> 6U);
    block.offset = offset;
    block.bytes = {telegram[offset]};
    const std::size_t length = blockLength(block.kind, telegram[offset]);
    const std::size_t there = telegram.size() - offset;
    const std::string place = placeOf(block);
    if (length == 0) {
        diagnosis.problems.push_back(
            {"shortBlock", place + ": a block has at least 2 bytes, the rest cannot be read", offset, there});
        return telegram.size();
    }
    const auto start = telegram.begin() + static_cast<std::ptrdiff_t>(offset);
    block.bytes.assign(start, start + static_cast<std::ptrdiff_t>(std::min(length, there)));
    if (length > there)
        diagnosis.problems.push_back({"cut",
                                      place + ": the answer is cut, " + std::to_string(there) + " of " +
                                          std::to_string(length) + " bytes are there",
                                      offset, there});
    explainContents(context, block, length <= there, diagnosis);
    if (context.isDpv1 && block.kind == DiagnosisBlock::kDevice)
        diagnosis.notes.push_back({"notDpv1",
                                   place + ": an alarm or status has at least " + std::to_string(kShortestDpv1) +
                                       " bytes, so this is read as the device's own bits",
                                   offset, block.bytes.size()});
    diagnosis.blocks.push_back(std::move(block));
    return offset + std::min(length, there);
}

/// A bit says whether there is a fault; the blocks tell which.
void compareWithBlocks(const Bytes& telegram, Diagnosis& diagnosis)
{
    if (telegram.size() < kStationBytes || !diagnosis.station.isPresent)
        return;
    const bool isAnnounced = (telegram[0] & kExtendedDiagnosis) != 0;
    const bool hasBlocks =
        std::any_of(diagnosis.blocks.begin(), diagnosis.blocks.end(),
                    [](const DiagnosisBlock& block) { return block.kind != DiagnosisBlock::kRevision; });
    const bool isOverflow = (telegram[2] & kOverflow) != 0;
    if (isAnnounced && !hasBlocks && !isOverflow)
        diagnosis.problems.push_back(
            {"extendedDiagnosisMissing", "extended diagnosis is announced, and no block follows", 0, 1});
    if (!isAnnounced && hasBlocks)
        diagnosis.notes.push_back(
            {"statusOnly", "extended diagnosis is not announced: what the blocks say is status, not a fault", 0, 1});
}

/// Blocks that occur once at most, and what only a present station sends.
void checkBlocks(Diagnosis& diagnosis)
{
    const auto& blocks = diagnosis.blocks;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const bool isSingle =
            blocks[i].kind == DiagnosisBlock::kIdentifier || blocks[i].kind == DiagnosisBlock::kRevision;
        const auto end = blocks.begin() + static_cast<std::ptrdiff_t>(i);
        if (isSingle &&
            std::any_of(blocks.begin(), end, [&](const auto& block) { return block.kind == blocks[i].kind; }))
            diagnosis.notes.push_back({"repeatedBlock", placeOf(blocks[i]) + ": there is one of its kind already",
                                       blocks[i].offset, blocks[i].bytes.size()});
    }
    if (!diagnosis.station.isPresent && !blocks.empty())
        diagnosis.problems.push_back({"blocksOfAbsentStation", "a station that does not exist sends no blocks",
                                      kStationBytes, diagnosis.telegram.size() - kStationBytes});
}

} // namespace

IdentifierPlace placeOfIdentifier(const DiagnosisContext& context, unsigned identifier)
{
    IdentifierPlace place{identifier, 0, {}, {}};
    if (context.configuration == nullptr)
        return place;
    std::size_t first = 0;
    const std::vector<Slot>& slots = context.configuration->slots;
    for (std::size_t i = 0; i < slots.size(); first += slots[i++].identifiers.size()) {
        if (identifier < first + slots[i].identifiers.size())
            return {identifier, static_cast<unsigned>(i + 1), slots[i].name, slots[i].slotName};
    }
    return place;
}

const Slot* slotOf(const DiagnosisContext& context, unsigned slot)
{
    const bool isKnown = context.configuration != nullptr && slot > 0 && slot <= context.configuration->slots.size();
    return isKnown ? &context.configuration->slots[slot - 1] : nullptr;
}

void checkSlot(const DiagnosisContext& context, unsigned slot, std::size_t offset, Diagnosis& diagnosis)
{
    if (context.configuration != nullptr && slot > context.configuration->slots.size())
        diagnosis.problems.push_back({"slotNotConfigured",
                                      "slot " + std::to_string(slot) + ": the configuration has slots 1 to " +
                                          std::to_string(context.configuration->slots.size()),
                                      offset, 1});
}

std::vector<DeviceEntry> entriesOf(const DiagnosisTexts& texts, const DiagnosisBlock& block, unsigned first)
{
    std::vector<DeviceEntry> areas = areasOf(texts, block.bytes, first);
    std::vector<DeviceEntry> entries;
    for (unsigned byte = first; byte < block.bytes.size(); ++byte) {
        addBits(texts, block.bytes[byte], byte, areas, entries);
        for (const DeviceEntry& area : areas) {
            if (area.byte == byte && (area.value != 0 || !area.text.empty()))
                entries.push_back(area);
        }
    }
    for (DeviceEntry& entry : entries)
        entry.offset = block.offset + entry.byte;
    return entries;
}

const char* kindName(DiagnosisBlock::Kind kind)
{
    constexpr std::array<const char*, 8> kNames = {"device", "identifier", "channel",      "revision",
                                                   "alarm",  "status",     "moduleStatus", "linkStatus"};
    return kNames.at(kind);
}

std::optional<unsigned> identNumberIn(const Bytes& telegram)
{
    if (telegram.size() < kStationBytes || (telegram[0] & kAbsent) != 0)
        return std::nullopt;
    return telegram[kIdentByte] * 256U + telegram[kIdentByte + 1];
}

Diagnosis explainDiagnosis(const Device& device, const Bytes& telegram, const DiagnosisOptions& options)
{
    const DiagnosisContext context{device, options.configuration,
                                   options.isDpv1.value_or(device.isDpv1.value_or(false))};
    Diagnosis diagnosis;
    diagnosis.telegram = telegram;
    explainStation(device, telegram, diagnosis);
    const auto said = static_cast<std::size_t>(std::max(device.data.maxDiagDataLen, 0));
    const std::size_t most = said == 0 ? kMostBytes : said;
    if (telegram.size() > most)
        diagnosis.problems.push_back(
            {"tooLong",
             "the answer has " + countedBytes(telegram.size()) + ": the device gives at most " + std::to_string(most),
             most, telegram.size() - most});
    for (std::size_t offset = kStationBytes; offset < telegram.size();)
        offset = explainBlock(context, offset, diagnosis);
    compareWithBlocks(telegram, diagnosis);
    checkBlocks(diagnosis);
    const bool hasDeviceBlock = std::any_of(diagnosis.blocks.begin(), diagnosis.blocks.end(), [](const auto& block) {
        return block.kind == DiagnosisBlock::kDevice && block.bytes.size() >= 4;
    });
    if (hasDeviceBlock && !options.isDpv1 && !device.isDpv1)
        diagnosis.notes.push_back({"dpv1Unknown",
                                   "a type file does not say whether the device is a DPV1 slave, whose device-related "
                                   "blocks are alarms and status messages",
                                   0, 0});
    return diagnosis;
}

} // namespace typdescriptor
