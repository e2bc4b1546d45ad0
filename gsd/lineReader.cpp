#include "gsd/lineReader.h"

#include <algorithm>

namespace typdescriptor::internal {

bool LineReader::open(const char* fileName)
{
    file.reset(std::fopen(fileName, "rb"));
    if (!file)
        return false;
    // The block is the buffer; a second one in the stream would only copy every character once more.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    fill();
    ended = readError;
    return !readError;
}

/// A line that does not end within the block; characters beyond the limit are dropped.
PhysicalLine LineReader::readAcrossBlocks(std::size_t limit)
{
    spanning.clear();
    for (;;) {
        const std::string_view rest(next, static_cast<std::size_t>(last - next));
        const std::size_t length = std::min(rest.find('\n'), rest.size());
        // One character more than the limit tells a line that fits from one that does not.
        spanning += rest.substr(0, std::min(length, limit + 1 - spanning.size()));
        next += length;
        if (length < rest.size()) {
            ++next;
            break;
        }
        if (!fill()) {
            ended = true;
            break;
        }
    }
    const std::string_view text = std::string_view(spanning).substr(0, spanning.find('\0'));
    return {.text = text.substr(0, limit),
            .isComplete = text.size() <= limit,
            .semicolon = text.find(kCommentMark),
            .mayHaveBackslash = true};
}

/// Reads the next block; false when there is none.
bool LineReader::fill()
{
    next = last = block.data();
    if (!atEnd) {
        last = next + std::fread(block.data(), 1, kBlockSize, file.get());
        atEnd = last != block.data() + kBlockSize;
    }
    // What was read ahead of an error is still good.
    readError = next == last && std::ferror(file.get()) != 0;
    std::fill_n(block.data() + (last - next), kReadableBehindText, '\0');
    linesEnd = next + (std::string_view(next, static_cast<std::size_t>(last - next)).rfind('\n') + 1);
    for (RareCharacter* character : {&nul, &semicolon, &backslash})
        character->search(next, last);
    return next != last;
}

} // namespace typdescriptor::internal
