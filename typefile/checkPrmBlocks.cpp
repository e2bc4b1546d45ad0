// The checks of parameter blocks: the station's own section with its help blocks, and the blocks of slots.
//
// In: the position of a block. Out: its bytes, preset ones and defaults, and an entry for each structured parameter.

#include "typefile/parameters.h"

#include <algorithm>

namespace typdescriptor::internal {

namespace {

constexpr int kFirstUserByte = static_cast<int>(kStandardPrmBytes);

/// The byte that two hexadecimal digits give.
unsigned char atohex(const char* text)
{
    return static_cast<unsigned char>(hexDigitValue(text[0]) << 4 | hexDigitValue(text[1]));
}

/// The first bytes of a block, as many as are preset.
int takePresetBytes(Cursor& p, std::vector<std::uint8_t>& bytes, int& count)
{
    if (!takeRecordHead(p, kTagUserPrmBytes, count) || !isWithin(count, 0, bytes.size()))
        return kErrUserPrm;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        if (!isHexDigit(p[0]) || !isHexDigit(p[1]))
            return kErrUserPrmByte;
        bytes[i] = atohex(p);
        if (!takeRecord(p, kHexByteDigits))
            return kErrUserPrm;
    }
    return kOk;
}

int checkUserPrmList(Cursor& p, TypeFile& file)
{
    if (!takeText(p, kTagPrmList))
        return kErrPrmList;
    int count = 0;
    if (!takeNumberRecord(p, count) || count < 0)
        return kErrUserPrm;
    if (file.station == StationKind::kFixedProfile && count != 0)
        return kErrFixedProfile;
    file.changeableOnlyIf(count == 0);
    PrmArea area{file.userPrm, kFirstUserByte};
    return checkStructuredParameters(p, count, area, file.prmEntries);
}

int checkUserPrmHelp(Cursor& p, TypeFile& file)
{
    int count = 0;
    if (!isText(p, kTagHelpList))
        return kOk;
    if (!takeRecordHead(p, kTagHelpList, count))
        return kErrHelpBlock;
    file.help.resize(static_cast<std::size_t>(count));
    file.helpOfNumber.resize(kMaxHelpNumber + 1);
    for (std::size_t i = 0; i < file.help.size(); ++i) {
        if (checkHelpBlock(p, file.help[i]) < 0)
            return kErrHelpBlock;
        std::uint16_t& first = file.helpOfNumber[static_cast<std::size_t>(file.help[i].number)];
        if (first == 0)
            first = static_cast<std::uint16_t>(i + 1);
    }
    return kOk;
}

} // namespace

int checkUserPara(Cursor& p, TypeFile& file)
{
    // The length of the fixed profile leaves no room for any.
    file.userPrm.resize(static_cast<std::size_t>(file.typeData.userPrmDataLen - kFirstUserByte));
    int result = takePresetBytes(p, file.userPrm, file.userPrmCount);
    if (result == kOk)
        result = checkUserPrmList(p, file);
    if (result == kOk)
        result = checkUserPrmHelp(p, file);
    std::copy(file.userPrm.begin(), file.userPrm.end(), file.typeData.userPrmData);
    return result;
}

SlotPrmBlock checkSlotParaBlock(int blockCount, Cursor position)
{
    SlotPrmBlock block{kErrSlotPrm};
    Cursor p = position;
    int length = 0;
    int count = 0;
    if (!takeRecordHead(p, kTagSlotPrmBlock, block.number) ||
        !isWithin(block.number, 1, static_cast<std::size_t>(blockCount)))
        return block;
    if (!takeNumberRecord(p, length) || !isWithin(length, 1, kMaxUserPrmBytes))
        return block;
    // Cleared, so that a host never sees what the memory held before in bytes that are not preset.
    block.bytes.assign(static_cast<std::size_t>(length), 0);
    if (takePresetBytes(p, block.bytes, count) != kOk)
        return block;
    block.list = p;
    if (!takeRecordHead(p, kTagPrmList, count))
        return block;
    PrmArea area{block.bytes, 0};
    block.result = checkStructuredParameters(p, count, area, block.entries);
    block.end = p;
    return block;
}

} // namespace typdescriptor::internal
