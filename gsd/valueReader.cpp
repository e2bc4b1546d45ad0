#include "gsd/valueReader.h"

#include "descriptor/resultCodes.h"
#include "generator/families.h"
#include "gsd/textScan.h"
#include "typefile/scan.h"

#include <algorithm>

namespace typdescriptor::internal {

namespace {

constexpr std::uint32_t kSaturated = 0xFFFFFFFF;
constexpr std::uint64_t kBeyond32Bits = 0x100000000;
constexpr std::size_t kMaxFamilyDigits = 19;
constexpr std::string_view kElementEnd = " \t\n\v\f\r,";

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

std::size_t wordLength(std::string_view text)
{
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isSpace) - text.begin());
}

/// Takes as many digits as stand at the start of the text; false when there is none. A value above 32 bits becomes
/// kBeyond32Bits.
bool takeDigits(std::string_view& text, std::uint32_t base, std::uint64_t& value)
{
    const char* digit = text.data();
    const char* const end = digit + text.size();
    std::uint64_t sum = 0;
    for (; digit != end && digitValue(*digit) < base; ++digit)
        sum = std::min(sum * base + digitValue(*digit), kBeyond32Bits);
    value = sum;
    const auto count = static_cast<std::size_t>(digit - text.data());
    text.remove_prefix(count);
    return count > 0;
}

/// Takes what can belong to a number, at the start of the text; false when that is no number. Whether it is the end of
/// the number, the next character tells.
bool takeNumber(std::string_view& text, ScannedNumber& number)
{
    std::string_view rest = text;
    const bool isNegative = !rest.empty() && rest.front() == '-';
    const bool isHex = rest.size() > 1 && rest[0] == '0' && toUpper(rest[1]) == 'X';
    rest.remove_prefix(isHex ? 2 : isNegative ? 1 : 0);
    std::uint64_t value = 0;
    const bool hasDigits = isHex ? takeDigits(rest, 16, value) : takeDigits(rest, 10, value);
    // Digits of the other base and signs are dropped.
    while (!rest.empty() && (digitValue(rest.front()) != kNoDigit || rest.front() == '-'))
        rest.remove_prefix(1);
    text = rest;
    number.negative = isNegative;
    if (value == kBeyond32Bits)
        number.value = kSaturated;
    else
        number.value = static_cast<std::uint32_t>(isNegative ? 0 - value : value);
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
bool isWithin(const ScannedNumber& number, const IntegerRange& range)
{
    if (range.minimum == 0)
        return !number.negative && number.value <= range.maximum;
    const auto value = static_cast<std::int32_t>(number.value);
    return value >= range.minimum && value <= range.maximum;
}

} // namespace

bool scanNumber(std::string_view& text, ScannedNumber& number)
{
    const bool isNumber = takeNumber(text, number);
    if (text.empty() || isSpace(text.front()))
        return isNumber;
    text.remove_prefix(wordLength(text));
    return false;
}

std::uint32_t ValueReader::flag()
{
    ScannedNumber number;
    if (failed())
        return 0;
    const bool isRead = scanNumber(text, number);
    if (!isRead || number.value > 1 || (number.negative && number.value != 0))
        return fail(kErrGsdFlag);
    return number.value;
}

std::uint32_t ValueReader::number(IntegerKind kind)
{
    ScannedNumber number;
    if (failed())
        return 0;
    const IntegerRange& range = rangeOf(kind);
    if (!scanNumber(text, number) || !isWithin(number, range))
        return fail(kErrGsdNumber);
    return number.value & range.mask;
}

std::string_view ValueReader::string(std::size_t squeezeTarget)
{
    if (failed())
        return {};
    const std::string_view quoted = withoutLeadingBlanks(text);
    const std::size_t end = quoted.find(kQuote, 1);
    // Both quotes are there, and those behind them come in pairs as well.
    if (end == std::string_view::npos || quoted.front() != kQuote || hasOddQuotes(quoted.substr(end + 1))) {
        fail(kErrGsdSyntax);
        return {};
    }
    const std::string_view content = quoted.substr(1, end - 1);
    if (content.empty() || content.size() > kMaxStringLength) {
        fail(content.empty() ? kErrGsdSyntax : kErrGsdStringLen);
        return {};
    }
    text = quoted.substr(end + 1);
    return squeezeTarget != 0 && content.size() > squeezeTarget ? squeeze(content, squeezeTarget) : content;
}

std::string_view ValueReader::squeeze(std::string_view content, std::size_t target)
{
    std::size_t length = content.size();
    std::copy(content.begin(), content.end(), squeezed.begin());
    for (std::size_t i = length; i-- > 0 && length > target;) {
        if (squeezed[i] != ' ')
            continue;
        std::copy(squeezed.data() + i + 1, squeezed.data() + length, squeezed.data() + i);
        --length;
    }
    return {squeezed.data(), length};
}

NumberList ValueReader::list(std::size_t maximum, IntegerKind kind)
{
    NumberList result;
    if (failed())
        return result;
    maximum = std::min(maximum, NumberList::kMaxCount);
    const IntegerRange& range = rangeOf(kind);
    skipBlanks();
    std::string_view rest = text;
    text = {};
    // What stands between the elements counts before their number, and that before what they are.
    std::size_t count = 0;
    bool areNumbers = true;
    for (;; ++count) {
        ScannedNumber number;
        const bool isRead = takeNumber(rest, number);
        const bool atEnd = rest.empty() || isSpace(rest.front()) || rest.front() == ',';
        if (!atEnd)
            rest.remove_prefix(std::min(rest.find_first_of(kElementEnd), rest.size()));
        areNumbers = areNumbers && isRead && atEnd && isWithin(number, range);
        if (count < maximum)
            result.values[count] = number.value & range.mask;
        rest = withoutLeadingBlanks(rest);
        if (rest.empty())
            break;
        if (rest.front() != ',') {
            fail(kErrGsdSyntax);
            return result;
        }
        rest = withoutLeadingBlanks(rest.substr(1));
    }
    if (++count > maximum)
        fail(kErrGsdTooMany);
    else if (!areNumbers)
        fail(kErrGsdNumber);
    else
        result.count = count;
    return result;
}

NumberList ValueReader::range(IntegerKind kind)
{
    NumberList result;
    if (failed())
        return result;
    skipBlanks();
    const std::size_t separator = text.find('-', 1); // the first may be the sign of the minimum
    if (text.find(',') != std::string_view::npos || separator >= text.size()) {
        fail(kErrGsdSyntax);
        return result;
    }
    const std::string_view maximumText = withoutLeadingBlanks(text.substr(separator + 1));
    const std::size_t maximumLength = wordLength(maximumText);
    const std::string_view minimumText = text.substr(0, separator);
    if (!withoutLeadingBlanks(minimumText.substr(wordLength(minimumText))).empty()) {
        fail(kErrGsdSyntax);
        return result;
    }
    ValueReader minimum(minimumText);
    ValueReader maximum(maximumText.substr(0, maximumLength));
    result.values[0] = minimum.number(kind);
    result.values[1] = maximum.number(kind);
    if (minimum.failed() || maximum.failed()) {
        fail(kErrGsdNumber);
        return result;
    }
    text = maximumText.substr(maximumLength);
    result.count = 2;
    return result;
}

FamilyValue ValueReader::family()
{
    FamilyValue result;
    if (failed())
        return result;
    std::string_view digits = text.substr(0, kMaxFamilyDigits);
    const std::size_t available = digits.size();
    std::uint64_t number = 0;
    if (!takeDigits(digits, 10, number)) {
        fail(kErrGsdNumber);
        return result;
    }
    result.number = number >= kFamilyCount ? 0 : static_cast<std::uint32_t>(number);
    text.remove_prefix(available - digits.size());
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('@', 1), text.size());
        if (text.front() != '@' || end == 1 || result.subFamilyCount == FamilyValue::kMaxSubFamilies) {
            fail(kErrGsdSyntax);
            return result;
        }
        result.subFamilies[result.subFamilyCount++] = text.substr(1, end - 1);
        text.remove_prefix(end);
    }
    return result;
}

bool ValueReader::takeLast(std::string_view word)
{
    if (failed() || withoutLeadingBlanks(text) != word)
        return false;
    text = {};
    return true;
}

bool ValueReader::atEnd()
{
    skipBlanks();
    return text.empty();
}

int ValueReader::finish() const
{
    if (failed())
        return failure;
    return text.empty() ? kOk : kErrGsdSyntax;
}

/// Returns what a failed reading yields.
std::uint32_t ValueReader::fail(int code)
{
    failure = code;
    return 0;
}

void ValueReader::skipBlanks()
{
    text = withoutLeadingBlanks(text);
}

} // namespace typdescriptor::internal
