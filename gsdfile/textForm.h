// How the bytes of a file make text: encoding, byte order mark, line ends.

#pragma once

#include "gsdfile/document.h"

namespace typdescriptor::gsdfile {

struct TextForm {
    Encoding encoding = Encoding::ascii;
    std::uint32_t markSize = 0;
    bool endsLinesWithReturn = false; // no line feed stands in the file
};

TextForm textForm(std::string_view bytes);

/// The units of a UTF-16 text behind its mark, one byte each.
std::string narrowed(std::string_view bytes, const TextForm& form);

/// The length of the UTF-8 sequence that begins at a position; 0 when none does.
std::size_t utf8Length(std::string_view text, std::size_t position);

} // namespace typdescriptor::gsdfile
