// Between the texts of devices, which are ISO 8859-1 or, from careless tools, UTF-8, and those of people, which are UTF-8.

#pragma once

#include <string>
#include <string_view>

namespace typdescriptor {

/// A text field of the library as UTF-8: up to its NUL or its width, without the blanks that pad it. Control characters
/// become U+FFFD, since a device's text must not steer the terminal. UTF-8 in it is kept; a character of which the field
/// has only the beginning is left out.
std::string fromField(const char* field, std::size_t width);
template <std::size_t width>
std::string fromField(const char (&field)[width])
{
    return fromField(field, width);
}

/// ISO 8859-1 as UTF-8. Tabs stay; every other control character becomes U+FFFD.
std::string fromLatin1(std::string_view text);
/// UTF-8 as it may be shown: tabs stay, every other control character becomes U+FFFD.
std::string fromUtf8(std::string_view utf8);
/// Whether a name may be the beginning of a longer one.
bool mayBeCut(std::string_view name);
/// Whether a name that the library may have cut, or dropped blanks of, can be that of a text.
bool isNameOf(const std::string& cutName, const std::string& text);
/// UTF-8 as ISO 8859-1; '?' stands for what it does not have.
std::string toLatin1(std::string_view utf8);
/// An argument of the command line as UTF-8: what is not UTF-8 is taken as ISO 8859-1.
std::string fromArgument(const std::string& argument);

bool isUtf8(std::string_view text);
/// The number of characters of a UTF-8 text.
std::size_t characterCount(std::string_view utf8);
/// The text and as many blanks as make it `width` characters.
std::string padded(const std::string& utf8, std::size_t width);
/// Whether two UTF-8 texts are the same but for the case of the letters A to Z.
bool isSameText(std::string_view left, std::string_view right);

} // namespace typdescriptor
