#pragma once

// Why the library ends a compilation, in plain words: the token that it stumbles over, and the rule of its own that it breaks.

#include "lint/finding.h"
#include "lint/libraryVerdict.h"

#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor::lint {

class DeviceIndex;
struct Entry;

// The statement at which the compilation ended, as far as it can be read.
struct RefusedLine {
    Span place; // of the whole statement
    Span keywordPlace;
    std::string_view keyword;     // as it is written; empty when the statement begins with none
    std::string_view text;        // the statement as it is written, its comments left out
    bool isReadByLibrary = false; // the keyword is one of the library's
    const Entry* entry = nullptr; // when it could be read
    std::string_view block;       // the keyword of the block it stands in, empty outside of all
    Span blockPlace;
};

struct Reason {
    Span place;
    std::string why;
    std::vector<Note> notes = {};
};

Reason reasonOf(const LibraryVerdict& verdict, const RefusedLine& line, const DeviceIndex& device);

// The first keyword of the library that a text begins with, whatever the letters' case; empty when there is none.
std::string_view libraryKeywordAtStart(std::string_view text);

} // namespace typdescriptor::lint
