// The text of one record while it is put together: tags, zero-padded numbers, quotes and the terminator, whatever the
// process's locale.

#pragma once

#include "typefile/format.h"

#include <algorithm>
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
    /// A decimal number of at least `digits` digits; a larger number takes more.
    RecordText& number(std::uint64_t value, std::size_t digits = kNumberDigits)
    {
        if (digits != kNumberDigits || value > 999)
            return longNumber(value, digits);
        const auto small = static_cast<unsigned>(value);
        next[0] = static_cast<char>('0' + small / 100);
        next[1] = static_cast<char>('0' + small / 10 % 10);
        next[2] = static_cast<char>('0' + small % 10);
        next += kNumberDigits;
        return *this;
    }
    /// A signed one; the sign comes on top of the digits.
    RecordText& signedNumber(std::int32_t value, std::size_t digits);
    /// A byte as two upper-case hexadecimal digits.
    RecordText& hexByte(std::uint8_t value);
    RecordText& quote() { return character(kQuote); }
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
