// Structured parameters: "PS" records, each naming a field of a parameter area with its data type, default, range and
// help block.
//
// In: a run of records and the area that they describe. Out: one decoded entry for each record, and the defaults in the
// area's bytes, so that a host that takes only the bytes has valid parameters. Bits share bytes, everything else has its
// bytes for itself; the order of the records decides: a bit may be put into a byte that is taken already.

#include "typefile/parameters.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace typdescriptor::internal {

namespace {

// The ways in which a value is tested; the data types have the same numbers.
enum ValueKind : char { kBit, kBitString, kByte, kSigned, kUnsigned, kBitGroup };

struct DataType {
    ValueKind kind = kBit;
    int firstBit = 0; // of a bit, bit string or bit group
    int bitCount = 0;
};

struct NamedType {
    std::string_view name;
    DataType type;
};

constexpr int kBitsPerByte = 8;
constexpr std::size_t kMaxValueLength = sizeof(_parastruct::defaultValue) - 1;

constexpr std::array<NamedType, 4> kNamedTypes{{
    {kTypeBitString, {kBitString, 0, kBitsPerByte}},
    {kTypeByte, {kByte}},
    {kTypeSigned, {kSigned}},
    {kTypeUnsigned, {kUnsigned}},
}};

bool readDataType(const char* text, DataType& type)
{
    const int firstDigit = text[kTypeBit.size()] - '0';
    if (isText(text, kTypeBit)) {
        type = {kBit, firstDigit, 1};
        return firstDigit >= 0 && firstDigit < kBitsPerByte;
    }
    if (isText(text, kTypeBitGroup)) {
        const int bitCount = text[kTypeBitGroup.size() + 1] - '0';
        type = {kBitGroup, firstDigit, bitCount};
        return firstDigit >= 0 && bitCount >= 1 && firstDigit + bitCount <= kBitsPerByte;
    }
    for (const NamedType& named : kNamedTypes) {
        if (isText(text, named.name)) {
            type = named.type;
            return true;
        }
    }
    return false;
}

/// The leading integer of a value text. The longest text of a record is too short for a number that overflows.
int decimalValue(const char* text)
{
    return numberAt(text, kMaxValueLength);
}

bool isBinary(const char* text, int count)
{
    const std::size_t digits = std::strspn(text, "01");
    return digits == static_cast<std::size_t>(count) && text[digits] == '\0';
}

/// A text without any number reads as 0, which only zeros may mean; the empty text counts as zeros.
bool isDecimal(const char* text, int lowest, int highest)
{
    const int value = decimalValue(text);
    if (value == 0)
        return text[std::strspn(text, "0")] == '\0';
    return value >= lowest && value <= highest;
}

/// Whether a text is a value of a data type.
/// @param type   a ValueKind
/// @param bits   of a bit group, for the limits of its value; 0 for a default
/// @param count  of a bit group: its binary digits, for a default
bool checkRanges(char type, const char* text, int bits, int count)
{
    // Negative numbers pass the unsigned types: only the upper bound is a rule for them.
    constexpr int kNoLowerBound = std::numeric_limits<int>::min();
    switch (type) {
    case kBit:
        return isBinary(text, 1);
    case kBitString:
        return isBinary(text, kBitsPerByte);
    case kByte:
        return isDecimal(text, kNoLowerBound, 0xFF);
    case kSigned:
        return isDecimal(text, -0x8000, 0x7FFF);
    case kUnsigned:
        return isDecimal(text, kNoLowerBound, 0xFFFF);
    default:
        return bits == 0 ? isBinary(text, count) : decimalValue(text) <= (1 << bits) - 1;
    }
}

/// Takes a text up to its quote, or as much of it as has room.
template <std::size_t Size>
void takeValueText(Cursor& p, char (&text)[Size])
{
    std::size_t length = 0;
    for (; length < Size - 1 && !isQuote(p); ++length)
        text[length] = *p++;
    text[length] = '\0';
}

void setBits(std::uint8_t& byte, const DataType& type, const char* text)
{
    for (int k = 0; k < type.bitCount; ++k) {
        const auto mask = static_cast<std::uint8_t>(1U << (type.firstBit + k));
        const bool isSet = text[type.bitCount - 1 - k] == '1';
        byte = static_cast<std::uint8_t>(isSet ? byte | mask : byte & ~mask);
    }
}

/// Puts a default that has passed its range test into the parameter bytes.
/// @return false when the field does not fit there
bool placeDefault(PrmArea& area, int byteIndex, const DataType& type, const char* text)
{
    const auto index = static_cast<std::size_t>(byteIndex - area.first);
    const std::size_t size = type.kind == kSigned || type.kind == kUnsigned ? 2 : 1;
    if (index + size > area.bytes.size())
        return false;
    std::uint8_t* const bytes = &area.bytes[index];
    bool* const isTaken = &area.isTaken[index];
    const bool mayShareItsByte = type.kind == kBit || type.kind == kBitGroup;
    if (!mayShareItsByte && std::count(isTaken, isTaken + size, true) > 0)
        return false;
    std::fill_n(isTaken, size, true);
    if (type.bitCount > 0) {
        setBits(*bytes, type, text);
        return true;
    }
    auto value = static_cast<unsigned>(decimalValue(text));
    for (std::size_t i = size; i-- > 0; value >>= kBitsPerByte)
        bytes[i] = static_cast<std::uint8_t>(value);
    return true;
}

/// A keyword record, which tells the host where to put the module's slot number.
bool takeKeywordRecord(Cursor& record, int byteIndex, int length)
{
    Cursor p = record + prmRecord::kKind;
    if (!takeText(p, kKeywordSlotNumber) || !takeText(p, "["))
        return false;
    const bool isTwoBytes = isText(p, kTypeSigned) || isText(p, kTypeUnsigned);
    if (!isText(p, kTypeByte) && !(isTwoBytes && byteIndex <= length - 2))
        return false;
    p += kDataTypeWidth;
    if (!takeText(p, "]") || !takeText(p, kKeywordTail) || !takeTerminator(p))
        return false;
    record = p;
    return true;
}

int checkPrmRecord(_parastruct& entry, PrmArea& area, int byteIndex, Cursor& p)
{
    copyField(entry.reference, p + prmRecord::kReference.position);
    copyField(entry.name, p + prmRecord::kName.position);
    if (!isQuote(p + prmRecord::kName.end()))
        return kErrPrmRecord;

    DataType type;
    if (!readDataType(p + prmRecord::kDataType.position, type))
        return kErrPrmValue;
    copyField(entry.dataType, p + prmRecord::kDataType.position);
    if (!isQuote(p + prmRecord::kDataType.end()))
        return kErrPrmRecord;

    p += prmRecord::kDefaultValue;
    takeValueText(p, entry.defaultValue);
    if (!checkRanges(type.kind, entry.defaultValue, 0, type.bitCount) ||
        !placeDefault(area, byteIndex, type, entry.defaultValue))
        return kErrPrmValue;
    ++p; // the quote; behind eight characters anything may stand

    const ValueKind limitKind = type.kind == kBitString ? kByte : type.kind;
    for (auto limit : {&_parastruct::minValue, &_parastruct::maxValue}) {
        takeValueText(p, entry.*limit);
        if (!checkRanges(limitKind, entry.*limit, type.bitCount, 0))
            return kErrPrmValue;
        if (!takeQuote(p))
            return kErrPrmRecord;
    }
    const bool isTaken = takeText(p, kTagHelp) && takeNumberToQuote(p, entry.helpNumber) && takeTerminator(p);
    return isTaken && entry.helpNumber >= 0 ? kOk : kErrPrmRecord;
}

} // namespace

int checkStructuredParameters(Cursor& p, int count, PrmArea& area, std::vector<_parastruct>& entries)
{
    entries.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int byteIndex = numberAt(p, prmRecord::kByteIndex);
        if (!isText(p, kTagPrm) || byteIndex < area.first || byteIndex >= area.length())
            return kErrPrmRecord;
        if (isQuote(p + prmRecord::kKind)) {
            entries.emplace_back();
            if (const int result = checkPrmRecord(entries.back(), area, byteIndex, p); result < 0)
                return result;
        } else if (area.first != 0 || !takeKeywordRecord(p, byteIndex, area.length())) {
            // A station has no slot number, hence no keywords behind its standard bytes.
            return kErrPrmRecord;
        }
    }
    return kOk;
}

} // namespace typdescriptor::internal
