// Physical lines of a text file, read in blocks.
//
// A line ends at a line feed, which is consumed and not stored, or at the end of the file. A file whose last character
// is a line feed has one more, empty, line behind it. A NUL ends the text of its line.

#pragma once

#include "gsd/file.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

class LineReader {
public:
    /// @return false when the file cannot be opened or is nothing one can read from
    bool open(const char* fileName);

    /// Whether another line can be read: no line so far ended at the end of the file.
    bool good() const { return !ended; }
    void close() { file.reset(); }
    /// Whether the file broke off with a read error.
    bool failed() const { return readError; }

    /// Reads the next line.
    /// @param line   receives at most `limit` characters, valid until the next call
    /// @return false when the line's text is longer: the rest of it is dropped
    bool read(std::string_view& line, std::size_t limit);

private:
    std::string_view readAcrossBlocks(std::size_t limit);
    void fill();

    File file;
    std::array<char, 16384> block;
    std::size_t used = 0;
    std::size_t next = 0;
    std::string spanning; // a line that does not lie within one block
    bool ended = true;
    bool readError = false;
};
