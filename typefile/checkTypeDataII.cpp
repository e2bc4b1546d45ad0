// The check of category-II type data: six one-character fields and the device diagnostic texts.
//
// In: type-data position 0. Out: the decoded fields, the diagnostic counts and where the type data ends.

#include "typefile/format.h"
#include "typefile/headerFlags.h"
#include "typefile/scan.h"
#include "typefile/typeFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

namespace {

constexpr std::string_view kStationFamilyB = "QX410B/";

// What a QX410K station must have; its flags must be 'J'.
constexpr char kQx410kDigit0 = '2';
constexpr char kQx410kDigit8 = '0';

bool readDigit(char c, char last, uint8_t& value)
{
    if (c < '0' || c > last)
        return false;
    value = static_cast<uint8_t>(c - '0');
    return true;
}

/// The modules of the station must fit its places: four when flag 4 is set, else eight. Eight-bit arithmetic that wraps
/// is the rule, even where a test cannot fail.
bool fitsCapacity(const SLAVE_TYPEDATA_TYPE& data)
{
    const uint8_t digit0 = data.cat2Digit0;
    const uint8_t digit8 = data.cat2Digit8;
    const bool half = data.cat2Flag4 == 1;
    const auto free = static_cast<uint8_t>(8 - digit0 - digit8 - (half ? 4 : 0));
    const auto total = static_cast<uint8_t>(digit0 + free);
    if (half)
        return digit8 <= 3 && total <= 4 && digit0 + digit8 <= 4;
    if (total > 8 || digit0 + digit8 > 8)
        return false;
    return !std::string_view(data.stationType).starts_with(kStationFamilyB) || digit0 + total <= 8;
}

} // namespace

int checkSlaveTypeDataCatII(Cursor p, TypeFile& file)
{
    startTypeData(file);
    SLAVE_TYPEDATA_TYPE& data = file.typeData;
    for (const std::size_t position : kCat2Terminators) {
        if (!isTerminator(p + position))
            return kErrTypeData;
    }

    const bool isQx410k = file.station == StationKind::kQx410k;
    if (!readDigit(p[kCat2Digit0], '4', data.cat2Digit0))
        return kErrTypeData;
    if (isQx410k && p[kCat2Digit0] != kQx410kDigit0)
        return kErrFixedCategoryII;
    data.cat2Flag4 = checkJNChar(p[kCat2Flag4]);
    if (data.cat2Flag4 < 0)
        return kErrTypeData;
    if (isQx410k && data.cat2Flag4 != 1)
        return kErrFixedCategoryII;
    if (!readDigit(p[kCat2Digit8], '7', data.cat2Digit8))
        return kErrTypeData;
    if (isQx410k && p[kCat2Digit8] != kQx410kDigit8)
        return kErrFixedCategoryII;
    if (!readDigit(p[kCat2Digit12], '3', data.cat2Digit12) || !readDigit(p[kCat2Digit16], '3', data.cat2Digit16))
        return kErrTypeData;
    data.cat2Flag20 = checkJNChar(p[kCat2Flag20]);
    if (data.cat2Flag20 < 0)
        return kErrTypeData;
    if (isQx410k && data.cat2Flag20 != 1)
        return kErrFixedCategoryII;

    p += kCat2DiagTexts;
    if (const int result = checkSlaveTypeDataDKM(p, 0, file); result != kOk)
        return result;
    if (!fitsCapacity(data))
        return kErrTypeData;
    if (file.header.makerDevice == 1)
        data.features |= kFeatureMakerDevice;
    file.end = p;
    return kOk;
}

} // namespace typdescriptor::internal
