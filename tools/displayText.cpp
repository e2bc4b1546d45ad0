#include "tools/displayText.h"

#include "host/text.h"

#include <algorithm>
#include <iterator>

using namespace typdescriptor;

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kReplacementBytes = "\xEF\xBF\xBD";

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range kCombining[] = {{0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x610, 0x61A},
                                {0x64B, 0x65F},   {0x200B, 0x200D}, {0x20D0, 0x20F0}, {0xFE00, 0xFE0F},
                                {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                           {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr Range kSteering[] = {{0x00, 0x08},     {0x0A, 0x1F},     {0x7F, 0x9F},
                               {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};

template <std::size_t count>
bool isIn(const Range (&ranges)[count], char32_t code)
{
    const Range* const range = std::lower_bound(std::begin(ranges), std::end(ranges), code,
                                                [](const Range& row, char32_t value) { return row.last < value; });
    return range != std::end(ranges) && range->first <= code;
}

/// Whether every character of a text is a visible one or a blank of ASCII.
bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace

Character firstCharacter(std::string_view utf8)
{
    const auto first = static_cast<unsigned char>(utf8.front());
    if (first < 0x80U)
        return {first, 1};
    const std::size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : 2;
    if (!isUtf8(utf8.substr(0, length)))
        return {kReplacement, 1};
    char32_t code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
        code = (code << 6U) | (static_cast<unsigned char>(utf8[i]) & 0x3FU);
    return {code, length};
}

std::size_t columnsOf(char32_t code)
{
    if (code < 0x300)
        return 1;
    if (isIn(kCombining, code))
        return 0;
    return isIn(kWide, code) ? 2 : 1;
}

std::size_t columnsOf(std::string_view utf8)
{
    if (isPlain(utf8))
        return utf8.size();
    std::size_t columns = 0;
    while (!utf8.empty()) {
        const Character character = firstCharacter(utf8);
        columns += columnsOf(character.code);
        utf8.remove_prefix(character.bytes);
    }
    return columns;
}

std::string withoutControls(std::string_view utf8)
{
    if (isPlain(utf8))
        return std::string(utf8);
    std::string text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const Character character = firstCharacter(utf8);
        if (character.code == kReplacement || isIn(kSteering, character.code))
            text += kReplacementBytes;
        else
            text += utf8.substr(0, character.bytes);
        utf8.remove_prefix(character.bytes);
    }
    return text;
}

std::string readable(const std::string& text)
{
    return isPlain(text) ? text : withoutControls(fromArgument(text));
}
