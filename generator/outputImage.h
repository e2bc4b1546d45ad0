// The image that is written: a buffer of fixed capacity, owned by somebody else, with a write position.
//
// Every write goes through imageAt(), whose one bounds test leaves a headroom that no single record reaches; a full
// image ends the generation with ImageFull.

#pragma once

#include "generator/recordText.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

/// Thrown by OutputImage::imageAt(); caught by the generator's top level and nowhere else.
struct ImageFull {};

class OutputImage {
public:
    static constexpr std::uint32_t kHeadroom = 80;

    OutputImage(char* buffer, std::uint32_t capacity) : image(buffer), imageCapacity(capacity) {}

    /// The character at a position; throws ImageFull when the position and the headroom reach the capacity.
    char* imageAt(std::size_t position)
    {
        if (position + kHeadroom >= imageCapacity)
            throw ImageFull{};
        return image + position;
    }

    /// Fills the whole image with blanks.
    void clear() { std::memset(image, ' ', imageCapacity); }

    /// Characters at a position, nothing behind them is touched.
    RecordText recordAt(std::size_t position) { return RecordText(imageAt(position)); }
    void set(std::size_t position, std::string_view text) { recordAt(position).text(text); }

    /// A record at the write position, of which the last part begins that far behind. append() ends it with a NUL that the next write overwrites, and moves on by its
    /// length, or by a fixed width whatever its length.
    RecordText record(std::size_t lastPart = 0) { return RecordText(imageAt(imageLength + lastPart) - lastPart); }
    void append(RecordText record) { append(record, record.length()); }
    void append(RecordText record, std::size_t width)
    {
        record.character('\0');
        imageLength += width;
    }

    /// Appends a text field: at most `width` characters, padded with the blanks that the image was filled with.
    void appendField(std::string_view text, std::size_t width)
    {
        set(imageLength, text.substr(0, width));
        imageLength += width;
    }

    /// Leaves room at the write position, to be filled later; returns where.
    std::size_t reserve(std::size_t width)
    {
        const std::size_t position = imageLength;
        imageLength += width;
        return position;
    }
    /// Room that is filled at once, longer than a record may be; returns its first character.
    char* takeRoom(std::size_t width) { return imageAt(reserve(width) + width) - width; }

    /// Fills room left for the head of a list. The terminator stands at the end of the room, and so over the last digits
    /// of a count that has more than three.
    void setListHead(std::size_t position, std::size_t width, std::string_view tag, std::size_t count)
    {
        recordAt(position).text(tag).number(count);
        set(position + width - kTerminator.size(), kTerminator);
    }

    const char* data() const { return image; }

    std::size_t imageLength = 0; // characters of the image in use: the write position

private:
    char* image;
    std::uint32_t imageCapacity;
};

} // namespace typdescriptor::internal
