// The checks that look across record groups: slot numbering, and every reference to a slot parameter block or to an
// order-number entry.
//
// In: what the earlier checks have built. Out: the slot numbering; preset slots given by order number, filled from
// their entries; and the certainty that every reference leads somewhere and that the blocks of one configuration fit
// into the parameter telegram.

#include "typefile/typeFile.h"

#include <cstring>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kSlotNumberingTextWidth = 2;
constexpr std::size_t kSlotNumberingDigits = 1;

bool takeSlotNumbering(Cursor& p, SLOT_NUMBERING_TYPE& numbering)
{
    if (!takeText(p, kTagSlotNumbering) || !takeNumberToQuote(p, numbering.value1) || numbering.value1 < 0)
        return false;
    if (!isQuote(p + kSlotNumberingTextWidth))
        return false;
    std::memcpy(numbering.text, p, kSlotNumberingTextWidth);
    p += kSlotNumberingTextWidth + 1;
    if (!takeNumberToQuote(p, numbering.value2) || numbering.value2 < 1)
        return false;
    return isDigit(*p) && takeNumberToQuote(p, numbering.digit, kSlotNumberingDigits) && numbering.digit != 0 &&
           takeTerminator(p);
}

/// Adds the length of the slot parameter block that an entry refers to, if it refers to any.
/// @param missing  the code when no block has that number; one above the last gives that of the module lists everywhere
int addSlotBlockLength(int spIndex, int missing, const TypeFile& file, int& sum)
{
    if (spIndex < 0)
        return kOk;
    const SlotBlockPlace* const block = entryAt(file.slotBlocks, spIndex);
    if (block == nullptr)
        return kErrModuleList;
    if (block->begin == nullptr)
        return missing;
    sum += block->length;
    return kOk;
}

/// The blocks of one configuration share the telegram with the common part and the standard bytes.
bool fitsPrmTelegram(int blockLengths, const SLAVE_TYPEDATA_TYPE& data)
{
    return blockLengths + data.commonPrmDataLen + static_cast<int>(kStandardPrmBytes) <= data.userPrmDataLenRead;
}

} // namespace

int checkSlotNumbering(Cursor& p, TypeFile& file)
{
    if (file.station != StationKind::kKgp)
        return kOk;
    if (isText(p, kTagSlotNumbering) && !takeSlotNumbering(p, file.slotNumbering))
        return kErrSlotNumbering;
    if (!takeRecordHead(p, kTagSlotCount, file.typeData.slotCount))
        return kErrSlotNumbering;
    file.isChangeable = false;
    return kOk;
}

int checkSPLinksInMLFBAndLSKList(TypeFile& file)
{
    for (const MLFB_ITEM& item : file.orderNumbers) {
        if (item.spIndex >= static_cast<int>(file.slotBlocks.size()))
            return kErrOrderList;
    }
    for (const ModuleList& list : file.moduleLists) {
        int sum = 0;
        for (const LSK_ITEM& entry : list.entries) {
            if (const int result = addSlotBlockLength(entry.item.spIndex, kErrModuleList, file, sum); result < 0)
                return result;
        }
        if (!fitsPrmTelegram(sum, file.typeData))
            return kErrPrmLen;
    }
    return checkMLFBLinksInPoint36(file);
}

int checkMLFBLinksInPoint36(TypeFile& file)
{
    const StructureCode& code = file.presetCode;
    if (code.byOrderNumber && file.orderNumbers.empty())
        return kErrIdentifier;
    int sum = 0;
    for (std::size_t i = 0; i < file.presetSlots.size(); ++i) {
        MLFB_ITEM& slot = file.presetSlots[i];
        if (code.byOrderNumber) {
            const auto number = static_cast<std::size_t>(file.presetNumbers[i]);
            if (number > file.orderNumbers.size())
                return kErrIdentifier;
            slot = file.orderNumbers[number - 1];
            slot.preset.xSlot = code.xSlot();
        }
        if (const int result = addSlotBlockLength(slot.spIndex, kErrOrderList, file, sum); result < 0)
            return result;
    }
    return fitsPrmTelegram(sum, file.typeData) ? kOk : kErrPrmLen;
}

} // namespace typdescriptor::internal
