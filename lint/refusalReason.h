#pragma once

// Why the library ends a compilation, in plain words: the token that it stumbles over, and the rule of its own that it breaks.

#include "lint/finding.h"
#include "lint/libraryVerdict.h"

#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor::lint {

class DeviceIndex;
struct Context;
struct Entry;

// The statement at which the compilation ended, as far as it can be read.
struct RefusedLine {
    Span place; // of the statement, its first line
    Span whole; // with the lines on which it goes on, up to the one that was read last
    Span keywordPlace;
    std::string_view keyword;     // empty where the statement begins with none
    std::string text;             // the statement in one line, its comments left out
    const Entry* entry = nullptr; // null where there is no statement at all
    std::string_view block;       // the keyword of the block it stands in, empty outside of all
    Span blockPlace;
    bool isAtEnd = false; // the compilation ended behind the last statement
};

// The statement to which a physical line belongs, counted from 1 as the library counts them; null when none stands before.
const Entry* entryAt(const Context& context, long line);

RefusedLine refusedLine(const Context& context, long line);

struct Reason {
    Span place;
    std::string why;
    std::vector<Note> notes = {};
};

Reason reasonOf(const LibraryVerdict& verdict, const RefusedLine& line, const DeviceIndex& device);

// The first keyword of the library that a text begins with, whatever the letters' case; empty when there is none.
std::string_view libraryKeywordAtStart(std::string_view text);

} // namespace typdescriptor::lint
