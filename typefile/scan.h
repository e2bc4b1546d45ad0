// The one way in which checks and queries read an image: small steps over literal characters and numbers of fixed
// width. A function named is... looks; one named take... also moves the cursor behind what it has read, and only when
// it has seen it.
//
// Why none of them leaves an image. Every image buffer has room for at least kMinImageSize characters (a head line and a
// converted version-3 header), and is followed by kImageSlack NUL characters that belong to the buffer but not to its
// stated size. A check goes on to the next record only after it has seen the closing character of the last one, which is
// not a NUL. So it never gets beyond the record that begins, at the latest, on the first character of the slack; and the
// longest record (an order-number entry with a special-format identifier of 17 bytes, 109 characters) is far shorter
// than the slack.

#pragma once

#include "typefile/format.h"

#include <cstddef>
#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

inline constexpr std::size_t kImageSlack = 256;

/// A place in an image; its slack is the end.
using Cursor = const char*;

/// White space whatever the locale: blank, \t, \n, \v, \f, \r.
constexpr bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr char toUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool isHexDigit(char c)
{
    return isDigit(c) || (toUpper(c) >= 'A' && toUpper(c) <= 'F');
}

constexpr unsigned hexDigitValue(char digit)
{
    return static_cast<unsigned>(isDigit(digit) ? digit - '0' : toUpper(digit) - 'A' + 10);
}

inline bool isText(const char* p, std::string_view text)
{
    return std::memcmp(p, text.data(), text.size()) == 0;
}

inline bool isTerminator(const char* p)
{
    return isText(p, kTerminator);
}

inline bool isQuote(const char* p)
{
    return *p == kQuote;
}

/// The number that the standard decimal conversion reads from exactly `digits` characters: leading white space and a
/// sign are accepted, the first other character ends it, and it is 0 when there is no digit.
constexpr int numberAt(const char* p, std::size_t digits = kNumberDigits)
{
    std::size_t i = 0;
    while (i < digits && isSpace(p[i]))
        ++i;
    const bool negative = i < digits && p[i] == '-';
    if (i < digits && (p[i] == '-' || p[i] == '+'))
        ++i;
    int value = 0;
    for (; i < digits && isDigit(p[i]); ++i)
        value = value * 10 + (p[i] - '0');
    return negative ? -value : value;
}

constexpr int numberAt(const char* record, TextField field)
{
    return numberAt(record + field.position, field.width);
}

constexpr bool isWithin(int number, std::size_t first, std::size_t last)
{
    return number >= 0 && static_cast<std::size_t>(number) >= first && static_cast<std::size_t>(number) <= last;
}

inline bool takeText(Cursor& p, std::string_view text)
{
    if (!isText(p, text))
        return false;
    p += text.size();
    return true;
}

inline bool takeTerminator(Cursor& p)
{
    return takeText(p, kTerminator);
}

inline bool takeQuote(Cursor& p)
{
    if (!isQuote(p))
        return false;
    ++p;
    return true;
}

/// A record of fixed length that was looked at, and the terminator.
inline bool takeRecord(Cursor& p, std::size_t length)
{
    if (!isTerminator(p + length))
        return false;
    p += length + kTerminator.size();
    return true;
}

/// A number and the terminator. The number may be negative.
inline bool takeNumberRecord(Cursor& p, int& number)
{
    const Cursor digits = p;
    if (!takeRecord(p, kNumberDigits))
        return false;
    number = numberAt(digits);
    return true;
}

/// The head of a record group: its tag, a number and the terminator. A negative number is a malformed head.
inline bool takeRecordHead(Cursor& p, std::string_view tag, int& number)
{
    Cursor behind = p + tag.size();
    int count = 0;
    if (!isText(p, tag) || !takeNumberRecord(behind, count) || count < 0)
        return false;
    number = count;
    p = behind;
    return true;
}

/// Files before major version 5 end with the device diagnostic texts. Characters from 0x80 up are negative and old too.
inline bool hasVersion5Groups(const char* version)
{
    return static_cast<signed char>(version[kMajorVersion]) >= '5';
}

/// Copies a text field as it stands, padding included, and ends it with a NUL.
template <std::size_t Size>
void copyField(char (&target)[Size], const char* field)
{
    std::memcpy(target, field, Size - 1);
    target[Size - 1] = '\0';
}

} // namespace typdescriptor::internal
