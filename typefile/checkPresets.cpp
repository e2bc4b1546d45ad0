// The check of the preset slots, and of the configuration identifiers that every list of modules is made of.
//
// In: the position of the module-structure record, or of one identifier. Out: one decoded entry for each preset slot,
// or the decoded identifier, and the position behind it. Preset slots given by order number stay empty here: the list
// they point into comes later in the file.

#include "typefile/identifiers.h"
#include "typefile/typeFile.h"

#include <array>

namespace typdescriptor::internal {

namespace {

constexpr int kNoBlock = -1;
constexpr int8_t kNoLengthByte = -1;
constexpr unsigned kMaxLengthBytes = 2;
constexpr unsigned kMaxMfrBytes = 14;
// The special-format identifier that no further byte and therefore no closing quote belongs to.
constexpr uint8_t kSpecialWithoutBytes = 0x0F;

/// A byte behind the first one of an identifier: a quote and three digits.
bool takeFurtherByte(Cursor& p, uint8_t& byte)
{
    const int value = numberAt(p + 1);
    if (!isQuote(p) || !isWithin(value, 0, kMaxByte))
        return false;
    byte = static_cast<uint8_t>(value);
    p += 1 + kNumberDigits;
    return true;
}

/// What follows a special-format identifier byte: length bytes, input first, manufacturer bytes and a closing quote. Any
/// byte is a length.
bool takeSpecialBytes(Cursor& p, CSLAVE_SLOT_PRESET_TYPE& preset)
{
    CFG_SPECIAL_INFO info;
    decodeSpecialByte(preset.identifier, info);
    std::array<uint8_t, kMaxLengthBytes + kMaxMfrBytes> bytes{};
    const unsigned lengthBytes = info.lengthBytes();
    const unsigned count = lengthBytes + info.mfrBytes();
    for (unsigned i = 0; i < count; ++i) {
        if (!takeFurtherByte(p, bytes[i]))
            return false;
    }
    if (count > 0 && !takeQuote(p))
        return false;
    preset.lengthByte1 = lengthBytes > 0 ? static_cast<int8_t>(bytes[0]) : kNoLengthByte;
    preset.lengthByte2 = lengthBytes > 1 ? static_cast<int8_t>(bytes[1]) : kNoLengthByte;
    for (unsigned i = 0; i < info.mfrBytes(); ++i)
        preset.mfrData[i] = bytes[lengthBytes + i];
    return true;
}

/// The number of an order-number entry. Whether there is one of that number is known later.
int takePresetNumber(Cursor& p, int& number)
{
    if (numberAt(p) < 1)
        return kErrIdentifier;
    return takeNumberRecord(p, number) ? kOk : kErrTypeData;
}

/// A preset slot by identifier, with or without a reference to its slot parameter block.
int takePresetEntry(Cursor& p, const TypeFile& file, MLFB_ITEM& slot)
{
    if (const int result = checkPresetSlot(p, file, slot.preset); result != kOk)
        return result;
    slot.preset.xSlot = file.presetCode.xSlot();
    if (takeTerminator(p))
        return kOk;
    takeQuote(p);
    int block = 0;
    if (!takeBlockReference(p, block))
        return kErrIdentifier;
    if (block > 0 && !file.isSlotPrmMode)
        return kErrOrderList;
    slot.spIndex = block - 1;
    return kOk;
}

} // namespace

int checkPresetSlots(Cursor& p, TypeFile& file)
{
    StructureCode code;
    if (!readStructureCode(p, code))
        return kErrTypeData;
    file.changeableOnlyIf(isText(p, kTagPresetByIdentifier));
    p += kStructureCodeLength;
    file.presetCode = code;
    // The count is cut to eight bits before it is tested: hosts rely on files that pass because of it.
    const auto count = static_cast<uint8_t>(numberAt(p));
    if (count > kMaxModules || count > file.typeData.maxModule ||
        (file.station == StationKind::kBareName && count == 0) ||
        (file.has(kFeatureEvenSlotNumber) && code.fixed && count % 2 != 0))
        return kErrPresetCount;
    int number = 0;
    if (!takeNumberRecord(p, number))
        return kErrTypeData;

    if (count == 0)
        file.presetCode = StructureCode();
    MLFB_ITEM empty = MLFB_ITEM();
    empty.spIndex = kNoBlock;
    file.presetSlots.assign(count, empty);
    file.presetNumbers.assign(code.byOrderNumber ? count : 0U, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const int result = code.byOrderNumber ? takePresetNumber(p, file.presetNumbers[i])
                                              : takePresetEntry(p, file, file.presetSlots[i]);
        if (result != kOk)
            return result;
    }
    return takeText(p, kTagSlotsEnd) && takeTerminator(p) ? kOk : kErrTypeData;
}

int checkPresetSlot(Cursor& p, const TypeFile& file, CSLAVE_SLOT_PRESET_TYPE& preset)
{
    preset = CSLAVE_SLOT_PRESET_TYPE();
    const int identifier = numberAt(p);
    if (!isWithin(identifier, 0, kMaxByte))
        return kErrIdentifier;
    p += kNumberDigits;
    preset.identifier = static_cast<uint8_t>(identifier);

    preset.kind = identifierKind(preset.identifier, file.header.headerCnf);
    const bool isSpecial = preset.kind == kCfgSpecial;
    if (preset.kind == kCfgInvalid || (isSpecial && !takeSpecialBytes(p, preset)))
        return kErrIdentifier;
    return file.has(isSpecial ? kFeatureOnlyNormal : kFeatureOnlySpecial) ? kErrIdentifier : kOk;
}

/// A special-format identifier has brought the quote along.
bool takeModuleIdentifier(Cursor& p, const TypeFile& file, CSLAVE_SLOT_PRESET_TYPE& preset)
{
    if (checkPresetSlot(p, file, preset) != kOk)
        return false;
    const bool hasClosingQuote = preset.kind == kCfgSpecial && preset.identifier != kSpecialWithoutBytes;
    return hasClosingQuote || takeQuote(p);
}

} // namespace typdescriptor::internal
