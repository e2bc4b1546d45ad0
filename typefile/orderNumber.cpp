#include "typefile/orderNumber.h"

#include "typefile/typeFile.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace typdescriptor::internal {

namespace {

/// A character of the image as readers see it.
char characterAt(const TypeFile& file, std::size_t position)
{
    const OrderNumber& number = file.orderNumber;
    const char c = file.image[position];
    if (number.end == 0)
        return c;
    if (position == number.end)
        return number.isClosed ? kOrderNumberClose : '\0';
    if (position != number.bracket)
        return c;
    return number.isBlanked ? ' ' : number.isClosed ? c : '\0';
}

} // namespace

void copyCharacters(const TypeFile& file, std::size_t position, char* target, std::size_t count)
{
    std::memcpy(target, file.image + position, count);
    // Nothing reads differently but these two.
    for (const std::size_t changed : {file.orderNumber.end, file.orderNumber.bracket}) {
        if (changed >= position && changed < position + count)
            target[changed - position] = characterAt(file, changed);
    }
}

void findOrderNumber(TypeFile& file)
{
    // Both brackets are looked for in the image as a whole: a short head line finds them in the header.
    const char* const searchEnd = file.image + kMaxHeadLineLength;
    const char* const open = std::find(file.image, searchEnd, kOrderNumberOpen);
    if (open == searchEnd)
        return;
    OrderNumber& number = file.orderNumber;
    const auto begin = static_cast<std::size_t>(open + 1 - file.image);
    for (std::size_t i = begin; i <= begin + kOrderNumberWidth; ++i) {
        if (characterAt(file, i) != kOrderNumberClose)
            continue;
        number.isFound = true;
        number.isClosed = false;
        if (number.end == 0 || number.begin != begin) {
            number.begin = begin;
            number.end = number.bracket = i;
        }
        return;
    }
}

std::string_view orderNumberText(const TypeFile& file, OrderNumberBuffer& buffer)
{
    const OrderNumber& number = file.orderNumber;
    std::string_view text(file.image + number.begin, number.end - number.begin);
    if (number.isClosed) {
        copyCharacters(file, number.begin, buffer.data(), buffer.size());
        text = {buffer.data(), buffer.size()};
    }
    return text.substr(0, text.find('\0'));
}

int getMLFBstring(TypeFile& file, char* text)
{
    OrderNumber& number = file.orderNumber;
    OrderNumberBuffer buffer;
    std::string_view characters;
    if (number.isFound)
        characters = orderNumberText(file, buffer);
    // Once written, the text runs on behind its ">", so that the blanks in it are no trailing ones.
    if (number.isFound && !number.isClosed) {
        const bool isInHeadLine = number.begin + characters.size() < file.headLineLength;
        while (!characters.empty() && isSpace(characters.back()))
            characters.remove_suffix(1);
        if (isInHeadLine)
            number.end = number.begin + characters.size();
    }
    *std::copy(characters.begin(), characters.end(), text) = '\0';
    return characters.empty() ? kErrNoOrderNumber : kOk;
}

void copyTypeFile(const TypeFile& file, char* target)
{
    std::memcpy(target, file.image, static_cast<std::size_t>(file.end - file.image));
    const OrderNumber& number = file.orderNumber;
    if (number.end == 0)
        return;
    if (number.end != number.bracket)
        target[number.bracket] = ' ';
    target[number.end] = kOrderNumberClose;
}

void closeOrderNumber(OrderNumber& number)
{
    number.isClosed = number.end != 0;
    number.isBlanked = number.end != number.bracket;
}

} // namespace typdescriptor::internal
