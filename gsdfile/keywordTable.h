// The rows of the table of keywords, and the names of the masters' keywords.

#pragma once

#include "gsdfile/keywords.h"

namespace typdescriptor::gsdfile {

std::span<const Keyword> keywordRows();
std::span<const char* const> masterNames();

} // namespace typdescriptor::gsdfile
