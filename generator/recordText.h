// The text of one record while it is put together: tags, zero-padded numbers, quotes and the terminator, whatever the
// process's locale.

#pragma once

#include "typefile/format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

class RecordText {
public:
    /// @param target  where the record is written, with room for all that will be put into it
    explicit RecordText(char* target) : start(target), next(target) {}

    /// Literal characters.
    RecordText& text(std::string_view characters)
    {
        next = std::copy(characters.begin(), characters.end(), next);
        return *this;
    }
    RecordText& character(char c)
    {
        *next++ = c;
        return *this;
    }
    /// A text field: at most `width` characters, padded with the blanks that the image was filled with.
    RecordText& field(std::string_view characters, std::size_t width)
    {
        std::copy_n(characters.begin(), std::min(characters.size(), width), next);
        next += width;
        return *this;
    }
    /// A decimal number of at least `digits` digits; a larger number takes more.
    RecordText& number(std::uint64_t value, std::size_t digits = kNumberDigits)
    {
        constexpr std::array<std::uint32_t, 6> kBeyond{1, 10, 100, 1000, 10000, 100000};
        if (digits >= kBeyond.size() || value >= kBeyond[digits])
            return longNumber(value, digits);
        auto rest = static_cast<std::uint32_t>(value);
        for (std::size_t i = digits; i-- > 0; rest /= 10)
            next[i] = static_cast<char>('0' + rest % 10);
        next += digits;
        return *this;
    }
    /// A signed one; the sign comes on top of the digits.
    RecordText& signedNumber(std::int32_t value, std::size_t digits);
    /// A byte as two upper-case hexadecimal digits.
    RecordText& hexByte(std::uint8_t value)
    {
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        return character(kDigits[value >> 4]).character(kDigits[value & 0x0F]);
    }
    RecordText& quote() { return character(kQuote); }
    RecordText& quotedField(std::string_view characters, std::size_t width)
    {
        return quote().field(characters, width).quote();
    }
    /// A number and the quote behind it.
    RecordText& numberField(std::uint64_t value, std::size_t digits = kNumberDigits)
    {
        return number(value, digits).quote();
    }
    /// '0' plus a number, as one character whatever the number.
    RecordText& digit(unsigned number) { return character(static_cast<char>('0' + number)); }
    /// The record terminator.
    RecordText& end() { return text(kTerminator); }
    /// The head of a record group: tag, count, terminator.
    RecordText& head(std::string_view tag, std::uint64_t count) { return text(tag).number(count).end(); }

    std::size_t length() const { return static_cast<std::size_t>(next - start); }
    std::string_view view() const { return {start, length()}; }

private:
    RecordText& longNumber(std::uint64_t value, std::size_t digits);

    char* start;
    char* next;
};

} // namespace typdescriptor::internal
