#pragma once

// Small pieces of the sentences of findings.

#include "lint/finding.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace typdescriptor::lint {

// "1 byte", "3 bytes".
inline std::string counted(std::size_t count, std::string_view one, std::string_view many)
{
    return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

inline std::string inQuotes(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

// "0x0C1F", with as many digits as asked for.
std::string inHex(std::int64_t value, unsigned digits);

// "Unit_Diag_Bit(7)".
inline std::string withArgument(std::string_view keyword, std::int64_t argument)
{
    return std::string(keyword) + '(' + std::to_string(argument) + ')';
}

// From the first place to the last.
inline Span joined(Span first, Span last)
{
    return {first.begin, last.end};
}

} // namespace typdescriptor::lint
