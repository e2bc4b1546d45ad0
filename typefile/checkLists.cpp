// The checks of the order-number list, the module lists, the slot parameter blocks and their help blocks.
//
// In: the position of a group. Out: the list or the table of positions that the queries answer from, and the position
// behind the group. What a check has built before it fails stays with the descriptor, which frees it.

#include "descriptor/cTypDescriptor.h"
#include "typefile/format.h"
#include "typefile/moduleList.h"
#include "typefile/recordParts.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace typefile;

namespace {

constexpr int kMaxKgpId = 1023;
constexpr int kMaxByte = 255;

/// A KGP module: its number and three values.
bool takeKgpModule(char*& p, MLFB_ITEM& item)
{
    int number = 0;
    if (!takeNumberToQuote(p, number, kKgpIdDigits) || number < 0 || number > kMaxKgpId)
        return false;
    item.kgpId = static_cast<uint16_t>(number);
    for (uint8_t& value : item.kgpData) {
        if (!takeNumberToQuote(p, number) || number < 0 || number > kMaxByte)
            return false;
        value = static_cast<uint8_t>(number);
    }
    return true;
}

} // namespace

int cTypDescriptor::checkSlaveTypeDataMLFBList(char* p, char** next)
{
    int count = 0;
    if (!takeRecordHead(p, kTagOrderNumbers, count))
        return kErrOrderList;
    if (count > 0) {
        changeable = 0;
        mlfbItems = new MLFB_ITEM[static_cast<std::size_t>(count)]();
        mlfbCount = count;
    }
    for (int i = 0; i < count; ++i) {
        if (!takeOrderNumber(p, mlfbItems[i]))
            return kErrOrderList;
    }
    *next = p;
    return kOk;
}

bool cTypDescriptor::takeOrderNumber(char*& p, MLFB_ITEM& item)
{
    if (!takeQuotedText(p, item.mlfb))
        return false;
    if (kgpStation != 0 ? !takeKgpModule(p, item) : !takeModuleIdentifier(p, item.preset))
        return false;
    return takeSlotPrmReference(p, item.spIndex);
}

/// The end of a list entry. Only in slot-parameter mode may it refer to a slot parameter block.
bool cTypDescriptor::takeSlotPrmReference(char*& p, int32_t& spIndex) const
{
    int block = 0;
    if (!takeBlockReference(p, block) || (block > 0 && slotPrmMode == 0))
        return false;
    spIndex = block - 1;
    return true;
}

int cTypDescriptor::checkSlaveTypeDataLSK(char* p, char** next)
{
    int count = 0;
    if (!takeRecordHead(p, kTagModuleLists, count))
        return kErrModuleList;
    if (count > 0) {
        // A device has either preset slots or module lists.
        if (presetCount > 0)
            return kErrModuleList;
        moduleLists = new ModuleList[static_cast<std::size_t>(count)]();
        moduleListCount = count;
        changeable = 0;
    }
    for (int i = 0; i < count; ++i) {
        if (!takeModuleList(p, i + 1, moduleLists[i]))
            return kErrModuleList;
    }
    *next = p;
    return kOk;
}

/// The lists are numbered consecutively.
bool cTypDescriptor::takeModuleList(char*& p, int expectedNumber, ModuleList& list)
{
    if (!takeText(p, kTagModuleList) || numberAt(p) != expectedNumber)
        return false;
    p += kNumberDigits;
    if (!takeQuotedText(p, list.text) || !takeTerminator(p))
        return false;

    StructureCode code;
    if (!readStructureCode(p, code) || (code.byOrderNumber && mlfbItems == nullptr))
        return false;
    p += kStructureCodeLength;
    int slots = 0;
    if (!takeNumberRecord(p, slots) || slots < 1 || slots > typeData.maxModule)
        return false;
    const bool isEvenRequired = (typeData.features & kFeatureEvenSlotNumber) != 0;
    if (isEvenRequired && code.fixed && slots % 2 != 0)
        return false;

    list.vFlag = code.fixed ? 1 : 0;
    list.entries = new LSK_ITEM[static_cast<std::size_t>(slots)]();
    list.slotCount = slots;
    for (int i = 0; i < slots; ++i) {
        LSK_ITEM& entry = list.entries[i];
        if (code.byOrderNumber ? !takeSlotByNumber(p, entry) : !takeSlotByIdentifier(p, entry))
            return false;
        if (code.xSlot() != 0)
            entry.item.preset.xSlot = 1;
    }
    return true;
}

bool cTypDescriptor::takeSlotByNumber(char*& p, LSK_ITEM& entry)
{
    int number = 0;
    if (!takeNumberToQuote(p, number) || number < 1 || number > mlfbCount)
        return false;
    entry.item = mlfbItems[number - 1];
    return takeTextToQuote(p, entry.text) && takeTerminator(p);
}

bool cTypDescriptor::takeSlotByIdentifier(char*& p, LSK_ITEM& entry)
{
    return takeModuleIdentifier(p, entry.item.preset) && takeTextToQuote(p, entry.text) &&
           takeSlotPrmReference(p, entry.item.spIndex);
}

int cTypDescriptor::checkSlaveTypeDataSPT(char* p, char** next)
{
    int count = 0;
    if (!takeRecordHead(p, kTagSlotPrmBlocks, count))
        return kErrSlotPrm;
    if (count > 0) {
        changeable = 0;
        spBlockPositions = new char*[static_cast<std::size_t>(count)]();
        spStructCounts = new int32_t[static_cast<std::size_t>(count)]();
        spBlockCount = count;
    }
    for (int i = 0; i < count; ++i) {
        int length = 0;
        char* listPosition = nullptr;
        if (checkSlotParaBlock(count, p, &p, &length, &listPosition) < 0)
            return kErrSlotPrm;
        maxSpBlockLen = std::max(maxSpBlockLen, length);
    }
    releaseParsedBlock();
    lastSpBlock = count - 1;
    *next = p;
    return kOk;
}

int cTypDescriptor::checkSlaveTypeDataSPTHelp(char* p, char** next)
{
    int count = 0;
    if (!takeRecordHead(p, kTagHelpList, count))
        return kErrSlotHelp;
    if (count > 0) {
        changeable = 0;
        spHelpPositions = new char*[static_cast<std::size_t>(count)]();
        spHelpCount = count;
    }
    for (int i = 0; i < count; ++i) {
        char* const position = p;
        PARA_HELPM_INFO info = PARA_HELPM_INFO();
        if (const int result = checkHelpBlock(&info, p, &p); result < 0)
            return result;
        if (info.helpNumber < 1 || info.helpNumber > count)
            return kErrSlotHelp;
        spHelpPositions[info.helpNumber - 1] = position;
    }
    *next = p;
    return kOk;
}
