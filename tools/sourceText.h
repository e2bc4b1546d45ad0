// The line of a file that a finding speaks of, with the keyword of it.
//
// The compiler counts a line that goes on with a backslash as its last physical line; the keyword stands on its first.

#pragma once

#include <string>
#include <vector>

struct Excerpt {
    long line = 0;          // of the text, from 1
    std::string text;       // UTF-8
    std::size_t column = 0; // of the keyword, in characters from 0
    std::size_t length = 0; // of the keyword; 0 when there is none
};

class SourceText {
public:
    /// Reads a whole file; one that cannot be read has no lines.
    explicit SourceText(const std::string& file);

    long lineCount() const { return static_cast<long>(lines.size()); }
    /// A line from 1, ISO 8859-1, without its line end; empty outside the file.
    std::string line(long number) const;
    /// The line on which the keyword of a GSD line stands; without a text when the line is outside the file.
    Excerpt gsdExcerpt(long number) const;
    /// The line of a record of a type file; the number counts without the head line.
    Excerpt typeFileExcerpt(long record) const;
    /// The line of the first record behind the header that begins with a tag; without a text when there is none.
    Excerpt groupExcerpt(const std::string& tag) const;

private:
    bool hasHeadLine() const;

    std::vector<std::string> lines;
};
