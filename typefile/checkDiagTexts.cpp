// The check of the diagnostic texts: device texts for single bits and bit groups, and channel error texts.
//
// In: the position of a group. Out: its number of entries and the position behind it. The texts stay in the image,
// where the queries search them.

#include "typefile/typeFile.h"

#include <array>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kMinByteNumber = 1;
constexpr std::size_t kMaxByteNumber = 62;
constexpr std::size_t kMinErrorType = 16;
constexpr std::size_t kMaxErrorType = 31;

constexpr bool isBitNumber(char c)
{
    return c >= '0' && c <= '7';
}

/// The exclusive-or of the three characters is the rule: hosts rely on files that pass it without three quotes.
bool areSeparators(const char* p, const std::array<std::size_t, 3>& quotes)
{
    return (p[quotes[0]] ^ p[quotes[1]] ^ p[quotes[2]]) == kQuote;
}

bool isDiagByte(const char* p)
{
    return isText(p, kTagDiagByte) && isDigit(p[kDiagByteHundreds]) &&
           isWithin(numberAt(p, kDiagByteNumber), kMinByteNumber, kMaxByteNumber) && isQuote(p + kDiagByteQuote);
}

bool isGoodBitEntry(const char* p)
{
    return areSeparators(p, diagBit::kQuotes) && isBitNumber(p[kDiagKind]) &&
           (p[diagBit::kValue] == '0' || p[diagBit::kValue] == '1');
}

/// The first bit is bounded from above only.
bool isGoodGroupEntry(const char* p)
{
    if (!areSeparators(p, diagGroup::kQuotes))
        return false;
    const int firstBit = p[diagGroup::kFirstBit] - '0';
    const int bits = p[diagGroup::kBitCount] - '0';
    if (firstBit + bits < 1 || firstBit + bits > 8 || bits < 1 || bits > 8 || firstBit > 7)
        return false;
    return isWithin(numberAt(p, diagGroup::kValue), 0, (std::size_t{1} << bits) - 1);
}

int takeDeviceEntry(Cursor& p, DiagGroup& group)
{
    const bool isGroup = isText(p + kDiagKind, kTagBitGroup);
    group.groupCount += isGroup ? 1 : 0;
    const bool isTaken = isDiagByte(p) && (isGroup ? isGoodGroupEntry(p) : isGoodBitEntry(p)) &&
                         takeRecord(p, isGroup ? diagGroup::kLength : diagBit::kLength);
    return isTaken ? kOk : kErrDeviceDiag;
}

/// Two separators that differ give the code of a device entry, in a channel entry as well: hosts know it so.
int takeChannelEntry(Cursor& p)
{
    if (!isText(p, kTagChannelError) || !isWithin(numberAt(p, channelError::kType), kMinErrorType, kMaxErrorType))
        return kErrChannelDiag;
    if (p[channelError::kQuotes[0]] != p[channelError::kQuotes[1]])
        return kErrDeviceDiag;
    return takeRecord(p, channelError::kLength) ? kOk : kErrChannelDiag;
}

} // namespace

int checkSlaveTypeDataDKM(Cursor& p, int mode, TypeFile& file)
{
    const bool isDevice = mode == 0;
    DiagGroup& group = isDevice ? file.deviceDiag : file.channelDiag;
    group.begin = p;
    if (!takeRecordHead(p, isDevice ? kTagDeviceDiag : kTagChannelDiag, group.count))
        return isDevice ? kErrDeviceDiag : kErrChannelDiag;
    file.changeableOnlyIf(group.count == 0);
    int result = kOk;
    for (int i = 0; i < group.count && result == kOk; ++i)
        result = isDevice ? takeDeviceEntry(p, group) : takeChannelEntry(p);
    return result;
}

} // namespace typdescriptor::internal
