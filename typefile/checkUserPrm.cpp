// The check of the station's own user parameters: the preset bytes, the structured parameters that name fields inside
// them, and the help blocks that name those fields' values.

#include "typefile/helpBlock.h"
#include "typefile/scan.h"
#include "typefile/slotPrmBlock.h"
#include "typefile/structuredPrm.h"
#include "typefile/typeFile.h"

#include <cstddef>
#include <cstdint>

namespace typdescriptor::internal {

namespace {

constexpr int kFirstUserByte = static_cast<int>(kStandardPrmBytes);

int checkUserPrmBytes(Cursor& p, TypeFile& file)
{
    const int room = file.typeData.userPrmDataLen - kFirstUserByte;
    int count = 0;
    // The length of the fixed profile leaves no room for any.
    if (!takeRecordHead(p, kTagUserPrmBytes, count) || count > room)
        return kErrUserPrm;
    file.userPrm.resize(static_cast<std::size_t>(room));
    file.userPrmCount = count;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        if (!isHexByte(p))
            return kErrUserPrmByte;
        file.userPrm[i] = atohex(p);
        p += kHexByteDigits;
        if (!takeTerminator(p))
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
    if (count > 0)
        file.isChangeable = false;
    PrmArea area{file.userPrm, kFirstUserByte};
    return checkStructuredParameters(p, count, area, file.prmEntries);
}

int checkUserPrmHelp(Cursor& p, TypeFile& file)
{
    if (!takeText(p, kTagHelpList))
        return kOk;
    int count = 0;
    if (!takeNumberRecord(p, count) || count < 0)
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
    int result = checkUserPrmBytes(p, file);
    if (result == kOk)
        result = checkUserPrmList(p, file);
    if (result == kOk)
        result = checkUserPrmHelp(p, file);
    return result;
}

} // namespace typdescriptor::internal
