#include "gsd/valueReader.h"

#include "generator/families.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace typdescriptor::internal {

namespace {

constexpr std::uint32_t kSaturated = 0xFFFFFFFF;
constexpr std::uint64_t kBeyond32Bits = 0x100000000;
constexpr std::ptrdiff_t kMaxFamilyDigits = 19;

constexpr std::uint8_t kNoDigit = 0xFF;
constexpr std::array<std::uint8_t, 256> makeDigitValues()
{
    std::array<std::uint8_t, 256> values{};
    for (std::size_t c = 0; c < values.size(); ++c) {
        const char digit = toUpper(static_cast<char>(c));
        values[c] = kNoDigit;
        if (isHexDigit(digit))
            values[c] = static_cast<std::uint8_t>(isDigit(digit) ? digit - '0' : digit - 'A' + 10);
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> kDigitValues = makeDigitValues();

std::uint8_t digitValue(char c)
{
    return kDigitValues[static_cast<unsigned char>(c)];
}

/// Takes as many digits as stand at the start of the text; false when there is none. A value above 32 bits becomes
/// kBeyond32Bits.
template <std::uint32_t Base>
bool takeDigits(const char*& text, std::uint64_t& value)
{
    const char* digit = text;
    std::uint64_t sum = 0;
    for (; digitValue(*digit) < Base; ++digit)
        sum = std::min(sum * Base + digitValue(*digit), kBeyond32Bits);
    value = sum;
    return std::exchange(text, digit) != digit;
}

/// Takes what can belong to a number, at the start of the text; false when that is no number. Whether it is the end of
/// the number, the next character tells.
/// @param withSigns  whether a sign can belong to it that is not the first character
bool takeNumber(const char*& text, ScannedNumber& number, bool withSigns = true)
{
    const char* rest = text;
    std::uint64_t value = 0;
    bool hasDigits = false;
    number.negative = *rest == '-';
    if (rest[0] == '0' && toUpper(rest[1]) == 'X') {
        rest += 2;
        hasDigits = takeDigits<16>(rest, value);
    } else {
        rest += number.negative ? 1 : 0;
        hasDigits = takeDigits<10>(rest, value);
    }
    // Digits of the other base and signs are dropped.
    while (digitValue(*rest) != kNoDigit || (*rest == '-' && withSigns))
        ++rest;
    text = rest;
    if (value == kBeyond32Bits)
        number.value = kSaturated;
    else
        number.value = static_cast<std::uint32_t>(number.negative ? 0 - value : value);
    return hasDigits;
}

struct IntegerRange {
    std::int64_t minimum;
    std::int64_t maximum;
    std::uint32_t mask;
};

// By kind.
constexpr std::array<IntegerRange, 6> kRanges{{
    {-128, 127, 0xFF},
    {0, 0xFF, 0xFF},
    {-32768, 32767, 0xFFFF},
    {0, 0xFFFF, 0xFFFF},
    {INT32_MIN, INT32_MAX, 0xFFFFFFFF},
    {0, 0xFFFFFFFF, 0xFFFFFFFF},
}};

const IntegerRange& rangeOf(IntegerKind kind)
{
    return kRanges[static_cast<std::size_t>(kind)];
}

/// A minus sign is no part of an unsigned number, not even before 0.
bool fits(const ScannedNumber& number, const IntegerRange& range)
{
    if (range.minimum == 0)
        return !number.negative && number.value <= range.maximum;
    const auto value = static_cast<std::int32_t>(number.value);
    return value >= range.minimum && value <= range.maximum;
}

} // namespace

bool scanNumber(const char*& text, ScannedNumber& number, unsigned ends)
{
    bool isNumber = takeNumber(text, number);
    for (; !isOf(kBlank | ends, *text); ++text)
        isNumber = false;
    return isNumber;
}

ValueReader::AnyNumber ValueReader::anyFlag(const char* text, unsigned ends)
{
    ScannedNumber number;
    const bool isRead = scanNumber(text, number, ends);
    if (!isRead || number.value > 1 || (number.negative && number.value != 0))
        return {text, 0, kErrGsdFlag};
    return {text, number.value, kOk};
}

ValueReader::AnyNumber ValueReader::anyNumber(const char* text, unsigned ends, IntegerKind kind)
{
    ScannedNumber number;
    const IntegerRange& range = rangeOf(kind);
    if (!scanNumber(text, number, ends) || !fits(number, range))
        return {text, 0, kErrGsdNumber};
    return {text, number.value & range.mask, kOk};
}

std::string_view ValueReader::squeeze(std::string_view content, std::size_t target, char* squeezed)
{
    std::size_t length = content.size();
    std::copy(content.begin(), content.end(), squeezed);
    for (std::size_t i = length; i-- > 0 && length > target;) {
        if (squeezed[i] != ' ')
            continue;
        std::copy(squeezed + i + 1, squeezed + length, squeezed + i);
        --length;
    }
    return {squeezed, length};
}

ValueReader::AnyNumber ValueReader::anyList(const char* text, unsigned ends, std::size_t maximum, IntegerKind kind,
                                            NumberList& list)
{
    maximum = std::min(maximum, NumberList::kMaxCount);
    const IntegerRange& range = rangeOf(kind);
    text = skipBlanks(text);
    // What stands between the elements counts before their number, and that before what they are.
    std::size_t count = 0;
    bool areNumbers = true;
    for (;; ++count) {
        ScannedNumber number;
        const bool isRead = takeNumber(text, number);
        const bool atEnd = *text == ',' || isOf(kBlank | ends, *text);
        while (*text != ',' && !isOf(kBlank | ends, *text))
            ++text;
        areNumbers = areNumbers && isRead && atEnd && fits(number, range);
        if (count < maximum)
            list.values[count] = number.value & range.mask;
        text = skipBlanks(text);
        if (isOf(ends, *text))
            break;
        if (*text != ',')
            return {text, 0, kErrGsdSyntax};
        text = skipBlanks(text + 1);
    }
    if (++count > maximum)
        return {text, 0, kErrGsdTooMany};
    if (!areNumbers)
        return {text, 0, kErrGsdNumber};
    list.count = count;
    return {text, 0, kOk};
}

int ValueReader::tryRange(IntegerKind kind, std::uint32_t& first, std::uint32_t& last)
{
    const char* at = skipBlanks(text);
    const bool hasComma = isWhole() && std::strchr(at, ',') != nullptr;
    ScannedNumber minimum;
    ScannedNumber maximum;
    // The first minus sign behind the start separates the two.
    bool areNumbers = takeNumber(at, minimum, false);
    for (; *at != '-' && !isOf(kBlank | ends, *at); ++at)
        areNumbers = false;
    at = skipBlanks(at);
    if (*at != '-' || hasComma)
        return kErrGsdSyntax;
    at = skipBlanks(at + 1);
    areNumbers = scanNumber(at, maximum, ends) && areNumbers;
    const IntegerRange& limits = rangeOf(kind);
    if (!areNumbers || !fits(minimum, limits) || !fits(maximum, limits))
        return kErrGsdNumber;
    first = minimum.value & limits.mask;
    last = maximum.value & limits.mask;
    text = at;
    return kOk;
}

FamilyValue ValueReader::family()
{
    FamilyValue result;
    if (failed())
        return result;
    if (!isWhole()) { // sub-families are all that is left of the line, whatever that is
        fail(kErrGsdSyntax);
        return result;
    }
    const char* digits = text;
    while (isDigit(*text) && text - digits < kMaxFamilyDigits)
        ++text;
    std::uint64_t number = 0;
    if (!takeDigits<10>(digits, number)) {
        fail(kErrGsdNumber);
        return result;
    }
    result.number = number >= kFamilyCount ? 0 : static_cast<std::uint32_t>(number);
    while (*text != '\0') {
        const std::size_t length = std::strcspn(text + 1, "@");
        if (*text != '@' || length == 0 || result.subFamilyCount == FamilyValue::kMaxSubFamilies) {
            fail(kErrGsdSyntax);
            return result;
        }
        result.subFamilies[result.subFamilyCount++] = {text + 1, length};
        text += 1 + length;
    }
    return result;
}

bool ValueReader::takeLast(const char* word)
{
    const char* const at = skipBlanks(text);
    if (failed() || *at != *word || std::strcmp(at, word) != 0)
        return false;
    text = "";
    return true;
}

} // namespace typdescriptor::internal
