// The checks that look across record groups: slot numbering, and every reference to a slot parameter block or to an
// order-number entry.
//
// In: what the earlier checks have built. Out: the slot numbering; preset slots given by order number, filled from
// their entries; and the certainty that every reference leads somewhere and that the blocks of one configuration fit
// into the parameter telegram.

#include "descriptor/cTypDescriptor.h"
#include "typefile/format.h"
#include "typefile/moduleList.h"
#include "typefile/recordParts.h"
#include "typefile/scan.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

using namespace typefile;

/// Codes of a bad reference to a slot parameter block.
struct LinkCodes {
    int beyondLast; // above the last block
    int missing;    // no block of that number, or no blocks at all
};

namespace {

// The preset slots give the codes of the two lists the other way round: hosts know them so.
constexpr LinkCodes kModuleListLink{kErrModuleList, kErrModuleList};
constexpr LinkCodes kPresetLink{kErrModuleList, kErrOrderList};

constexpr std::size_t kSlotNumberingTextWidth = 2;
constexpr std::size_t kSlotNumberingDigits = 1;

bool takeSlotNumbering(char*& p, SLOT_NUMBERING_TYPE& numbering)
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

} // namespace

int cTypDescriptor::checkSlotNumbering(char* p, char** next)
{
    if (kgpStation == 0)
        return kOk;
    if (isText(p, kTagSlotNumbering) && !takeSlotNumbering(p, slotNumbering))
        return kErrSlotNumbering;
    if (!takeRecordHead(p, kTagSlotCount, typeData.slotCount))
        return kErrSlotNumbering;
    changeable = 0;
    *next = p;
    return kOk;
}

/// Order-number entries and module lists; then the preset slots.
int cTypDescriptor::checkSPLinksInMLFBAndLSKList()
{
    for (int i = 0; i < mlfbCount; ++i) {
        if (mlfbItems[i].spIndex > lastSpBlock)
            return kErrOrderList;
    }
    std::vector<int> lengths(static_cast<std::size_t>(spBlockCount));
    for (int i = 0; i < moduleListCount; ++i) {
        const ModuleList& list = moduleLists[i];
        int sum = 0;
        for (int slot = 0; slot < list.slotCount; ++slot) {
            const int result =
                addSlotBlockLength(list.entries[slot].item.spIndex, kModuleListLink, lengths.data(), sum);
            if (result < 0)
                return result;
        }
        if (!fitsPrmTelegram(sum))
            return kErrPrmLen;
    }
    releaseParsedBlock();
    return checkMLFBLinksInPoint36();
}

/// The preset slots. Those given by order number become copies of their entries.
int cTypDescriptor::checkMLFBLinksInPoint36()
{
    if (mFlag != 0 && mlfbItems == nullptr)
        return kErrIdentifier;
    std::vector<int> lengths(static_cast<std::size_t>(spBlockCount));
    char* p = presetRecordPos;
    int sum = 0;
    for (int i = 0; i < presetCount; ++i) {
        MLFB_ITEM& slot = presetSlots[i];
        if (mFlag != 0) {
            int number = 0;
            if (!takeNumberRecord(p, number) || number > mlfbCount)
                return kErrIdentifier;
            slot = mlfbItems[number - 1];
            slot.preset.xSlot = vFlag == 0 && yFlag == 0 ? 1 : 0;
        }
        if (const int result = addSlotBlockLength(slot.spIndex, kPresetLink, lengths.data(), sum); result < 0)
            return result;
    }
    releaseParsedBlock();
    return fitsPrmTelegram(sum) ? kOk : kErrPrmLen;
}

/// Adds the length of the slot parameter block that an entry refers to, if it refers to any. A block is parsed once in
/// a check however many entries share it: `lengths` keeps what is known, 0 for nothing yet.
int cTypDescriptor::addSlotBlockLength(int spIndex, const LinkCodes& codes, int* lengths, int& sum)
{
    if (spIndex > lastSpBlock)
        return codes.beyondLast;
    if (spIndex < 0)
        return kOk;
    if (spBlockPositions == nullptr || spBlockPositions[spIndex] == nullptr)
        return codes.missing;
    if (lengths[spIndex] == 0) {
        char* p = spBlockPositions[spIndex];
        char* listPosition = nullptr;
        checkSlotParaBlock(spBlockCount, p, &p, &lengths[spIndex], &listPosition); // was found good before
    }
    sum += lengths[spIndex];
    return kOk;
}

/// The blocks of one configuration share the telegram with the common part and the standard bytes.
bool cTypDescriptor::fitsPrmTelegram(int blockLengths) const
{
    return blockLengths + typeData.commonPrmDataLen + static_cast<int>(kStandardPrmBytes) <=
           typeData.userPrmDataLenRead;
}
