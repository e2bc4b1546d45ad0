#include "gsd/valueReader.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"
#include "typefile/scan.h"

#include <algorithm>

using typefile::isDigit;
using typefile::isHexDigit;
using typefile::isSpace;
using typefile::kQuote;

namespace {

constexpr std::uint32_t kSaturated = 0xFFFFFFFF;
constexpr std::uint64_t kBeyond32Bits = 0x100000000;
constexpr std::uint32_t kMaxFamily = 11;
constexpr std::size_t kMaxFamilyDigits = 19;

bool isHexMark(char c)
{
    return c == 'x' || c == 'X';
}

std::uint32_t digitValue(char c)
{
    return static_cast<std::uint32_t>(isDigit(c) ? c - '0' : typefile::toUpper(c) - 'A' + 10);
}

std::size_t wordLength(std::string_view text)
{
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isSpace) - text.begin());
}

/// Converts as many digits as stand at the start of the text; false when there is none. A value above 32 bits becomes
/// kBeyond32Bits.
bool convertDigits(std::string_view digits, std::uint32_t base, std::uint64_t& value)
{
    const auto isDigitOfBase = [base](char c) { return base == 16 ? isHexDigit(c) : isDigit(c); };
    std::size_t count = 0;
    value = 0;
    for (; count < digits.size() && isDigitOfBase(digits[count]); ++count)
        value = std::min(value * base + digitValue(digits[count]), kBeyond32Bits);
    return count > 0;
}

bool convert(std::string_view digits, std::uint32_t base, ScannedNumber& number)
{
    std::uint64_t value = 0;
    if (!convertDigits(digits, base, value))
        return false;
    if (value == kBeyond32Bits)
        number.value = kSaturated;
    else
        number.value = static_cast<std::uint32_t>(number.negative ? 0 - value : value);
    return true;
}

bool isInRange(const ScannedNumber& number, IntegerKind kind)
{
    const auto signedValue = static_cast<std::int32_t>(number.value);
    switch (kind) {
    case IntegerKind::signed8:
        return signedValue >= -128 && signedValue <= 127;
    case IntegerKind::unsigned8:
        return number.value <= 0xFF && !number.negative;
    case IntegerKind::signed16:
        return signedValue >= -32768 && signedValue <= 32767;
    case IntegerKind::unsigned16:
        return number.value <= 0xFFFF && !number.negative;
    case IntegerKind::signed32:
        return true;
    default:
        return !number.negative;
    }
}

std::uint32_t widthMask(IntegerKind kind)
{
    switch (kind) {
    case IntegerKind::signed8:
    case IntegerKind::unsigned8:
        return 0xFF;
    case IntegerKind::signed16:
    case IntegerKind::unsigned16:
        return 0xFFFF;
    default:
        return 0xFFFFFFFF;
    }
}

/// Whether the text is runs of characters separated by commas, blanks around the commas allowed.
bool hasListSeparators(std::string_view text)
{
    std::size_t i = 0;
    const auto skipBlanks = [&] {
        while (i < text.size() && isSpace(text[i]))
            ++i;
    };
    for (;;) {
        while (i < text.size() && !isSpace(text[i]) && text[i] != ',')
            ++i;
        skipBlanks();
        if (i == text.size())
            return true;
        if (text[i] != ',')
            return false;
        ++i;
        skipBlanks();
    }
}

} // namespace

bool scanNumber(std::string_view& text, ScannedNumber& number)
{
    std::size_t length = 0;
    std::size_t hexMarks = 0;
    bool belongs = true;
    for (; length < text.size() && !isSpace(text[length]); ++length) {
        const char c = text[length];
        if (isHexMark(c))
            ++hexMarks;
        else if (!isHexDigit(c) && c != '-')
            belongs = false;
    }
    const std::string_view token = text.substr(0, length);
    text.remove_prefix(length);
    if (token.empty() || !belongs)
        return false;
    number.negative = token.front() == '-';
    if (hexMarks == 0)
        return convert(token.substr(number.negative ? 1 : 0), 10, number);
    if (hexMarks != 1 || token.front() != '0' || !isHexMark(token[1]))
        return false;
    return convert(token.substr(2), 16, number);
}

GsdString::GsdString(std::string_view text) : used(std::min(text.size(), kMaxLength))
{
    std::copy_n(text.data(), used, characters.data());
}

void GsdString::squeeze(std::size_t target)
{
    if (target == 0)
        return;
    for (std::size_t i = used; i-- > 0 && used > target;) {
        if (characters[i] != ' ')
            continue;
        std::copy(characters.data() + i + 1, characters.data() + used, characters.data() + i);
        --used;
    }
}

std::uint32_t ValueReader::flag()
{
    ScannedNumber number;
    if (failed())
        return 0;
    const bool isRead = scanNumber(text, number);
    if (!isRead || number.value > 1 || (number.negative && number.value != 0)) {
        fail(kErrGsdFlag);
        return 0;
    }
    return number.value;
}

std::uint32_t ValueReader::number(IntegerKind kind)
{
    ScannedNumber number;
    if (failed())
        return 0;
    if (!scanNumber(text, number) || !isInRange(number, kind)) {
        fail(kErrGsdNumber);
        return 0;
    }
    return number.value & widthMask(kind);
}

GsdString ValueReader::string(std::size_t squeezeTarget)
{
    if (failed())
        return {};
    const auto quotes = std::count(text.begin(), text.end(), kQuote);
    const std::string_view quoted = withoutLeadingBlanks(text);
    if (quotes == 0 || quotes % 2 != 0 || quoted.front() != kQuote) {
        fail(kErrGsdSyntax);
        return {};
    }
    const std::string_view content = quoted.substr(1, quoted.find(kQuote, 1) - 1);
    if (content.empty() || content.size() > GsdString::kMaxLength) {
        fail(content.empty() ? kErrGsdSyntax : kErrGsdStringLen);
        return {};
    }
    text = quoted.substr(content.size() + 2);
    GsdString result(content);
    result.squeeze(squeezeTarget);
    return result;
}

NumberList ValueReader::list(std::size_t maximum, IntegerKind kind)
{
    NumberList result;
    if (failed())
        return result;
    skipBlanks();
    std::string_view rest = text;
    text = {};
    if (!hasListSeparators(rest)) {
        fail(kErrGsdSyntax);
        return result;
    }
    const auto count = static_cast<std::size_t>(std::count(rest.begin(), rest.end(), ',')) + 1;
    if (count > std::min(maximum, NumberList::kMaxCount)) {
        fail(kErrGsdTooMany);
        return result;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        ValueReader element(withoutLeadingBlanks(rest.substr(0, comma)));
        result.values[i] = element.number(kind);
        if (element.failed()) {
            fail(element.failure);
            return result;
        }
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
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
    if (!hasListSeparators(minimumText)) {
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
    const auto endOfDigits = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::size_t digits = std::min(static_cast<std::size_t>(endOfDigits - text.begin()), kMaxFamilyDigits);
    std::uint64_t number = 0;
    if (!convertDigits(text.substr(0, digits), 10, number)) {
        fail(kErrGsdNumber);
        return result;
    }
    result.number = number > kMaxFamily ? 0 : static_cast<std::uint32_t>(number);
    text.remove_prefix(digits);
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

void ValueReader::fail(int code)
{
    failure = code;
}

void ValueReader::skipBlanks()
{
    text = withoutLeadingBlanks(text);
}
