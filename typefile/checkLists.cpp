// The checks of the order-number list, the module lists, the slot parameter blocks and their help blocks.
//
// In: the position of a group. Out: the list or the table of positions that the queries answer from, and the position
// behind the group.

#include "typefile/parameters.h"

#include <algorithm>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kMaxKgpId = 1023;

/// Makes room for the records of a group. One with any is nothing that hosts can edit.
template <class Entry>
void startList(std::vector<Entry>& entries, int count, TypeFile& file)
{
    file.changeableOnlyIf(count == 0);
    entries.resize(static_cast<std::size_t>(count));
}

/// A KGP module: its number and three values.
bool takeKgpModule(Cursor& p, MLFB_ITEM& item)
{
    int number = 0;
    if (!takeNumberToQuote(p, number, kKgpIdDigits) || !isWithin(number, 0, kMaxKgpId))
        return false;
    item.kgpId = static_cast<uint16_t>(number);
    for (uint8_t& value : item.kgpData) {
        if (!takeNumberToQuote(p, number) || !isWithin(number, 0, kMaxByte))
            return false;
        value = static_cast<uint8_t>(number);
    }
    return true;
}

/// The end of a list entry. Only in slot-parameter mode may it refer to a slot parameter block.
bool takeSlotPrmReference(Cursor& p, const TypeFile& file, int32_t& spIndex)
{
    int block = 0;
    if (!takeBlockReference(p, block) || (block > 0 && !file.isSlotPrmMode))
        return false;
    spIndex = block - 1;
    return true;
}

bool takeOrderNumber(Cursor& p, const TypeFile& file, MLFB_ITEM& item)
{
    const bool isKgp = file.station == StationKind::kKgp;
    return takeQuotedText(p, item.mlfb) &&
           (isKgp ? takeKgpModule(p, item) : takeModuleIdentifier(p, file, item.preset)) &&
           takeSlotPrmReference(p, file, item.spIndex);
}

bool takeSlotByNumber(Cursor& p, const TypeFile& file, LSK_ITEM& entry)
{
    int number = 0;
    if (!takeNumberToQuote(p, number) || !isWithin(number, 1, file.orderNumbers.size()))
        return false;
    entry.item = file.orderNumbers[static_cast<std::size_t>(number) - 1];
    return takeTextToQuote(p, entry.text) && takeTerminator(p);
}

bool takeSlotByIdentifier(Cursor& p, const TypeFile& file, LSK_ITEM& entry)
{
    return takeModuleIdentifier(p, file, entry.item.preset) && takeTextToQuote(p, entry.text) &&
           takeSlotPrmReference(p, file, entry.item.spIndex);
}

/// The lists are numbered consecutively.
bool takeModuleList(Cursor& p, const TypeFile& file, int expectedNumber, ModuleList& list)
{
    if (!takeText(p, kTagModuleList) || numberAt(p) != expectedNumber)
        return false;
    p += kNumberDigits;
    if (!takeQuotedText(p, list.text) || !takeTerminator(p))
        return false;

    StructureCode code;
    if (!readStructureCode(p, code) || (code.byOrderNumber && file.orderNumbers.empty()))
        return false;
    p += kStructureCodeLength;
    int slots = 0;
    if (!takeNumberRecord(p, slots) || slots < 1 || slots > file.typeData.maxModule)
        return false;
    if (file.has(kFeatureEvenSlotNumber) && code.fixed && slots % 2 != 0)
        return false;

    list.isFixed = code.fixed;
    list.entries.resize(static_cast<std::size_t>(slots));
    for (LSK_ITEM& entry : list.entries) {
        if (code.byOrderNumber ? !takeSlotByNumber(p, file, entry) : !takeSlotByIdentifier(p, file, entry))
            return false;
        entry.item.preset.xSlot = code.xSlot();
    }
    return true;
}

} // namespace

int checkSlaveTypeDataMLFBList(Cursor& p, TypeFile& file)
{
    int count = 0;
    if (!takeRecordHead(p, kTagOrderNumbers, count))
        return kErrOrderList;
    startList(file.orderNumbers, count, file);
    for (MLFB_ITEM& item : file.orderNumbers) {
        if (!takeOrderNumber(p, file, item))
            return kErrOrderList;
    }
    return kOk;
}

int checkSlaveTypeDataLSK(Cursor& p, TypeFile& file)
{
    int count = 0;
    // A device has either preset slots or module lists.
    if (!takeRecordHead(p, kTagModuleLists, count) || (count > 0 && !file.presetSlots.empty()))
        return kErrModuleList;
    startList(file.moduleLists, count, file);
    int number = 0;
    for (ModuleList& list : file.moduleLists) {
        if (!takeModuleList(p, file, ++number, list))
            return kErrModuleList;
    }
    return kOk;
}

int checkSlaveTypeDataSPT(Cursor& p, TypeFile& file)
{
    int count = 0;
    if (!takeRecordHead(p, kTagSlotPrmBlocks, count))
        return kErrSlotPrm;
    startList(file.slotBlocks, count, file);
    for (int i = 0; i < count; ++i) {
        const SlotPrmBlock block = checkSlotParaBlock(count, p);
        if (block.result < 0)
            return kErrSlotPrm;
        const int length = static_cast<int>(block.bytes.size());
        file.slotBlocks[static_cast<std::size_t>(block.number) - 1] = {p, length,
                                                                       static_cast<int>(block.entries.size())};
        file.maxSlotBlockLength = std::max(file.maxSlotBlockLength, length);
        p = block.end;
    }
    return kOk;
}

int checkSlaveTypeDataSPTHelp(Cursor& p, TypeFile& file)
{
    int count = 0;
    if (!takeRecordHead(p, kTagHelpList, count))
        return kErrSlotHelp;
    startList(file.slotHelp, count, file);
    for (int i = 0; i < count; ++i) {
        const Cursor begin = p;
        HelpBlock block;
        if (const int result = checkHelpBlock(p, block); result < 0)
            return result;
        if (!isWithin(block.number, 1, file.slotHelp.size()))
            return kErrSlotHelp;
        file.slotHelp[static_cast<std::size_t>(block.number) - 1] = begin;
    }
    return kOk;
}

} // namespace typdescriptor::internal
