#include "gsd/lineReader.h"

#include <algorithm>

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

bool LineReader::read(std::string_view& line, std::size_t limit)
{
    // One character more than the limit tells a line that fits from one that does not.
    const std::string_view rest(block.data() + next, used - next);
    if (const std::size_t lineFeed = rest.find('\n'); lineFeed != std::string_view::npos) {
        line = rest.substr(0, std::min(lineFeed, limit + 1));
        next += lineFeed + 1;
    } else {
        line = readAcrossBlocks(limit + 1);
    }
    line = line.substr(0, line.find('\0'));
    if (line.size() <= limit)
        return true;
    line.remove_suffix(1);
    return false;
}

/// A line that does not end within the block; characters beyond the limit are dropped.
std::string_view LineReader::readAcrossBlocks(std::size_t limit)
{
    spanning.clear();
    for (;;) {
        const std::string_view rest(block.data() + next, used - next);
        const std::size_t length = std::min(rest.find('\n'), rest.size());
        spanning += rest.substr(0, std::min(length, limit - spanning.size()));
        next += length;
        if (length < rest.size()) {
            ++next;
            return spanning;
        }
        fill();
        if (used == 0) {
            ended = true;
            return spanning;
        }
    }
}

void LineReader::fill()
{
    next = 0;
    used = std::fread(block.data(), 1, block.size(), file.get());
    readError = readError || std::ferror(file.get()) != 0;
}
