#include "host/text.h"

#include <algorithm>

namespace typdescriptor {

namespace {

constexpr std::size_t kNameWidth = 30;                    // of the library's names
constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

unsigned char byteAt(std::string_view text, std::size_t i)
{
    return static_cast<unsigned char>(text[i]);
}

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The length of the sequence that a byte of UTF-8 begins; 0 when none begins with it.
std::size_t sequenceLength(unsigned char first)
{
    if (first < 0x80U)
        return 1;
    if (first >= 0xC2U && first < 0xE0U)
        return 2;
    if (first >= 0xE0U && first < 0xF0U)
        return 3;
    return first >= 0xF0U && first < 0xF5U ? 4 : 0;
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The bytes at the end of a text that begin a character of UTF-8 and do not end it.
std::size_t cutTail(std::string_view text)
{
    constexpr std::size_t kLongest = 3;
    for (std::size_t bytes = 1; bytes <= std::min(kLongest, text.size()); ++bytes) {
        const char first = text[text.size() - bytes];
        if (!isContinuation(first))
            return sequenceLength(static_cast<unsigned char>(first)) > bytes ? bytes : 0;
    }
    return 0;
}

/// A device's text. UTF-8 it is when there is a character of several bytes in it, and everything else is UTF-8, too.
std::string fromDevice(std::string_view text)
{
    const std::string_view whole = text.substr(0, text.size() - cutTail(text));
    const bool isAscii = std::all_of(whole.begin(), whole.end(), [](char c) { return byteAt({&c, 1}, 0) < 0x80U; });
    return isAscii || !isUtf8(whole) ? fromLatin1(text) : fromUtf8(whole);
}

} // namespace

std::string fromField(const char* field, std::size_t width)
{
    const std::string_view text(field, static_cast<std::size_t>(std::find(field, field + width, '\0') - field));
    return fromDevice(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string fromLatin1(std::string_view text)
{
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = byteAt(text, i);
        if ((c < 0x20U && c != '\t') || (c >= 0x7FU && c < 0xA0U)) {
            utf8 += kReplacement;
        } else if (c < 0x80U) {
            utf8 += static_cast<char>(c);
        } else {
            utf8 += static_cast<char>(0xC0U | (c >> 6U));
            utf8 += static_cast<char>(0x80U | (c & 0x3FU));
        }
    }
    return utf8;
}

std::string fromUtf8(std::string_view utf8)
{
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const unsigned char c = byteAt(utf8, i);
        if ((c < 0x20U && c != '\t') || c == 0x7FU)
            text += kReplacement;
        else
            text += utf8[i];
    }
    return text;
}

bool mayBeCut(std::string_view name)
{
    constexpr std::size_t kLongestRest = 3; // of a character that is left out
    return characterCount(name) >= kNameWidth ||
           (characterCount(name) < name.size() && name.size() + kLongestRest >= kNameWidth);
}

bool isNameOf(const std::string& cutName, const std::string& text)
{
    const auto dense = [](std::string whole) {
        std::erase(whole, ' ');
        return whole;
    };
    const std::string left = dense(cutName);
    const std::string right = dense(text);
    return left == right || (mayBeCut(cutName) && right.compare(0, left.size(), left) == 0);
}

std::string toLatin1(std::string_view utf8)
{
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const unsigned char c = byteAt(utf8, i);
        if (isContinuation(utf8[i]))
            continue;
        const bool isPlain = c < 0x80U;
        const bool isLatin = (c == 0xC2U || c == 0xC3U) && i + 1 < utf8.size();
        if (isPlain)
            text += utf8[i];
        else
            text += isLatin ? static_cast<char>(((c & 0x03U) << 6U) | (byteAt(utf8, i + 1) & 0x3FU)) : '?';
    }
    return text;
}

std::string fromArgument(const std::string& argument)
{
    return isUtf8(argument) ? argument : fromLatin1(argument);
}

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = sequenceLength(byteAt(text, i));
        if (length == 0 || length > text.size() - i)
            return false;
        if (!std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i + 1),
                         text.begin() + static_cast<std::ptrdiff_t>(i + length), isContinuation))
            return false;
        i += length;
    }
    return true;
}

std::size_t characterCount(std::string_view utf8)
{
    return utf8.size() - static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), isContinuation));
}

std::string padded(const std::string& utf8, std::size_t width)
{
    const std::size_t count = characterCount(utf8);
    return count < width ? utf8 + std::string(width - count, ' ') : utf8;
}

bool isSameText(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

} // namespace typdescriptor
