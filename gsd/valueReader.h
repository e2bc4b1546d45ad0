// Readers for the value part of a keyword line: numbers, flags, quoted strings, lists, ranges and the family notation.
//
// A ValueReader walks over one text. The first failure sticks: what is read after it yields nothing, and finish() gives
// its code. So a handler reads everything that it expects, asks once, and only then acts.
//
// The text is a whole line, cut out and ended by a NUL, or it is a line where it stands in its file, which ends where the
// reading comes upon a line end or a comment. Both are read alike, but only of a whole line a failure is final, and only
// there it is looked for what makes a line wrong although its value reads well.

#pragma once

#include "descriptor/resultCodes.h"
#include "gsd/keywordTable.h"
#include "gsd/textScan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

/// Integer kinds of the format. Values are handed out as the bit pattern of their width, widened without sign.
enum class IntegerKind { signed8, unsigned8, signed16, unsigned16, signed32, unsigned32 };

constexpr std::uint32_t largestOf(IntegerKind kind)
{
    constexpr std::array<std::uint32_t, 6> kLargest{INT8_MAX, UINT8_MAX, INT16_MAX, UINT16_MAX, INT32_MAX, UINT32_MAX};
    return kLargest[static_cast<std::size_t>(kind)];
}

/// What a number token says.
struct ScannedNumber {
    std::uint32_t value = 0;
    bool negative = false; // the token begins with a minus sign
};

/// Reads the number token at the start of the text, up to the next blank or a character of the classes that end it, and
/// moves the text behind it.
/// @return false when the token is empty or is no number; the text may have moved
bool scanNumber(const char*& text, ScannedNumber& number, unsigned ends = kEndOfLine);

struct NumberRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

/// The elements of a list.
struct NumberList {
    static constexpr std::size_t kMaxCount = 244;

    std::array<std::uint32_t, kMaxCount> values; // the first `count` are set
    std::size_t count = 0;

    /// Of a list of bytes.
    void copyTo(std::uint8_t* bytes) const
    {
        for (std::size_t i = 0; i < count; ++i)
            bytes[i] = static_cast<std::uint8_t>(values[i]);
    }
    std::uint32_t first() const { return values[0]; }
    std::uint32_t last() const { return values[count - 1]; }
};

/// A Slave_Family value.
struct FamilyValue {
    static constexpr std::size_t kMaxSubFamilies = 3;

    std::uint32_t number = 0;
    std::array<std::string_view, kMaxSubFamilies> subFamilies{};
    std::size_t subFamilyCount = 0;
};

class ValueReader {
public:
    ValueReader(const char* value, GsdLine& line)
        : text(value), limit(line.limit), ends(line.isWhole() ? kEndOfLine : kEndOfLine | kComment),
          squeezed(line.squeezed.data())
    {}
    /// Of an argument, which is whole and has no strings.
    explicit ValueReader(const char* argument) : text(argument), limit(nullptr), ends(kEndOfLine), squeezed(nullptr) {}

    /// 0 or 1; else kErrGsdFlag.
    std::uint32_t flag()
    {
        std::uint32_t value = 0;
        return takePlain(1, value) ? value : take(anyFlag(text, ends));
    }
    /// kErrGsdNumber.
    std::uint32_t number(IntegerKind kind)
    {
        std::uint32_t value = 0;
        return takePlain(largestOf(kind), value) ? value : take(anyNumber(text, ends, kind));
    }
    std::uint32_t unsigned8() { return number(IntegerKind::unsigned8); }
    std::uint32_t unsigned16() { return number(IntegerKind::unsigned16); }
    /// A quoted string of 1 to kMaxStringLength characters, without its quotes; kErrGsdSyntax, kErrGsdStringLen. Of one
    /// that is longer than the squeeze target (0: any length is right) blanks are removed, the last one first, until
    /// it has that length or no blank is left. Valid until the next string is read, as long as the line lives.
    std::string_view string(std::size_t squeezeTarget = 0);
    /// The rest of the text as numbers separated by commas; kErrGsdSyntax, kErrGsdTooMany, kErrGsdNumber.
    NumberList list(std::size_t maximum, IntegerKind kind)
    {
        NumberList result;
        if (!failed())
            take(anyList(text, ends, maximum, kind, result));
        return result;
    }
    NumberList bytes() { return list(NumberList::kMaxCount, IntegerKind::unsigned8); }
    /// "minimum-maximum"; kErrGsdSyntax, kErrGsdNumber.
    NumberRange range(IntegerKind kind)
    {
        NumberRange range;
        if (!failed())
            failure = tryRange(kind, range.first, range.last);
        return range;
    }
    /// The same, of which a failure leaves everything as it is. Not for one that has failed.
    /// @return 0 or what the failure would have been
    int tryRange(IntegerKind kind, std::uint32_t& first, std::uint32_t& last);
    /// The rest of the text as a family number and its sub-families; kErrGsdNumber, kErrGsdSyntax.
    FamilyValue family();
    /// Takes a literal word behind blanks when it is all that is left.
    bool takeLast(const char* word);

    bool failed() const { return failure != 0; }
    /// Whether only blanks are left.
    bool atEnd()
    {
        text = skipBlanks(text);
        return isOf(ends, *text);
    }
    /// 0; the first failure; or kErrGsdSyntax when anything is left of the text.
    int finish()
    {
        if (failed())
            return failure;
        return atEnd() && (isWhole() || text < limit) ? kOk : kErrGsdSyntax;
    }
    /// What is left.
    const char* rest() const { return text; }

private:
    bool isWhole() const { return limit == nullptr; }
    /// Takes what most numbers are: some decimal digits with a blank or the end behind them. False, and nothing has
    /// happened, when it is something else or too large.
    bool takePlain(std::uint32_t largest, std::uint32_t& value)
    {
        constexpr std::ptrdiff_t kMaxDigits = 9; // of which none is above 32 bits
        const char* digit = text;
        for (; isDigit(*digit); ++digit)
            value = value * 10 + static_cast<std::uint32_t>(*digit - '0');
        const std::ptrdiff_t digits = digit - text;
        if (digits == 0 || digits > kMaxDigits || value > largest || !isOf(kBlank | ends, *digit) || failed())
            return false;
        text = digit;
        return true;
    }
    // What is called for the rare values is given no reader, so that one can be kept in registers.
    struct AnyNumber {
        const char* rest;
        std::uint32_t value;
        int failure;
    };
    static AnyNumber anyFlag(const char* text, unsigned ends);
    static AnyNumber anyNumber(const char* text, unsigned ends, IntegerKind kind);
    static AnyNumber anyList(const char* text, unsigned ends, std::size_t maximum, IntegerKind kind, NumberList& list);
    static std::string_view squeeze(std::string_view content, std::size_t target, char* squeezed);
    std::uint32_t take(const AnyNumber& number)
    {
        if (failed())
            return 0;
        text = number.rest;
        failure = number.failure;
        return number.value;
    }
    /// Returns what a failed reading yields.
    std::uint32_t fail(int code)
    {
        failure = code;
        return 0;
    }

    const char* text;
    const char* limit;
    unsigned ends; // the classes of characters that end the text
    int failure = 0;
    char* squeezed; // room for a string from which blanks are removed
};

inline std::string_view ValueReader::string(std::size_t squeezeTarget)
{
    if (failed())
        return {};
    text = skipBlanks(text);
    const char* const first = text + 1;
    const char* last = first;
    if (*text == kQuote)
        while (!isOf(kQuoteMark | kEndOfLine | kContinuation, *last))
            ++last;
    // Both quotes are there, and those behind them come in pairs as well.
    if (*text != kQuote || *last != kQuote || (isWhole() && hasOddQuotes(last + 1))) {
        fail(kErrGsdSyntax);
        return {};
    }
    const std::string_view content(first, static_cast<std::size_t>(last - first));
    if (content.empty() || content.size() > kMaxStringLength) {
        fail(content.empty() ? kErrGsdSyntax : kErrGsdStringLen);
        return {};
    }
    text = last + 1;
    return squeezeTarget != 0 && content.size() > squeezeTarget ? squeeze(content, squeezeTarget, squeezed) : content;
}

} // namespace typdescriptor::internal
