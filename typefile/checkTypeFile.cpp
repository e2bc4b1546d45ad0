// The check of a whole type file: head line, header, and the way to the type data of its category.
//
// In: an image as a constructor left it. Out: the decoded header, the flags of the station type and, from the type-data
// checks, everything that the queries answer from; or the first code met, which stays in `status` for good.

#include "descriptor/cTypDescriptor.h"
#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

using namespace typefile;

namespace {

constexpr int32_t kCategoryI = 0;
constexpr int32_t kCategoryII = 1;

// Whole station types: a field padded with blanks to its width never matches one of these.
constexpr std::string_view kBareStationB = "QX410B";
constexpr std::string_view kBareStationC = "QX410C";

bool isBlank(const char* p, TextField field)
{
    return std::all_of(p + field.position, p + field.end(), [](char c) { return c == ' '; });
}

void put(char* p, std::string_view text)
{
    std::copy(text.begin(), text.end(), p);
}

/// Rewrites an old header in place into the present layout and a category-II type data behind it. Its vendor name and
/// periphery become NULs.
bool convertVersion3Header(char* p)
{
    if (!isText(p + version3::kStationPosition, version3::kStation))
        return false;
    std::array<char, version3::kLength> old{};
    std::copy_n(p, old.size(), old.begin());
    const auto oldField = [&old](TextField field) {
        return std::string_view(old.data() + field.position, field.width);
    };

    std::fill(p + kModelName.position, p + kHeaderLength, '\0');
    put(p + kModelName.position, oldField(version3::kModelName));
    put(p + kFamily.position, version3::kFamily);
    put(p + kStationType.position, kStationQmx);
    put(p + kIdentNumber.position, oldField(version3::kIdentNumber));
    p[kMakerDevice] = 'J';
    p[kHeaderCnf] = 'N';
    // The terminator behind the version is not written: it must have been there.
    for (std::size_t i = 1; i < kHeaderTerminators.size(); ++i)
        put(p + kHeaderTerminators[i], kTerminator);

    p += kHeaderLength;
    put(p, oldField(version3::kTypeData));
    p += version3::kTypeData.width;
    put(p, kTagDeviceDiag);
    put(p + kTagDeviceDiag.size(), "000");
    put(p + kTagDeviceDiag.size() + kNumberDigits, kTerminator);
    return true;
}

int readHeaderTexts(const char* p, SLAVE_TYPE_HEADER_INFO& info)
{
    if (p[kModelName.position] == '\0')
        return kErrHeader;
    if (isBlank(p, kModelName))
        return kErrModelName;
    copyField(info.modelName, p + kModelName.position);
    copyField(info.vendorName, p + kVendorName.position);
    if (p[kFamily.position] == '\0' || isBlank(p, kFamily))
        return kErrHeader;
    copyField(info.family, p + kFamily.position);
    copyField(info.periphery, p + kPeriphery.position);
    copyField(info.stationType, p + kStationType.position);
    return kOk;
}

int readIdentNumber(const char* p, uint16_t& identNumber)
{
    constexpr int kMaxIdentNumber = 65535;
    if (!std::all_of(p, p + kIdentNumber.width, isDigit))
        return kErrIdentNumber;
    const int number = numberAt(p, kIdentNumber.width);
    if (number > kMaxIdentNumber)
        return kErrIdentNumber;
    identNumber = static_cast<uint16_t>(number);
    return kOk;
}

/// 'J' or 'N'; or '0' or '1', which stand for 'J' and a feature bit of their own.
int readHeaderCnf(char c, int32_t& headerCnf, uint32_t& featureBit)
{
    featureBit = 0;
    headerCnf = 1;
    switch (c) {
    case '0':
        featureBit = kFeatureHeaderCnf0;
        return kOk;
    case '1':
        featureBit = kFeatureHeaderCnf1;
        return kOk;
    case 'J':
    case 'j':
        return kOk;
    case 'N':
    case 'n':
        headerCnf = 0;
        return kOk;
    default:
        return kErrHeader;
    }
}

template <std::size_t Size>
bool isOneOf(std::string_view station, const std::array<std::string_view, Size>& stations)
{
    return std::find(stations.begin(), stations.end(), station) != stations.end();
}

/// Leaves the category as it is for an unknown station: on a second check, that of the first then still holds.
bool findCategory(std::string_view station, int32_t& category)
{
    if (isOneOf(station, kStationsCategoryII))
        category = kCategoryII;
    if (category != kCategoryII && isOneOf(station, kStationsCategoryI))
        category = kCategoryI;
    return category == kCategoryI || category == kCategoryII;
}

} // namespace

int cTypDescriptor::checkTypeFileContents()
{
    if (status != kOk)
        return status;
    releaseCheckResults();
    try {
        char* p = nullptr;
        status = checkHeadLine(&p);
        if (status == kOk)
            status = checkSlaveTypeHeader(p);
        if (status == kOk)
            status = typeCategory == kCategoryI ? checkSlaveTypeDataCatI(p + kHeaderLength)
                                                : checkSlaveTypeDataCatII(p + kHeaderLength);
    } catch (const std::bad_alloc&) {
        status = kErrMemory;
    }
    if (status != kOk)
        return status;
    loaded = 1;
    typeData.features |= headerCnfBits;
    return kOk;
}

/// Finds the head line and its order number, which becomes a string inside the image; `start` receives the header.
int cTypDescriptor::checkHeadLine(char** start)
{
    *start = image;
    char* const end = image + imageCapacity;
    char* const semicolon = std::find(image, end, kTerminator.front());
    if (semicolon == end)
        return kOk;
    char* const lineEnd = std::find(image, end, kLineEnd.front());
    if (lineEnd == end)
        return kErrHeader;
    if (semicolon < lineEnd)
        return kOk;

    const auto length = static_cast<std::size_t>(lineEnd - image);
    if (length > kMaxHeadLineLength || !isText(lineEnd, kLineEnd))
        return kErrHeader;
    headLineLength = static_cast<int32_t>(length + kLineEnd.size());

    // Both brackets are looked for in the image as a whole: a short head line finds them in the header.
    char* const searchEnd = image + kMaxHeadLineLength;
    char* const open = std::find(image, searchEnd, kOrderNumberOpen);
    if (open != searchEnd) {
        char* const number = open + 1;
        char* const numberEnd = number + kOrderNumberWidth + 1;
        char* const close = std::find(number, numberEnd, kOrderNumberClose);
        if (close != numberEnd) {
            orderNumberPos = number;
            orderNumberEnd = orderNumberClose = close;
            *close = '\0';
        }
    }
    *start = image + headLineLength;
    return kOk;
}

int cTypDescriptor::checkSlaveTypeHeader(char* p)
{
    headerPos = p;
    header = SLAVE_TYPE_HEADER_INFO();
    copyField(header.version, p);
    if (isText(p, version3::kPrefix) && !convertVersion3Header(p))
        return kErrHeader;
    for (const std::size_t position : kHeaderTerminators) {
        if (!isTerminator(p + position))
            return kErrHeader;
    }
    if (const int result = readHeaderTexts(p, header); result != kOk)
        return result;
    if (const int result = readIdentNumber(p + kIdentNumber.position, header.identNumber); result != kOk)
        return result;
    const int isMaker = checkJNChar(p[kMakerDevice]);
    if (isMaker < 0)
        return kErrHeader;
    header.makerDevice = isMaker;
    if (const int result = readHeaderCnf(p[kHeaderCnf], header.headerCnf, headerCnfBits); result != kOk)
        return result;

    const std::string_view station = header.stationType;
    if (!findCategory(station, typeCategory))
        return kErrHeader;
    fixedProfileStation = station == kStationFixedProfile ? 1 : 0;
    qx410kStation = station == kStationQx410k ? 1 : 0;
    qmxStation = station == kStationQmx ? 1 : 0;
    dpAsiStation = station == kStationDpAsi ? 1 : 0;
    kgpStation = station == kStationKgp ? 1 : 0;
    if (kgpStation != 0)
        kgpDeviceValue = 1;
    const bool isBare = station == kBareStationB || station == kBareStationC;
    bareNameStation = isBare && typeCategory == kCategoryI ? 1 : 0;
    return bareNameStation != 0 && header.headerCnf == 0 ? kErrHeader : kOk;
}

/// 'J' gives 1, 'N' 0, anything else -1.
int cTypDescriptor::checkJNChar(char c)
{
    switch (toUpper(c)) {
    case 'J':
        return 1;
    case 'N':
        return 0;
    default:
        return -1;
    }
}
