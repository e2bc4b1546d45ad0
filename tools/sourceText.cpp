#include "tools/sourceText.h"

#include "host/text.h"
#include "tools/displayText.h"

#include <algorithm>

using namespace typdescriptor;

namespace gsdfile = typdescriptor::gsdfile;
namespace lint = typdescriptor::lint;

namespace {

constexpr std::size_t kTabStop = 8;
constexpr std::string_view kLeftOut = "...";

void addUtf8(std::string& text, char32_t code)
{
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        add(code);
    } else if (code < 0x800) {
        add(0xC0U | (code >> 6U));
        add(0x80U | (code & 0x3FU));
    } else {
        if (code < 0x10000) {
            add(0xE0U | (code >> 12U));
        } else {
            add(0xF0U | (code >> 18U));
            add(0x80U | ((code >> 12U) & 0x3FU));
        }
        add(0x80U | ((code >> 6U) & 0x3FU));
        add(0x80U | (code & 0x3FU));
    }
}

std::string fromUtf16(std::string_view bytes, bool isLittle)
{
    constexpr char32_t kHigh = 0xD800;
    constexpr char32_t kLow = 0xDC00;
    constexpr char32_t kAbove = 0xE000;
    const auto unitAt = [bytes, isLittle](std::size_t i) -> char32_t {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        return isLittle ? first | (static_cast<char32_t>(second) << 8U) : (static_cast<char32_t>(first) << 8U) | second;
    };
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const char32_t unit = unitAt(i);
        const char32_t next = i + 3 < bytes.size() ? unitAt(i + 2) : 0;
        const bool isPair = unit >= kHigh && unit < kLow && next >= kLow && next < kAbove;
        if (isPair)
            i += 2;
        if (isPair)
            addUtf8(text, 0x10000 + ((unit - kHigh) << 10U) + (next - kLow));
        else if (unit < kHigh || unit >= kAbove)
            addUtf8(text, unit == 0xFEFF ? 0x200B : unit); // the byte order mark takes no column
        else
            addUtf8(text, 0xFFFD);
    }
    return text;
}

/// UTF-8 with blanks for tabs.
std::string expanded(std::string_view utf8, std::size_t& columns)
{
    std::string text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const Character character = firstCharacter(utf8);
        const std::size_t width = character.code == '\t' ? kTabStop - columns % kTabStop : columnsOf(character.code);
        if (character.code == '\t')
            text.append(width, ' ');
        else
            text += utf8.substr(0, character.bytes);
        columns += width;
        utf8.remove_prefix(character.bytes);
    }
    return text;
}

/// The bytes of the first characters of a text that fill some columns.
std::size_t bytesOfColumns(std::string_view utf8, std::size_t columns)
{
    std::size_t bytes = 0;
    for (std::size_t taken = 0; bytes < utf8.size();) {
        const Character character = firstCharacter(utf8.substr(bytes));
        taken += columnsOf(character.code);
        if (taken > columns)
            break;
        bytes += character.bytes;
    }
    return bytes;
}

/// Whether every character is a visible one or a blank of ASCII, each in a column of its own.
bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Cuts an excerpt that is too wide: the mark stays in it, or its beginning.
void cut(Excerpt& excerpt, std::size_t columns, std::size_t most)
{
    constexpr std::size_t kMostAhead = 40;
    const std::size_t ahead = std::min(kMostAhead, most / 3); // columns that stay ahead of the mark
    if (columns <= most)
        return;
    if (excerpt.begin + excerpt.width > most - kLeftOut.size() && excerpt.begin > ahead) {
        const std::size_t bytes = bytesOfColumns(excerpt.text, excerpt.begin - ahead);
        const std::size_t gone = columnsOf(std::string_view(excerpt.text).substr(0, bytes));
        excerpt.text.replace(0, bytes, kLeftOut);
        excerpt.begin = excerpt.begin - gone + kLeftOut.size();
        columns = columns - gone + kLeftOut.size();
    }
    if (columns > most) {
        excerpt.text.resize(bytesOfColumns(excerpt.text, most - kLeftOut.size()));
        excerpt.text += kLeftOut;
    }
    excerpt.width = std::min(excerpt.width, most - kLeftOut.size() - excerpt.begin);
}

} // namespace

std::string SourceText::utf8(std::string_view part) const
{
    switch (document.encoding()) {
    case gsdfile::Encoding::latin1:
        return fromLatin1(part);
    case gsdfile::Encoding::utf16Little:
    case gsdfile::Encoding::utf16Big:
        return withoutControls(fromUtf16(part, document.encoding() == gsdfile::Encoding::utf16Little));
    default:
        return withoutControls(part);
    }
}

std::string SourceText::utf8(std::uint32_t begin, std::uint32_t end) const
{
    return begin < end ? utf8(document.bytes().substr(begin, end - begin)) : std::string();
}

lint::Span SourceText::lineSpan(std::size_t number) const
{
    if (number < 1 || number > document.lines().size())
        return {};
    const gsdfile::Line& line = document.lines()[number - 1];
    const bool hasMark = number == 1 && document.hasMark();
    return {hasMark ? document.tokens().front().end : line.begin, line.end};
}

std::string SourceText::line(std::size_t number) const
{
    const lint::Span span = lineSpan(number);
    return utf8(span.begin, span.end);
}

Position SourceText::positionOf(std::uint32_t offset) const
{
    const gsdfile::Place place = document.place(offset);
    return {place.line, place.character};
}

Excerpt SourceText::excerpt(lint::Span place, std::size_t most) const
{
    constexpr std::uint32_t kSurroundings = 1024; // bytes, more than an excerpt has room for
    lint::Span span = lineSpan(document.place(place.begin).line);
    const std::uint32_t begin = std::clamp(place.begin, span.begin, span.end);
    span.begin = std::max(span.begin, begin - std::min(begin, kSurroundings));
    span.end = std::min(span.end, begin + kSurroundings);
    const std::uint32_t end = std::clamp(place.end, begin, span.end);
    const std::string_view bytes = document.bytes().substr(span.begin, span.end - span.begin);
    Excerpt excerpt;
    std::size_t columns = 0;
    if (document.unit() == 1 && isPlain(bytes)) {
        excerpt.text = bytes.substr(0, bytes.find_last_not_of(' ') + 1);
        excerpt.begin = begin - span.begin;
        excerpt.width = std::max<std::size_t>(end - begin, 1);
        cut(excerpt, excerpt.text.size(), most);
        return excerpt;
    }
    excerpt.text = expanded(utf8(span.begin, begin), columns);
    excerpt.begin = columns;
    excerpt.text += expanded(utf8(begin, end), columns);
    excerpt.width = std::max<std::size_t>(columns - excerpt.begin, 1);
    excerpt.text += expanded(utf8(end, span.end), columns);
    excerpt.text.resize(excerpt.text.find_last_not_of(' ') + 1);
    cut(excerpt, columns, most);
    return excerpt;
}
