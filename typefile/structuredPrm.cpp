// Structured parameters: "PS" records, each naming a field of a parameter area with its data type, default, range and
// help block.
//
// In: a run of records and the area that they describe. Out: one decoded entry for each record, and the defaults in the
// area's bytes, so that a host that takes only the bytes has valid parameters. Bits share bytes, everything else has its
// bytes for itself; the order of the records decides: a bit may be put into a byte that is taken already.

#include "typefile/structuredPrm.h"

#include "descriptor/resultCodes.h"
#include "typefile/scan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace typdescriptor::internal {

namespace {

// The ways in which a value is tested; the data types have the same numbers.
enum ValueKind : char {
    kBit = 0,
    kBitString = 1,
    kByte = 2,
    kSigned = 3,
    kUnsigned = 4,
    kBitGroup = 5,
};

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
    const auto isBinaryDigit = [](char c) { return c == '0' || c == '1'; };
    for (int i = 0; i < count; ++i)
        if (!isBinaryDigit(text[i]))
            return false;
    return text[count] == '\0';
}

/// A text without any number reads as 0, which only zeros may mean; the empty text counts as zeros.
bool isDecimal(const char* text, int lowest, int highest)
{
    const int value = decimalValue(text);
    if (value == 0)
        return text[std::strspn(text, "0")] == '\0';
    return value >= lowest && value <= highest;
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

bool claimBytes(bool* isTaken, int count)
{
    if (std::count(isTaken, isTaken + count, true) > 0)
        return false;
    std::fill_n(isTaken, count, true);
    return true;
}

/// Puts a default that has passed its range test into the parameter bytes.
/// @return false when the field does not fit there
bool placeDefault(PrmArea& area, int byteIndex, const DataType& type, const char* text)
{
    const auto index = static_cast<std::size_t>(byteIndex - area.first);
    std::uint8_t* const byte = &area.bytes[index];
    bool* const isTaken = &area.isTaken[index];
    const int value = decimalValue(text);
    switch (type.kind) {
    case kBit:
    case kBitGroup:
        *isTaken = true;
        setBits(*byte, type, text);
        return true;
    case kBitString:
        if (!claimBytes(isTaken, 1))
            return false;
        setBits(*byte, type, text);
        return true;
    case kByte:
        if (!claimBytes(isTaken, 1))
            return false;
        *byte = static_cast<std::uint8_t>(value);
        return true;
    default:
        if (byteIndex > area.length() - 2 || !claimBytes(isTaken, 2))
            return false;
        byte[0] = static_cast<std::uint8_t>(static_cast<unsigned>(value) >> 8);
        byte[1] = static_cast<std::uint8_t>(value);
        return true;
    }
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

bool takeHelpReference(Cursor& p, int32_t& number)
{
    if (!takeText(p, kTagHelp))
        return false;
    number = numberAt(p);
    p += kNumberDigits;
    return number >= 0 && takeQuote(p) && takeTerminator(p);
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
    if (checkRanges(type.kind, entry.defaultValue, 0, type.bitCount) == 0)
        return kErrPrmValue;
    if (!placeDefault(area, byteIndex, type, entry.defaultValue))
        return kErrPrmValue;
    ++p; // the quote; behind eight characters anything may stand

    const ValueKind limitKind = type.kind == kBitString ? kByte : type.kind;
    for (auto limit : {&_parastruct::minValue, &_parastruct::maxValue}) {
        takeValueText(p, entry.*limit);
        if (checkRanges(limitKind, entry.*limit, type.bitCount, 0) == 0)
            return kErrPrmValue;
        if (!takeQuote(p))
            return kErrPrmRecord;
    }
    return takeHelpReference(p, entry.helpNumber) ? kOk : kErrPrmRecord;
}

} // namespace

int checkStructuredParameters(Cursor& p, int count, PrmArea& area, std::vector<_parastruct>& entries)
{
    entries.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int byteIndex = numberAt(p + prmRecord::kByteIndex.position, prmRecord::kByteIndex.width);
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

int checkRanges(char type, const char* text, int bits, int count)
{
    // Negative numbers pass the unsigned types: only the upper bound is a rule for them.
    constexpr int kNoLowerBound = std::numeric_limits<int>::min();
    bool isValid = false;
    switch (type) {
    case kBit:
        isValid = isBinary(text, 1);
        break;
    case kBitString:
        isValid = isBinary(text, kBitsPerByte);
        break;
    case kByte:
        isValid = isDecimal(text, kNoLowerBound, 0xFF);
        break;
    case kSigned:
        isValid = isDecimal(text, -0x8000, 0x7FFF);
        break;
    case kUnsigned:
        isValid = isDecimal(text, kNoLowerBound, 0xFFFF);
        break;
    case kBitGroup:
        isValid = bits == 0 ? isBinary(text, count) : decimalValue(text) <= std::ldexp(1.0, bits) - 1.0;
        break;
    }
    return isValid ? 1 : 0;
}

} // namespace typdescriptor::internal
