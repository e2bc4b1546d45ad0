// The check of the diagnostic texts: device texts for single bits and bit groups, and channel error texts.
//
// In: the position of a group. Out: its number of entries and the position behind it. The texts stay in the image,
// where the queries search them.

#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/typeFile.h"

#include <array>
#include <cstddef>

namespace typdescriptor::internal {

namespace {

constexpr int kMinByteNumber = 1;
constexpr int kMaxByteNumber = 62;
constexpr int kMinErrorType = 16;
constexpr int kMaxErrorType = 31;

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
    if (!isText(p, kTagDiagByte) || !isDigit(p[kDiagByteHundreds]))
        return false;
    const int number = numberAt(p + kDiagByteNumber.position, kDiagByteNumber.width);
    return number >= kMinByteNumber && number <= kMaxByteNumber && isQuote(p + kDiagByteQuote);
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
    const int value = numberAt(p + diagGroup::kValue.position, diagGroup::kValue.width);
    return value >= 0 && value <= (1 << bits) - 1;
}

bool takeDeviceEntry(Cursor& p, bool isGroup)
{
    if (!isDiagByte(p) || !(isGroup ? isGoodGroupEntry(p) : isGoodBitEntry(p)))
        return false;
    Cursor end = p + (isGroup ? diagGroup::kLength : diagBit::kLength);
    if (!takeTerminator(end))
        return false;
    p = end;
    return true;
}

/// Two separators that differ give the code of a device entry, in a channel entry as well: hosts know it so.
int takeChannelEntry(Cursor& p)
{
    const int type = numberAt(p + channelError::kType.position, channelError::kType.width);
    if (!isText(p, kTagChannelError) || type < kMinErrorType || type > kMaxErrorType)
        return kErrChannelDiag;
    if (p[channelError::kQuotes[0]] != p[channelError::kQuotes[1]])
        return kErrDeviceDiag;
    Cursor end = p + channelError::kLength;
    if (!takeTerminator(end))
        return kErrChannelDiag;
    p = end;
    return kOk;
}

} // namespace

int checkSlaveTypeDataDKM(Cursor& p, int mode, TypeFile& file)
{
    const bool isDevice = mode == 0;
    DiagGroup& group = isDevice ? file.deviceDiag : file.channelDiag;
    group.begin = p;
    int count = 0;
    if (!takeRecordHead(p, isDevice ? kTagDeviceDiag : kTagChannelDiag, count))
        return isDevice ? kErrDeviceDiag : kErrChannelDiag;
    group.count = count;
    if (count > 0)
        file.isChangeable = false;
    for (int i = 0; i < count; ++i) {
        int result = kOk;
        if (isDevice) {
            const bool isGroup = isText(p + kDiagKind, kTagBitGroup);
            group.groupCount += isGroup ? 1 : 0;
            result = takeDeviceEntry(p, isGroup) ? kOk : kErrDeviceDiag;
        } else {
            result = takeChannelEntry(p);
        }
        if (result != kOk)
            return result;
    }
    return kOk;
}

} // namespace typdescriptor::internal
