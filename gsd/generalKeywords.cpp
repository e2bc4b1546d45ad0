// Keywords that stand alone: identification, family, protocol chip and the vendor's extensions, as far as they are more
// than one number or text that is kept.

#include "gsd/handlers.h"
#include "typefile/scan.h"

#include <algorithm>
#include <array>

namespace typdescriptor::internal {

namespace {

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

int handleMaxTsdr(GsdReading& reading, std::uint32_t)
{
    reading.foundMandatories[kMaxTsdrFound] = 1;
    return kOk;
}

int handleVendorName(GsdReading& reading, std::string_view name)
{
    reading.model.vendorName = reading.keepText(name, kVendorName.width);
    reading.model.isMakersDevice = containsIgnoringCase(name, kMakerName);
    return kOk;
}

int handleImplementationType(GsdReading& reading, std::string_view type)
{
    const auto chip = std::find_if(kProtocolChips.begin(), kProtocolChips.end(), [&](const ProtocolChip& candidate) {
        return containsIgnoringCase(type, candidate.name);
    });
    if (chip != kProtocolChips.end())
        reading.model.asicCode = chip->code;
    return kOk;
}

int handleBitmapDevice(GsdReading& reading, std::string_view name)
{
    if (name.size() > kMaxBitmapNameLength)
        return kErrGsdSyntax;
    reading.model.bitmapDevice = reading.keepText(name, kBitmapName.width);
    return kOk;
}

int handleSlaveFamily(GsdReading& reading, const FamilyValue& family)
{
    const bool custom = family.subFamilyCount == 2 && family.subFamilies[0] == kCustomFamilyMark &&
                        family.subFamilies[1].size() <= kFamily.width;
    reading.model.family =
        custom ? reading.model.arena.text(family.subFamilies[1]) : kFamilyNames[family.number][reading.languageIndex];
    return kOk;
}

int handleOrderNumber(GsdReading& reading, std::string_view number)
{
    reading.model.orderNumber = reading.model.arena.text(number.substr(0, kOrderNumberWidth));
    return kOk;
}

int handleQ5HeaderCnf(GsdReading& reading, std::uint32_t number)
{
    if (number != 2 && number != 3)
        return kErrGsdNumber;
    reading.model.headerCnf = number == 2 ? '0' : '1';
    return kOk;
}

int handleKgpGui(GsdReading& reading, const NamedBytes& value)
{
    KgpGui& gui = reading.model.kgpGui;
    if (value.name.size() > kMaxKgpGuiText || value.bytes.count != gui.bytes.size() ||
        value.bytes.last() > kMaxKgpGuiDigit)
        return kErrGsdSyntax;
    value.bytes.copyTo(gui.bytes.data());
    gui.text = reading.model.arena.text(value.name);
    gui.given = true;
    return kOk;
}

} // namespace typdescriptor::internal
