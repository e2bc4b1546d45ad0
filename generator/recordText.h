// The text of one record while it is put together: tags, zero-padded numbers, quotes and the terminator, whatever the
// process's locale.

#pragma once

#include "typefile/format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

class RecordText {
public:
    /// Literal characters.
    RecordText& text(std::string_view characters)
    {
        const std::size_t length = std::min(characters.size(), buffer.size() - used);
        std::copy_n(characters.data(), length, buffer.data() + used);
        used += length;
        return *this;
    }
    RecordText& character(char c)
    {
        if (used < buffer.size())
            buffer[used++] = c;
        return *this;
    }
    /// A decimal number of at least `digits` digits; a larger number takes more.
    RecordText& number(std::uint64_t value, std::size_t digits = typefile::kNumberDigits);
    /// A signed one; the sign comes on top of the digits.
    RecordText& signedNumber(std::int32_t value, std::size_t digits);
    /// A byte as two upper-case hexadecimal digits.
    RecordText& hexByte(std::uint8_t value);
    RecordText& quote() { return character(typefile::kQuote); }
    /// The record terminator.
    RecordText& end() { return text(typefile::kTerminator); }

    std::size_t length() const { return used; }
    std::string_view view() const { return {buffer.data(), used}; }

private:
    // The head line is the longest text; what is appended to an image stays below its headroom of 80 characters.
    std::array<char, 82> buffer; // the first `used` are set
    std::size_t used = 0;
};

/// The head of a record group: tag, count, terminator.
inline RecordText recordHead(std::string_view tag, std::uint64_t count)
{
    return RecordText().text(tag).number(count).end();
}
