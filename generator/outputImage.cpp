#include "generator/outputImage.h"

#include <algorithm>
#include <cstring>

void OutputImage::clear()
{
    std::memset(image, ' ', imageCapacity);
}

void OutputImage::setFixed(std::size_t position, std::string_view text)
{
    std::copy_n(text.data(), text.size(), image + position);
}

void OutputImage::set(std::size_t position, std::string_view text)
{
    std::copy_n(text.data(), text.size(), imageAt(position));
}

void OutputImage::append(const RecordText& record, std::size_t width)
{
    set(imageLength, record.view());
    image[imageLength + record.length()] = '\0';
    imageLength += width;
}

void OutputImage::appendField(std::string_view text, std::size_t width)
{
    set(imageLength, text.substr(0, width));
    imageLength += width;
}

std::size_t OutputImage::reserve(std::size_t width)
{
    const std::size_t position = imageLength;
    imageLength += width;
    return position;
}

void OutputImage::setListHead(std::size_t position, std::size_t width, std::string_view tag, std::size_t count)
{
    set(position, RecordText().text(tag).number(count).view());
    set(position + width - typefile::kTerminator.size(), typefile::kTerminator);
}
