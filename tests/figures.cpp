// What the class tells of a device, query by query, as lines "PATH<tab>VALUE" with the paths of the JSON; texts are the bytes
// of the type file. Or the JSON of the host library. figures.py compares them.
//     figures queries FILE
//     figures device FILE

#include "host/json.h"
#include "host/loadDevice.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iterator>
#include <map>
#include <numeric>
#include <string>
#include <vector>

using namespace typdescriptor;

// The code of the public header's manual.
using Bytes = std::vector<unsigned char>;
void appendIdentifier(const CSLAVE_SLOT_PRESET_TYPE& preset, Bytes& configuration);
Bytes stationParameters(const cTypDescriptor& device);
long defaultOf(const _parastruct& parameter);

namespace {

void put(const std::string& path, const std::string& text)
{
    std::printf("%s\t%s\n", path.c_str(), text.c_str());
}

void put(const std::string& path, const char* text)
{
    put(path, std::string(text));
}

void put(const std::string& path, std::int64_t number)
{
    put(path, std::to_string(number));
}

void putFlag(const std::string& path, bool flag)
{
    put(path, flag ? "true" : "false");
}

void putBytes(const std::string& path, const Bytes& bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i)
        put(path + '/' + std::to_string(i), bytes[i]);
}

/// A text of a record: up to its width or a NUL.
template <std::size_t width>
std::string text(const char (&field)[width])
{
    return {field, strnlen(field, width)};
}

template <class List, class Function>
void putEach(const std::string& path, const List& list, Function function)
{
    std::size_t i = 0;
    for (const auto& item : list)
        function(path + '/' + std::to_string(i++), item);
}

/// The numbers 0 to count - 1.
std::vector<int> indexes(int count)
{
    std::vector<int> list(static_cast<std::size_t>(count));
    std::iota(list.begin(), list.end(), 0);
    return list;
}

// By the queries.

struct DirectionData {
    unsigned count;
    bool inWords;
    bool isConsistent;
};

void putData(const std::string& path, const DirectionData& data)
{
    put(path + "/count", data.count);
    put(path + "/unit", data.inWords ? "word" : "byte");
    put(path + "/bytes", data.inWords ? 2 * data.count : data.count);
    put(path + "/consistency", data.isConsistent ? "whole" : "unit");
}

DirectionData dataOf(unsigned byte, unsigned lengthMask)
{
    const DirectionData data{(byte & lengthMask) + 1, (byte & 0x40U) != 0, (byte & 0x80U) != 0};
    return {data.count, data.inWords, data.isConsistent && (data.inWords || data.count > 1)};
}

void putIdentifier(const std::string& path, const CSLAVE_SLOT_PRESET_TYPE& preset)
{
    constexpr int kGeneral = 1;
    constexpr int kSpecial = 5;
    Bytes wire;
    appendIdentifier(preset, wire);
    putBytes(path + "/wireBytes", wire);
    const int lengths = preset.kind == kSpecial ? (preset.identifier >> 6 & 1) + (preset.identifier >> 7) : 0;
    putBytes(path + "/manufacturerBytes", {wire.begin() + 1 + lengths, wire.end()});
    if (lengths == 2)
        std::swap(wire[1], wire[2]);
    putBytes(path + "/bytes", wire);
    put(path + "/format", preset.kind == kGeneral ? "general" : preset.kind == kSpecial ? "special" : "empty");
    const unsigned direction = preset.kind == kGeneral ? preset.identifier >> 4U & 3U : preset.identifier >> 6U;
    const unsigned input = preset.kind == kGeneral ? preset.identifier : static_cast<std::uint8_t>(preset.lengthByte1);
    const unsigned output =
        preset.kind == kSpecial && direction == 3 ? static_cast<std::uint8_t>(preset.lengthByte2) : input;
    const unsigned mask = preset.kind == kGeneral ? 0x0F : 0x3F;
    const bool hasInput = preset.kind != 0 && (direction & 1U) != 0;
    const bool hasOutput = preset.kind != 0 && (direction & 2U) != 0;
    hasInput ? putData(path + "/input", dataOf(input, mask)) : put(path + "/input", "null");
    hasOutput ? putData(path + "/output", dataOf(output, mask)) : put(path + "/output", "null");
}

std::string blockOf(const MLFB_ITEM& item)
{
    return item.spIndex < 0 ? "null" : std::to_string(item.spIndex + 1);
}

void putPart(const std::string& path, const MLFB_ITEM& item, const std::string& entryText)
{
    put(path + "/text", entryText);
    put(path + "/orderNumber", text(item.mlfb));
    putIdentifier(path + "/identifier", item.preset);
    put(path + "/block", blockOf(item));
}

void putParameter(const std::string& path, const _parastruct& parameter, int standardBytes)
{
    static const std::map<std::string, const char*> kTypes = {{"BIT", "bit"},   {"BIN", "binary"}, {"BYT", "uint8"},
                                                              {"INT", "int16"}, {"UIN", "uint16"}, {"BGR", "bitGroup"}};
    const std::string type(parameter.dataType, 3);
    put(path + "/name", text(parameter.name));
    put(path + "/type", kTypes.at(type));
    put(path + "/byte", std::stol(std::string(parameter.reference + 2, 3)) - standardBytes);
    if (type[0] == 'B' && (type == "BIT" || type == "BGR")) {
        put(path + "/firstBit", parameter.dataType[3] - '0');
        put(path + "/bitCount", type == "BIT" ? 1 : parameter.dataType[4] - '0');
    }
    put(path + "/default", defaultOf(parameter));
    put(path + "/minimum", std::strtol(parameter.minValue, nullptr, 10));
    put(path + "/maximum", std::strtol(parameter.maxValue, nullptr, 10));
}

void putMessage(const std::string& path, const PARA_HELPMESSAGE_TYPE& message)
{
    put(path + "/value", message.value);
    put(path + "/text", text(message.text));
}

void putStation(const cTypDescriptor& descriptor)
{
    putBytes("parameters/bytes", stationParameters(descriptor));
    putEach("parameters/parameters", indexes(descriptor.getParaStructCnt()), [&](const std::string& path, int i) {
        _parastruct parameter;
        descriptor.getParaStruct(i, &parameter);
        putParameter(path, parameter, 7);
        const auto lines = indexes(descriptor.getHelpMessageCnt(parameter.helpNumber));
        putEach(path + "/texts", lines, [&](const std::string& line, int index) {
            PARA_HELPMESSAGE_TYPE message;
            descriptor.getParaHelpMessage(parameter.helpNumber, index, &message);
            putMessage(line, message);
        });
    });
}

void putBlock(const std::string& path, cTypDescriptor& descriptor, int block)
{
    int length = 0;
    Bytes bytes(static_cast<std::size_t>(descriptor.getMaxSPBlockLen()));
    descriptor.getSlotParameters(block, bytes.data(), &length);
    bytes.resize(static_cast<std::size_t>(length));
    putBytes(path + "/bytes", bytes);
    const auto list = indexes(descriptor.getStructuredSlotParameterCnt(block));
    putEach(path + "/parameters", list, [&](const std::string& entry, int i) {
        _parastruct parameter;
        descriptor.getStructuredSlotParameter(block, i, &parameter);
        putParameter(entry, parameter, 0);
        const auto lines = indexes(descriptor.getSPHelpCnt(parameter.helpNumber));
        putEach(entry + "/texts", lines, [&](const std::string& line, int index) {
            PARA_HELPMESSAGE_TYPE message;
            descriptor.getSPHelpItem(parameter.helpNumber, index, &message);
            putMessage(line, message);
        });
    });
    KEYWORD_TYPE keyword;
    for (int i = 0; descriptor.hasSPBlockThisKeyWord(&keyword, block, 0) == 1; ++i) {
        const std::string place = path + "/slotNumbers/" + std::to_string(i);
        put(place + "/byte", keyword.byteOffset);
        put(place + "/byteCount", keyword.dataType[0] == 'B' ? 1 : 2);
    }
}

void putModules(const cTypDescriptor& descriptor, bool isKgp)
{
    const int ordered = descriptor.getMLFBListCnt();
    putEach("modules", indexes(ordered + descriptor.getLSKCnt()), [&](const std::string& path, int i) {
        put(path + "/source", i < ordered ? "orderNumberList" : "moduleList");
        if (i < ordered) {
            MLFB_ITEM item;
            descriptor.getMLFBListItem(i, &item);
            put(path + "/name", text(item.mlfb));
            putFlag(path + "/fixed", false);
            if (!isKgp)
                return putPart(path + "/parts/0", item, "");
            put(path + "/kgp/number", item.kgpId);
            put(path + "/kgp/block", blockOf(item));
            return putBytes(path + "/kgp/values", {item.kgpData, item.kgpData + sizeof item.kgpData});
        }
        char name[31];
        int isFixed = 0;
        descriptor.getLSKText(i - ordered, name);
        put(path + "/name", name);
        const auto parts = indexes(descriptor.getSKListCnt(i - ordered, &isFixed));
        putFlag(path + "/fixed", isFixed != 0);
        putEach(path + "/parts", parts, [&](const std::string& part, int index) {
            LSK_ITEM entry;
            descriptor.getSKListItem(i - ordered, index, &entry);
            putPart(part, entry.item, text(entry.text));
        });
    });
}

void putPresets(const cTypDescriptor& descriptor)
{
    int count = 0;
    descriptor.isKonfigFixed(&count);
    putEach("slots/preset", indexes(count), [&](const std::string& path, int i) {
        MLFB_ITEM item;
        descriptor.getFixedSlotId(i, &item);
        putFlag(path + "/fixed", descriptor.isP36KY() != 0 || descriptor.isPresetKonfigFixed() != 0);
        put(path + "/orderNumber", text(item.mlfb));
        put(path + "/block", blockOf(item));
        putIdentifier(path + "/identifier", item.preset);
    });
    SLOT_NUMBERING_TYPE numbering;
    if (descriptor.getSlotNumbering(&numbering) != 0)
        return put("slots/numbering", "null");
    put("slots/numbering/text", text(numbering.text));
    put("slots/numbering/value1", numbering.value1);
    put("slots/numbering/value2", numbering.value2);
    put("slots/numbering/digit", numbering.digit);
}

void putDiagnosis(const cTypDescriptor& descriptor)
{
    constexpr int kLastByte = 999;
    for (int byte = 1; byte <= kLastByte; ++byte) {
        for (int bit = 0; bit < 8; ++bit) {
            SLAVE_DIAG_TYPE message;
            if (descriptor.getSlaveDiagMsg(byte / 100, byte % 100, bit, &message) != kOk)
                continue;
            const std::string path = "diagnostics/bits/" + std::to_string(byte) + '.' + std::to_string(bit);
            put(path + "/set", text(message.setText));
            put(path + "/clear", text(message.clearText));
        }
    }
    std::map<std::string, int> areas; // the texts of an area follow one another
    std::string area;
    for (const int i : indexes(descriptor.getSlaveBGrDiagMsgCnt())) {
        SLAVE_BGR_DIAG_TYPE message;
        descriptor.getSlaveBGrDiagMsg(i, &message);
        const int byte = 100 * message.byteHigh + message.byteLow;
        const std::string key =
            std::to_string(byte) + '.' + std::to_string(message.firstBit) + '-' + std::to_string(message.lastBit);
        area = "diagnostics/areas/" + key + '/' + std::to_string(areas[key]++);
        put(area + "/value", message.value);
        put(area + "/text", text(message.text));
    }
    int channels = 0;
    for (int type = 16; type <= 31; ++type) {
        char message[31];
        if (descriptor.getChannelDiagMsg(type, message) != kOk)
            continue;
        const std::string path = "diagnostics/channelErrors/" + std::to_string(channels++);
        put(path + "/value", type);
        put(path + "/text", message);
    }
}

void putHead(cTypDescriptor& descriptor, const SLAVE_TYPEDATA_TYPE& data)
{
    static constexpr const char* kFeatures[] = {
        "makerDevice",    "",           "setSlaveAddress",   "syncMode",           "freezeMode", "",
        "diagBufferable", "active",     "evenSlotNumber",    "failSafe",           "dpAsiLink",  "master",
        "publisher",      "subscriber", "onlyNormalModules", "onlySpecialModules", "",           "",
        "kgpStation"};
    static constexpr const char* kChips[] = {"QMX2", "WQMX2", "VRC3", "TVRC2", "TVRC2-DP"};
    static constexpr const char* kRates[] = {"9.6 kbit/s",   "19.2 kbit/s",  "31.25 or 45.45 kbit/s",
                                             "93.75 kbit/s", "187.5 kbit/s", "500 kbit/s",
                                             "1.5 Mbit/s",   "3 Mbit/s",     "6 Mbit/s",
                                             "12 Mbit/s"};
    static constexpr unsigned kRateBits[] = {0, 1, 5, 2, 3, 4, 6, 7, 8, 9};
    SLAVE_TYPE_HEADER_INFO header;
    descriptor.getSlaveTypeHeader(&header);
    put("identification/modelName", text(header.modelName));
    put("identification/vendorName", text(header.vendorName));
    put("identification/identNumber", header.identNumber);
    put("identification/periphery", text(header.periphery));
    put("identification/stationType", text(header.stationType));
    put("identification/formatVersion", text(header.version));
    const int revision = descriptor.getGsdRevision();
    put("identification/gsdRevision", revision < 0 ? std::string("null") : std::to_string(revision));
    char field[31];
    const auto putField = [&field](const char* path, bool isThere) { put(path, isThere ? field : ""); };
    putField("identification/family", descriptor.getFamily(field) == kOk);
    putField("identification/bitmapName", descriptor.getBitMapFileName(field) == kOk);
    putField("identification/libraryName", descriptor.getDLLFileName(field) == kOk);
    putField("identification/orderNumber", descriptor.getMLFBstring(field) == kOk);
    const bool hasChip = data.asicType >= 0 && data.asicType < static_cast<int>(std::size(kChips));
    put("identification/chip", hasChip ? kChips[data.asicType] : "");
    putFlag("features/modular", descriptor.isModular() != 0);
    for (std::size_t bit = 0; bit < std::size(kFeatures); ++bit) {
        if (kFeatures[bit][0] != '\0')
            putFlag(std::string("features/") + kFeatures[bit], (data.features >> bit & 1U) != 0);
    }
    int rates = 0;
    for (std::size_t i = 0; i < std::size(kRates); ++i) {
        if ((data.baudRates >> kRateBits[i] & 1U) != 0)
            put("baudRates/" + std::to_string(rates++), kRates[i]);
    }
}

void putLimits(const SLAVE_TYPEDATA_TYPE& data, int slotOffset)
{
    constexpr int kStandardBytes = 7;
    const std::pair<const char*, int> limits[] = {{"maxModules", data.maxModule},
                                                  {"maxInputBytes", data.maxInputLen},
                                                  {"maxInputBits", data.maxInputBits},
                                                  {"maxOutputBytes", data.maxOutputLen},
                                                  {"maxOutputBits", data.maxOutputBits},
                                                  {"maxDataBytes", data.maxDataLen},
                                                  {"maxDiagnosticBytes", data.maxDiagDataLen},
                                                  {"userParameterBytes", data.userPrmDataLenRead - kStandardBytes},
                                                  {"stationParameterBytes", data.userPrmDataLen - kStandardBytes},
                                                  {"minSlaveIntervalMicroseconds", 100 * data.minSlaveInterval},
                                                  {"eterDelay", data.eterDelay},
                                                  {"maxResponseDelay", data.maxResponseDelay}};
    for (const auto& [name, value] : limits)
        put(std::string("limits/") + name, value);
    put("slots/kgpSlots", data.slotCount);
    put("slots/offset", slotOffset);
}

int putQueries(const char* file)
{
    cTypDescriptor descriptor(file, 0, nullptr);
    if (descriptor.getStatus() != kOk || descriptor.checkTypeFileContents() != kOk)
        return 1;
    SLAVE_TYPEDATA_TYPE data;
    descriptor.getSlaveTypeData(&data);
    putHead(descriptor, data);
    putLimits(data, descriptor.getSlotOffset());
    putModules(descriptor, data.kgpDevice != 0);
    putPresets(descriptor);
    putStation(descriptor);
    putEach("blocks", indexes(descriptor.getSPBlockAnz()),
            [&](const std::string& path, int block) { putBlock(path, descriptor, block); });
    putDiagnosis(descriptor);
    std::vector<GSD_WARNING_ITEM> warnings(static_cast<std::size_t>(descriptor.getGsdCntOfWarnings()));
    descriptor.getGsdWarnings(reinterpret_cast<char*>(warnings.data()));
    putEach("warnings", warnings, [](const std::string& path, const GSD_WARNING_ITEM& warning) {
        put(path + "/line", warning.lineNumber);
        put(path + "/code", warning.code);
    });
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc == 3 && std::strcmp(argv[1], "queries") == 0)
            return putQueries(argv[2]);
        if (argc == 3 && std::strcmp(argv[1], "device") == 0)
            return std::puts(toJson(loadDevice(argv[2])).c_str()) < 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 2;
}
