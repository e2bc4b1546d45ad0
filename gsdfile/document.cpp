#include "gsdfile/document.h"

#include "gsdfile/reader.h"
#include "gsdfile/textForm.h"

#include <algorithm>
#include <utility>

namespace typdescriptor::gsdfile {

namespace {

constexpr std::uint32_t kStretch = 1024; // bytes, of which the characters are counted once for all places

std::uint32_t continuingIn(std::string_view bytes)
{
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    return static_cast<std::uint32_t>(std::count_if(bytes.begin(), bytes.end(), continues));
}

} // namespace

Document::Document(std::string bytes) : _bytes(std::move(bytes))
{
    if (_bytes.size() > kMostBytes)
        _bytes.resize(kMostBytes);
    const TextForm form = textForm(_bytes);
    _encoding = form.encoding;
    _markSize = form.markSize;
    if (_encoding == Encoding::utf16Little || _encoding == Encoding::utf16Big) {
        _unit = 2;
        _narrow = narrowed(_bytes, form);
    }
    if (_encoding == Encoding::utf8)
        countContinuing();
    Reader(*this, form.endsLinesWithReturn).read();
}

void Document::countContinuing()
{
    std::uint32_t count = 0;
    for (std::size_t begin = 0; begin <= _bytes.size(); begin += kStretch) {
        _continuing.push_back(count);
        count += continuingIn(bytes().substr(begin, kStretch));
    }
}

/// Bytes ahead of an offset that do not begin a character of UTF-8.
std::uint32_t Document::continuingBefore(std::uint32_t offset) const
{
    const std::size_t stretch = offset / kStretch;
    return _continuing[stretch] + continuingIn(bytes().substr(stretch * kStretch, offset % kStretch));
}

std::string_view Document::text(std::uint32_t begin, std::uint32_t end) const
{
    if (_unit == 1)
        return std::string_view(_bytes).substr(begin, end - begin);
    const std::size_t from = begin < _markSize ? 0 : (begin - _markSize) / _unit;
    const std::size_t to = end < _markSize ? 0 : (end - _markSize) / _unit;
    return std::string_view(_narrow).substr(from, to - from);
}

std::size_t Document::tokenAt(std::uint32_t offset) const
{
    const auto behind = std::upper_bound(_tokens.begin(), _tokens.end(), offset,
                                         [](std::uint32_t wanted, const Token& token) { return wanted < token.begin; });
    return behind == _tokens.begin() ? 0 : static_cast<std::size_t>(behind - _tokens.begin()) - 1;
}

bool Document::isInString(std::uint32_t offset) const
{
    return offset < _bytes.size() && _tokens[tokenAt(offset)].kind == TokenKind::string;
}

Place Document::place(std::uint32_t offset) const
{
    const auto behind = std::upper_bound(_lines.begin(), _lines.end(), offset,
                                         [](std::uint32_t wanted, const Line& line) { return wanted < line.begin; });
    const std::size_t index = behind == _lines.begin() ? 0 : static_cast<std::size_t>(behind - _lines.begin()) - 1;
    if (_lines.empty())
        return {1, 1, 1};
    const std::uint32_t end = std::min(offset, static_cast<std::uint32_t>(_bytes.size()));
    const std::uint32_t begin = std::min(_lines[index].begin, end); // the first line begins behind the mark
    Place place{static_cast<std::uint32_t>(index) + 1, end - begin + 1, 1};
    place.character = (place.column - 1) / _unit + 1;
    if (_encoding == Encoding::utf8)
        place.character -= continuingBefore(end) - continuingBefore(begin);
    return place;
}

Token Document::span(const Value& value) const
{
    Token whole = _tokens[value.firstToken];
    whole.end = _tokens[value.lastToken].end;
    return whole;
}

} // namespace typdescriptor::gsdfile
