// The station's own user parameters: the preset bytes, the structured parameters that name fields inside them, and the
// help blocks that name those fields' values.
//
// In: the position of the section in the image. Out: the bytes with every default in its place, the decoded structured
// parameters, where each help block is, and the position behind the section.

#include "descriptor/cTypDescriptor.h"
#include "params/occupancyMap.h"
#include "typefile/scan.h"

#include <cstddef>

using namespace typefile;

namespace {

constexpr int kFirstUserByte = static_cast<int>(kStandardPrmBytes);

} // namespace

int cTypDescriptor::checkUserPara(char* position)
{
    char* p = position;
    int result = checkUserPrmBytes(p);
    if (result == kOk)
        result = checkUserPrmList(p);
    if (result == kOk)
        result = checkUserPrmHelp(p);
    if (result == kOk)
        prmAreaEnd = p;
    return result;
}

int cTypDescriptor::checkUserPrmBytes(char*& p)
{
    const int room = typeData.userPrmDataLen - kFirstUserByte;
    int count = 0;
    // The length of the fixed profile leaves no room for any.
    if (!takeRecordHead(p, kTagUserPrmBytes, count) || count > room)
        return kErrUserPrm;
    if (room > 0)
        userPrmBytes = new uint8_t[static_cast<std::size_t>(room)]();
    userPrmByteCount = count;
    for (int i = 0; i < count; ++i) {
        if (!isHexByte(p))
            return kErrUserPrmByte;
        userPrmBytes[i] = atohex(p);
        p += kHexByteDigits;
        if (!takeTerminator(p))
            return kErrUserPrm;
    }
    return kOk;
}

int cTypDescriptor::checkUserPrmList(char*& p)
{
    if (!takeText(p, kTagPrmList))
        return kErrPrmList;
    int count = 0;
    if (!takeNumberRecord(p, count) || count < 0)
        return kErrUserPrm;
    if (fixedProfileStation != 0 && count != 0)
        return kErrFixedProfile;
    if (count > 0)
        changeable = 0;
    prmEntries = new _parastruct[static_cast<std::size_t>(count)]();
    OccupancyMap occupancy = freeOccupancyMap();
    return checkStructuredParameters(prmEntries, count, &prmEntryCount, userPrmBytes, occupancy.data(),
                                     typeData.userPrmDataLen, kFirstUserByte, p, &p);
}

int cTypDescriptor::checkUserPrmHelp(char*& p)
{
    if (!takeText(p, kTagHelpList))
        return kOk;
    int count = 0;
    if (!takeNumberRecord(p, count) || count < 0)
        return kErrHelpBlock;
    pslHelp = new PARA_HELPM_INFO[static_cast<std::size_t>(count)]();
    pslHelpCount = count;
    pslHelpOfNumber = new uint16_t[kMaxHelpNumber + 1]();
    for (int i = 0; i < count; ++i) {
        if (checkHelpBlock(&pslHelp[i], p, &p) < 0)
            return kErrHelpBlock;
        uint16_t& first = pslHelpOfNumber[pslHelp[i].helpNumber];
        if (first == 0)
            first = static_cast<uint16_t>(i + 1);
    }
    return kOk;
}
