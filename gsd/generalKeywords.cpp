// Keywords that stand alone: identification, lengths, family, protocol chip and the vendor's extensions.

#include "descriptor/resultCodes.h"
#include "gsd/cGsdCompiler.h"
#include "gsd/families.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <algorithm>
#include <array>

using namespace typefile;

namespace {

// Lengths to which strings are squeezed.
constexpr std::size_t kNameSqueeze = 17;
constexpr std::size_t kShortSqueeze = 10;

constexpr std::string_view kMakerName = "ALTRONA";
constexpr std::string_view kCustomFamilyMark = "TdF";
constexpr std::size_t kMaxBitmapNameLength = 8; // one more than is kept
constexpr std::uint32_t kMaxKgpGuiDigit = 9;
constexpr std::size_t kMaxKgpGuiText = 2;

struct ProtocolChip {
    std::string_view name;
    char code;
};

// Searched in this order: a name stands before those that it contains.
constexpr std::array<ProtocolChip, 5> kProtocolChips{{
    {"TVRC2-DP", '4'},
    {"TVRC2", '3'},
    {"WQMX2", '1'},
    {"QMX2", '0'},
    {"VRC3", '2'},
}};

bool containsIgnoringCase(std::string_view text, std::string_view wanted)
{
    const auto found = std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                                   [](char a, char b) { return toUpper(a) == toUpper(b); });
    return found != text.end();
}

} // namespace

int cGsdCompiler::dropFlag(const GsdLine& line)
{
    ValueReader value(line.value);
    value.flag();
    return value.finish();
}

int cGsdCompiler::dropByte(const GsdLine& line)
{
    ValueReader value(line.value);
    value.unsigned8();
    return value.finish();
}

int cGsdCompiler::dropString(const GsdLine& line)
{
    ValueReader value(line.value);
    value.string();
    return value.finish();
}

int cGsdCompiler::handleGsdRevision(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t revision = value.unsigned8();
    if (const int result = value.finish(); result < 0)
        return result;
    model.gsdRevision = revision;
    return kOk;
}

int cGsdCompiler::handleVendorName(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view name = value.string(kNameSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    setHeader(kVendorName, name);
    if (containsIgnoringCase(name, kMakerName))
        setHeader(kMakerDevice, 'J');
    if (name.size() > kVendorName.width)
        addWarning(kWarnTextCut);
    return kOk;
}

int cGsdCompiler::handleModelName(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view name = value.string(kNameSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    setHeader(kModelName, name);
    if (name.size() > kModelName.width)
        addWarning(kWarnTextCut);
    return kOk;
}

int cGsdCompiler::handleIdentNumber(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t number = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    model.identNumber = number;
    model.image.fixedAt(model.image.headerPos + kIdentNumber.position).number(number, kIdentNumber.width);
    return kOk;
}

int cGsdCompiler::handleImplementationType(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view type = value.string(kNameSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    const auto chip = std::find_if(kProtocolChips.begin(), kProtocolChips.end(), [&](const ProtocolChip& candidate) {
        return containsIgnoringCase(type, candidate.name);
    });
    if (chip != kProtocolChips.end())
        setTypeData(kAsicCode, chip->code);
    return kOk;
}

int cGsdCompiler::handleBitmapDevice(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view name = value.string(kNameSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    if (name.size() > kMaxBitmapNameLength)
        return kErrGsdSyntax;
    model.bitmapDevice.fill('_');
    std::copy_n(name.begin(), std::min(name.size(), kBitmapName.width), model.bitmapDevice.begin());
    if (name.size() > kBitmapName.width)
        addWarning(kWarnTextCut);
    return kOk;
}

int cGsdCompiler::handleMinSlaveInterval(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t interval = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    setTypeDataNumber(kSlaveInterval, interval);
    return kOk;
}

int cGsdCompiler::handleModularStation(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    model.modularStation = flag;
    return kOk;
}

int cGsdCompiler::handleMaxDiagDataLen(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t length = value.unsigned8();
    if (const int result = value.finish(); result < 0)
        return result;
    if (length < kMinDiagLen || length > kMaxDiagLenValue)
        return kErrGsdNumber;
    setTypeDataNumber(kMaxDiagLen, length);
    return kOk;
}

int cGsdCompiler::handleModulOffset(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t offset = value.unsigned8();
    if (const int result = value.finish(); result < 0)
        return result;
    model.modulOffset = static_cast<std::uint8_t>(offset);
    return kOk;
}

int cGsdCompiler::handleSlaveFamily(const GsdLine& line)
{
    ValueReader value(line.value);
    const FamilyValue family = value.family();
    if (const int result = value.finish(); result < 0)
        return result;
    model.slaveFamily = family.number;
    for (std::size_t i = 0; i < family.subFamilyCount; ++i)
        model.subFamilies[i] = model.arena.text(family.subFamilies[i]);
    const bool custom = family.subFamilyCount == 2 && family.subFamilies[0] == kCustomFamilyMark &&
                        family.subFamilies[1].size() <= kFamily.width;
    setHeader(kFamily, custom ? family.subFamilies[1] : kFamilyNames[family.number][languageIndex]);
    return kOk;
}

int cGsdCompiler::handleStationTypeFlag(const GsdLine& line, std::int32_t& field, std::string_view stationType)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    field = static_cast<std::int32_t>(flag);
    setHeader(kStationType, stationType); // also when the flag is 0: naming the keyword makes the station type
    return kOk;
}

int cGsdCompiler::handleIsDpAsiLink(const GsdLine& line)
{
    return handleStationTypeFlag(line, model.isDpAsiLink, kStationDpAsi);
}

int cGsdCompiler::handleIsKgpDevice(const GsdLine& line)
{
    return handleStationTypeFlag(line, model.isKgpDevice, kStationKgp);
}

int cGsdCompiler::handleOrderNumber(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view number = value.string(kShortSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    const std::string_view headLine(model.image.data(), model.image.headerPos);
    model.image.fixedAt(headLine.find(kOrderNumberOpen) + 1).text(number.substr(0, kOrderNumberWidth));
    return kOk;
}

int cGsdCompiler::handlePeriphery(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view name = value.string(kShortSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    setHeader(kPeriphery, name);
    if (name.size() > kPeriphery.width)
        addWarning(kWarnTextCut);
    return kOk;
}

int cGsdCompiler::handleQ5HeaderCnf(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t number = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    if (number != 2 && number != 3)
        return kErrGsdNumber;
    setHeader(kHeaderCnf, number == 2 ? '0' : '1');
    return kOk;
}

int cGsdCompiler::handleOffsetFirstMpdBlock(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t offset = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    if (offset > kMaxCommonPrmLen)
        return kErrGsdNumber;
    model.offsetFirstMpdBlock = static_cast<std::int32_t>(offset);
    return kOk;
}

int cGsdCompiler::handleKgpGui(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view text = value.string();
    const NumberList bytes = value.bytes();
    if (const int result = value.finish(); result < 0)
        return result;
    KgpGui& gui = model.kgpGui;
    if (text.size() > kMaxKgpGuiText || bytes.count != gui.bytes.size() || bytes.last() > kMaxKgpGuiDigit)
        return kErrGsdSyntax;
    for (std::size_t i = 0; i < gui.bytes.size(); ++i)
        gui.bytes[i] = static_cast<std::uint8_t>(bytes.values[i]);
    gui.text = model.arena.text(text);
    gui.given = true;
    return kOk;
}
