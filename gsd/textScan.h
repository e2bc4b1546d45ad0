// Small steps over the text of a line.

#pragma once

#include "typefile/scan.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace typdescriptor::internal {

/// Whether the number of double quotes in a text is odd.
inline bool hasOddQuotes(std::string_view text)
{
    bool odd = false;
    for (std::size_t at = text.find(kQuote); at != std::string_view::npos; at = text.find(kQuote, at + 1))
        odd = !odd;
    return odd;
}

/// Position of the first `wanted` outside double quotes, npos when there is none. A place is outside when the number of
/// double quotes before it is even.
/// @param first  where the first one stands, inside or outside, if any does
inline std::size_t findUnquoted(std::string_view text, char wanted, std::size_t first)
{
    bool quoted = false;
    std::size_t counted = 0;
    for (std::size_t at = first; at < text.size(); at = text.find(wanted, at + 1)) {
        quoted ^= hasOddQuotes(text.substr(counted, at - counted));
        if (!quoted)
            return at;
        counted = at;
    }
    return std::string_view::npos;
}

inline std::size_t findUnquoted(std::string_view text, char wanted)
{
    return findUnquoted(text, wanted, text.find(wanted));
}

inline std::string_view withoutLeadingBlanks(std::string_view text)
{
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

inline std::string_view withoutTrailingBlanks(std::string_view text)
{
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace typdescriptor::internal
