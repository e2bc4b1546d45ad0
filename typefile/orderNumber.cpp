#include "typefile/orderNumber.h"

#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/typeFile.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace typdescriptor::internal {

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

void copyCharacters(const TypeFile& file, std::size_t position, char* target, std::size_t count)
{
    std::memcpy(target, file.image + position, count);
    // Nothing reads differently outside the order number.
    const OrderNumber& number = file.orderNumber;
    const std::size_t end = number.end == 0 ? 0 : number.bracket + 1;
    for (std::size_t i = std::max(position, number.begin); i < std::min(position + count, end); ++i)
        target[i - position] = characterAt(file, i);
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

std::size_t copyOrderNumber(const TypeFile& file, char* text)
{
    std::size_t length = 0;
    for (; length < kOrderNumberWidth; ++length) {
        const char c = characterAt(file, file.orderNumber.begin + length);
        if (c == '\0')
            break;
        text[length] = c;
    }
    return length;
}

int getMLFBstring(TypeFile& file, char* text)
{
    if (!file.isLoaded)
        return kErrMemory;
    *text = '\0';
    OrderNumber& number = file.orderNumber;
    if (!number.isFound)
        return kErrNoOrderNumber;
    std::array<char, kOrderNumberWidth> buffer{};
    std::size_t length = copyOrderNumber(file, buffer.data());
    // Once written, the text runs on behind its ">", so that the blanks in it are no trailing ones.
    if (!number.isClosed) {
        const bool isInHeadLine = number.begin + length < file.headLineLength;
        while (length > 0 && isSpace(buffer[length - 1]))
            --length;
        if (isInHeadLine)
            number.end = number.begin + length;
    }
    *std::copy_n(buffer.begin(), length, text) = '\0';
    return length > 0 ? kOk : kErrNoOrderNumber;
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
