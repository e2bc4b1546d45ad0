// The check of category-II type data: six one-character fields and the device diagnostic texts.
//
// In: type-data position 0. Out: the decoded fields, the diagnostic counts and where the type data ends.

#include "typefile/typeFile.h"

#include <array>
#include <string_view>

namespace typdescriptor::internal {

namespace {

constexpr std::string_view kStationFamilyB = "QX410B/";

constexpr int kAny = -1;

/// A field of one character.
struct Field {
    std::size_t position;
    bool isFlag;  // J or N, else a digit
    int last;     // the highest value
    int ofQx410k; // what a QX410K station must have
};

constexpr std::array<Field, 6> kFields{{
    {kCat2Digit0, false, 4, 2},
    {kCat2Flag4, true, 1, 1},
    {kCat2Digit8, false, 7, 0},
    {kCat2Digit12, false, 3, kAny},
    {kCat2Digit16, false, 3, kAny},
    {kCat2Flag20, true, 1, 1},
}};

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

    std::array<int, kFields.size()> values{};
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        const Field& field = kFields[i];
        const char c = p[field.position];
        values[i] = field.isFlag ? checkJNChar(c) : c - '0';
        if (values[i] < 0 || values[i] > field.last)
            return kErrTypeData;
        if (file.station == StationKind::kQx410k && field.ofQx410k != kAny && values[i] != field.ofQx410k)
            return kErrFixedCategoryII;
    }
    data.cat2Digit0 = static_cast<uint8_t>(values[0]);
    data.cat2Flag4 = values[1];
    data.cat2Digit8 = static_cast<uint8_t>(values[2]);
    data.cat2Digit12 = static_cast<uint8_t>(values[3]);
    data.cat2Digit16 = static_cast<uint8_t>(values[4]);
    data.cat2Flag20 = values[5];

    p += kCat2DiagTexts;
    if (const int result = checkSlaveTypeDataDKM(p, 0, file); result != kOk)
        return result;
    if (!fitsCapacity(data))
        return kErrTypeData;
    file.end = p;
    return kOk;
}

} // namespace typdescriptor::internal
