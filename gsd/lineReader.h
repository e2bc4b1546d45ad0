// Physical lines of a text file, read in blocks.
//
// A line ends at a line feed, which is consumed and not stored, or at the end of the file. A file whose last character
// is a line feed has one more, empty, line behind it. A NUL ends the text of its line.

#pragma once

#include "gsd/stream.h"
#include "gsd/textScan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace typdescriptor::internal {

/// A physical line as the reader hands it out.
struct PhysicalLine {
    std::string_view text; // valid until the next line is read
    bool isComplete;       // false: the line is longer than the limit, and the rest of it is dropped
    std::size_t semicolon; // where its first semicolon stands, or any place behind the text
    bool mayHaveBackslash;
};

class LineReader {
public:
    /// @return false when the file cannot be opened or is nothing one can read from
    bool open(const char* fileName);

    /// Whether another line can be read: no line so far ended at the end of the file.
    bool good() const { return !ended; }
    void close() { file.reset(); }
    /// Whether the file broke off with a read error.
    bool failed() const { return readError; }

    /// Where the next line begins. It stands there up to and with its line feed when isAhead() says so.
    const char* ahead() const { return next; }
    bool isAhead(const char* line) const { return line < linesEnd; }
    /// The beginning of the line behind one that stands ahead.
    /// @param place  in that line
    const char* behind(const char* place) const
    {
        if (*place != '\n')
            place = static_cast<const char*>(std::memchr(place, '\n', static_cast<std::size_t>(linesEnd - place)));
        return place + 1;
    }
    /// Goes on with another line.
    void goOn(const char* line) { next = line; }

    /// Reads the next line, at most `limit` characters of it.
    PhysicalLine read(std::size_t limit)
    {
        const char* const start = next;
        const auto left = static_cast<std::size_t>(last - start);
        const auto* const lineFeed = static_cast<const char*>(std::memchr(start, '\n', left));
        if (lineFeed == nullptr)
            return readAcrossBlocks(limit);
        next = lineFeed + 1;
        const char* const end = std::min(lineFeed, nul.find(start, last));
        const auto length = static_cast<std::size_t>(end - start);
        return {.text = {start, std::min(length, limit)},
                .isComplete = length <= limit,
                .semicolon = static_cast<std::size_t>(semicolon.find(start, last) - start),
                .mayHaveBackslash = backslash.find(start, last) < end};
    }

private:
    /// The next place of a rare character in the block. Found once, it answers for every line before it.
    class RareCharacter {
    public:
        explicit RareCharacter(char wanted) : character(wanted) {}

        /// Begins with a new block.
        void search(const char* from, const char* to)
        {
            const void* const found = std::memchr(from, character, static_cast<std::size_t>(to - from));
            place = found != nullptr ? static_cast<const char*>(found) : to;
        }
        /// The first place from `from` on, `to` when there is none.
        const char* find(const char* from, const char* to)
        {
            if (place < from)
                search(from, to);
            return place;
        }

    private:
        char character;
        const char* place = nullptr;
    };

    PhysicalLine readAcrossBlocks(std::size_t limit);
    bool fill();

    File file;
    static constexpr std::size_t kBlockSize = 16384;

    std::array<char, kBlockSize + kReadableBehindText> block;
    const char* next = nullptr;
    const char* last = nullptr;
    const char* linesEnd = nullptr; // behind the last line feed of the block
    RareCharacter nul{'\0'};
    RareCharacter semicolon{kCommentMark};
    RareCharacter backslash{kContinuationMark};
    std::string spanning; // a line that does not lie within one block
    bool atEnd = false;   // of the file: the block is its last
    bool ended = true;    // of the lines
    bool readError = false;
};

} // namespace typdescriptor::internal
