// The check of a whole type file: head line, header, and the way to the type data of its category.
//
// In: an image as a constructor left it. Out: the decoded header, the kind of station and, from the type-data checks,
// everything that the queries answer from; or the first code met.

#include "typefile/typeFile.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>

namespace typdescriptor::internal {

namespace {

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
bool convertVersion3Header(char* p, const TypeFile& file)
{
    if (!isText(p + version3::kStationPosition, version3::kStation))
        return false;
    std::array<char, version3::kLength> old{};
    copyCharacters(file, static_cast<std::size_t>(p - file.image), old.data(), old.size());
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

/// Leaves the category as it is for an unknown station: on a second check, that of the first then still holds.
bool findCategory(StationCategory stated, std::int32_t& category)
{
    if (stated == kCategoryII || (stated == kCategoryI && category != kCategoryII))
        category = stated;
    return category != kCategoryUnknown;
}

int checkContents(char* image, TypeFile& file)
{
    if (const int result = checkHeadLine(file); result != kOk)
        return result;
    if (const int result = checkSlaveTypeHeader(image + file.headLineLength, file); result != kOk)
        return result;
    const Cursor typeData = file.headerPosition() + kHeaderLength;
    return file.category == kCategoryI ? checkSlaveTypeDataCatI(typeData, file)
                                       : checkSlaveTypeDataCatII(typeData, file);
}

/// Feature bit of a header-configuration flag that is a digit.
std::uint32_t headerCnfFeature(char c)
{
    if (c == '0')
        return kFeatureHeaderCnf0;
    return c == '1' ? static_cast<std::uint32_t>(kFeatureHeaderCnf1) : 0;
}

} // namespace

int check(char* image, std::size_t capacity, TypeFile& file)
{
    TypeFile fresh;
    fresh.orderNumber = file.orderNumber;
    fresh.orderNumber.isFound = false;
    fresh.category = file.category;
    fresh.image = image;
    fresh.capacity = capacity;
    file = std::move(fresh);
    try {
        if (const int result = checkContents(image, file); result != kOk)
            return result;
    } catch (const std::bad_alloc&) {
        return kErrMemory;
    }
    file.isLoaded = true;
    file.typeData.features |= headerCnfFeature(file.headerPosition()[kHeaderCnf]);
    return kOk;
}

int checkHeadLine(TypeFile& file)
{
    const char* const end = file.image + file.capacity;
    const char* const semicolon = std::find(file.image, end, kTerminator.front());
    if (semicolon == end)
        return kOk;
    const char* const lineEnd = std::find(file.image, end, kLineEnd.front());
    if (lineEnd == end)
        return kErrHeader;
    if (semicolon < lineEnd)
        return kOk;

    const auto length = static_cast<std::size_t>(lineEnd - file.image);
    if (length > kMaxHeadLineLength || !isText(lineEnd, kLineEnd))
        return kErrHeader;
    file.headLineLength = length + kLineEnd.size();
    findOrderNumber(file);
    return kOk;
}

int checkSlaveTypeHeader(char* header, TypeFile& file)
{
    SLAVE_TYPE_HEADER_INFO& info = file.header;
    copyCharacters(file, file.headLineLength, info.version, kVersion.width);
    if (isText(info.version, version3::kPrefix) && !convertVersion3Header(header, file))
        return kErrHeader;
    std::array<char, kHeaderLength> text{};
    copyCharacters(file, file.headLineLength, text.data(), text.size());
    const Cursor p = text.data();
    for (const std::size_t position : kHeaderTerminators) {
        if (!isTerminator(p + position))
            return kErrHeader;
    }
    if (const int result = readHeaderTexts(p, info); result != kOk)
        return result;
    if (const int result = readIdentNumber(p + kIdentNumber.position, info.identNumber); result != kOk)
        return result;
    const int isMaker = checkJNChar(p[kMakerDevice]);
    const int isCnf = headerCnfFeature(p[kHeaderCnf]) != 0 ? 1 : checkJNChar(p[kHeaderCnf]);
    if (isMaker < 0 || isCnf < 0)
        return kErrHeader;
    info.makerDevice = isMaker;
    info.headerCnf = isCnf;

    const Station& station = stationOf(info.stationType);
    if (!findCategory(station.category, file.category))
        return kErrHeader;
    file.station = station.kind;
    if (file.category != kCategoryI && file.station == StationKind::kBareName)
        file.station = StationKind::kPlain;
    return file.station == StationKind::kBareName && info.headerCnf == 0 ? kErrHeader : kOk;
}

} // namespace typdescriptor::internal
