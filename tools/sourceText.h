// The bytes of a file as people see them: lines, columns counted in characters, excerpts in UTF-8.

#pragma once

#include "gsdfile/document.h"
#include "lint/finding.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Whether a finding is about the file as a whole and has no line.
inline bool isWholeFile(typdescriptor::lint::Span place)
{
    return place.begin == 0 && place.end == 0;
}

/// A place as people count it: line and column from 1, a column for each character.
struct Position {
    std::size_t line = 0;
    std::size_t column = 0;
};

/// A part of a line on a terminal, and what is marked in it.
struct Excerpt {
    std::string text;      // UTF-8; tabs have become blanks, and "..." stands for what is left out at either end
    std::size_t begin = 0; // of the mark, in columns of the terminal from 0
    std::size_t width = 0; // of the mark, at least 1
};

class SourceText {
public:
    /// @param file  has to outlive the object
    explicit SourceText(const typdescriptor::gsdfile::Document& file) : document(file) {}

    Position positionOf(std::uint32_t offset) const;
    /// A line from 1 as UTF-8 without its end.
    std::string line(std::size_t number) const;
    /// Bytes of the file as UTF-8.
    std::string utf8(std::string_view part) const;
    static constexpr std::size_t kMostColumns = 150;

    /// The line on which a place begins, with the place marked as far as it stands on that line.
    /// @param most  columns of the excerpt, 40 at least
    Excerpt excerpt(typdescriptor::lint::Span place, std::size_t most = kMostColumns) const;

private:
    /// Offsets of a line in the file, without a byte order mark and its end.
    typdescriptor::lint::Span lineSpan(std::size_t number) const;
    std::string utf8(std::uint32_t begin, std::uint32_t end) const;

    const typdescriptor::gsdfile::Document& document;
};
