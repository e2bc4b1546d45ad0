// Small steps over the text of a line.

#pragma once

#include "typefile/scan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

inline constexpr char kCommentMark = ';';
inline constexpr char kContinuationMark = '\\';

/// So many characters behind the end of a text can be read, whatever they are: a keyword is compared without looking for
/// the end first.
inline constexpr std::size_t kReadableBehindText = 32;

/// What a character can be to those who walk along a line.
enum CharacterClass : std::uint8_t {
    kBlank = 1,     // white space that does not end a line
    kEndOfLine = 2, // line feed and NUL
    kComment = 4,   // the mark of a comment, unless it is in quotes or has been cut off
    kQuoteMark = 8,
    kContinuation = 16,
    kBehindKeyword = 32, // an equals sign and an opening parenthesis
};

inline constexpr std::array<std::uint8_t, 256> kCharacterClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (const char c : {' ', '\t', '\v', '\f', '\r'})
        classes[static_cast<unsigned char>(c)] = kBlank;
    classes['\n'] = classes['\0'] = kEndOfLine;
    classes[kCommentMark] = kComment;
    classes[kQuote] = kQuoteMark;
    classes[kContinuationMark] = kContinuation;
    classes['='] = classes['('] = kBehindKeyword;
    return classes;
}();

/// Whether a character is of one of some classes.
inline bool isOf(unsigned classes, char c)
{
    return (kCharacterClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

inline const char* skipBlanks(const char* text)
{
    while (isOf(kBlank, *text))
        ++text;
    return text;
}

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
