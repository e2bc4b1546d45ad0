// Text of files as it may stand on a terminal: in UTF-8, without anything that steers it, and its width there.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// One character of a UTF-8 text: its code point and its bytes; a byte that is not UTF-8 counts as U+FFFD.
struct Character {
    char32_t code = 0;
    std::size_t bytes = 1;
};

/// The character at the start of a text that is not empty.
Character firstCharacter(std::string_view utf8);

/// The columns of a terminal that a character takes: 0 for a combining one, 2 for a wide one.
std::size_t columnsOf(char32_t code);
/// The columns of a terminal that a text takes.
std::size_t columnsOf(std::string_view utf8);

/// A text of which every character that is not UTF-8, steers a terminal or turns the direction of writing is U+FFFD.
/// Tabs stay.
std::string withoutControls(std::string_view utf8);

/// A text of unknown encoding, such as a message that quotes a file: UTF-8, otherwise ISO 8859-1; without controls.
std::string readable(const std::string& text);
