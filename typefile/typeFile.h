// All that a check finds in an image, and the steps of the check. The queries answer from it, and from the image through
// the positions in it. With this header come the format and the small steps over it.

#pragma once

#include "descriptor/records.h"
#include "descriptor/resultCodes.h"
#include "typefile/format.h"
#include "typefile/orderNumber.h"
#include "typefile/recordParts.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace typdescriptor::internal {

/// A group of diagnostic texts, which stay in the image.
struct DiagGroup {
    Cursor begin = nullptr; // its head; null before a check reached it
    int count = 0;
    int groupCount = 0; // those for groups of bits
};

struct ModuleList {
    char text[kNameWidth + 1] = {};
    bool isFixed = false;
    std::vector<LSK_ITEM> entries;
};

/// A slot parameter block, which stays in the image.
struct SlotBlockPlace {
    Cursor begin = nullptr; // null for a number without a block
    int length = 0;         // in bytes
    int fieldCount = 0;     // structured parameters
};

/// A help block, which stays in the image.
struct HelpBlock {
    int number = 0;
    int lineCount = 0;
    Cursor firstLine = nullptr;
};

struct TypeFile {
    // What the next check of the image goes on with.
    OrderNumber orderNumber;
    std::int32_t category = kCategoryUnknown;

    const char* image = nullptr;
    std::size_t capacity = 0; // of the image, without its slack

    bool isLoaded = false;     // the whole image has passed
    bool isChangeable = false; // nothing stands in it that hosts cannot edit
    bool isModular = true;

    std::size_t headLineLength = 0; // with its line end; 0 for none
    SLAVE_TYPE_HEADER_INFO header = SLAVE_TYPE_HEADER_INFO();
    StationKind station = StationKind::kPlain;
    SLAVE_TYPEDATA_TYPE typeData = SLAVE_TYPEDATA_TYPE();
    bool isSlotPrmMode = false;

    std::vector<std::uint8_t> userPrm; // with every default in its place
    int userPrmCount = 0;              // of the "PV" record
    std::vector<_parastruct> prmEntries;
    std::vector<HelpBlock> help;
    std::vector<std::uint16_t> helpOfNumber; // 1 + the index of a number's first block, 0 for none

    StructureCode presetCode;
    std::vector<MLFB_ITEM> presetSlots;
    std::vector<int> presetNumbers; // of their order-number entries, where they are given so
    DiagGroup deviceDiag;
    DiagGroup channelDiag;
    char bitmapName[kBitmapName.width + 1] = {};
    char libraryName[kDefaultLibrary.size() + 1] = {};
    int slotOffset = 0;
    SLOT_NUMBERING_TYPE slotNumbering = SLOT_NUMBERING_TYPE();
    std::vector<MLFB_ITEM> orderNumbers;
    std::vector<ModuleList> moduleLists;

    std::vector<SlotBlockPlace> slotBlocks; // by block number - 1
    int maxSlotBlockLength = 0;
    std::vector<Cursor> slotHelp; // by block number - 1; null for a number without a block
    int keywordRecord = 0;        // at which the search for keyword records goes on

    const char* end = nullptr; // of the type data

    Cursor headerPosition() const { return image + headLineLength; }
    bool has(std::uint32_t feature) const { return (typeData.features & feature) != 0; }
    /// For what may stand in it with which hosts cannot edit it.
    void changeableOnlyIf(bool isEditable) { isChangeable = isChangeable && isEditable; }
};

/// Checks an image and fills `file` anew, but for what outlives a check.
/// @param image  followed by its slack; the header of an old version-3 file is rewritten in place
/// @return 0 or the code of the first thing that is wrong; kErrMemory when memory runs out
int check(char* image, std::size_t capacity, TypeFile& file);

// The steps of the check, in the order of the format. Each takes its place in the image and fills its part of `file`;
// a cursor is moved behind what was read when the result is kOk.

/// Finds the head line and its order number.
int checkHeadLine(TypeFile& file);
/// @param header  its first character, in the image that `file` holds
int checkSlaveTypeHeader(char* header, TypeFile& file);
int checkSlaveTypeDataCatI(Cursor p, TypeFile& file);
int checkSlaveTypeDataCatII(Cursor p, TypeFile& file);
/// What both categories begin with: a cleared record with the texts of the header.
void startTypeData(TypeFile& file);

/// The station's own user parameters.
int checkUserPara(Cursor& p, TypeFile& file);

/// @param block  receives its number, the number of its lines and where they begin; its texts stay in the image
/// @return 0 or kErrHelpBlock
int checkHelpBlock(Cursor& p, HelpBlock& block);

/// The preset slots. Those given by order number stay empty, because the list that they point into comes later in the
/// file.
int checkPresetSlots(Cursor& p, TypeFile& file);
/// One configuration identifier; `preset` is cleared first.
int checkPresetSlot(Cursor& p, const TypeFile& file, CSLAVE_SLOT_PRESET_TYPE& preset);
/// The identifier of a list entry and the quote behind it.
bool takeModuleIdentifier(Cursor& p, const TypeFile& file, CSLAVE_SLOT_PRESET_TYPE& preset);

/// @param mode  0 reads the device texts, 1 the channel texts
int checkSlaveTypeDataDKM(Cursor& p, int mode, TypeFile& file);
int checkSlotNumbering(Cursor& p, TypeFile& file);
int checkSlaveTypeDataMLFBList(Cursor& p, TypeFile& file);
int checkSlaveTypeDataLSK(Cursor& p, TypeFile& file);
int checkSlaveTypeDataSPT(Cursor& p, TypeFile& file);
int checkSlaveTypeDataSPTHelp(Cursor& p, TypeFile& file);
/// Every reference to a slot parameter block or to an order-number entry.
int checkSPLinksInMLFBAndLSKList(TypeFile& file);
/// The same for the preset slots: those given by order number become copies of their entries.
int checkMLFBLinksInPoint36(TypeFile& file);

/// An entry of a list by the index of a host; null outside the list.
template <class Entry>
const Entry* entryAt(const std::vector<Entry>& entries, int index)
{
    const auto position = static_cast<std::size_t>(index);
    return position < entries.size() ? &entries[position] : nullptr;
}

/// Hands out an entry; in place of null a cleared one.
template <class Entry>
void copyOrClear(const Entry* entry, Entry& target)
{
    if (entry != nullptr)
        target = *entry;
    else
        target = Entry();
}

} // namespace typdescriptor::internal
