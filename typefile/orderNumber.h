// The bracketed order number of the head line.
//
// Nothing is written into the image for it. A reader sees the image through copyCharacters(): the order number that a check
// has found is ended by a NUL there until a write closes it with its ">" again, and a text that was cut takes that ">"
// with it: the place where it first stood becomes a blank.

#pragma once

#include "typefile/format.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace typdescriptor::internal {

struct TypeFile;

struct OrderNumber {
    bool isFound = false; // by the last check
    std::size_t begin = 0;
    std::size_t end = 0;     // of the text; 0 when no check has found any
    std::size_t bracket = 0; // the ">" that ended the text first
    bool isClosed = false;   // by a write
    bool isBlanked = false;  // what stood at `bracket` is a blank since a write
};

/// Copies characters of the image as readers see them.
void copyCharacters(const TypeFile& file, std::size_t position, char* target, std::size_t count);

/// Looks for the order number, as the last step of the check of a head line.
void findOrderNumber(TypeFile& file);

using OrderNumberBuffer = std::array<char, kOrderNumberWidth>;

/// The text of an order number that was found, up to its NUL; once closed, it runs on behind its ">".
/// @param buffer  room for it
std::string_view orderNumberText(const TypeFile& file, OrderNumberBuffer& buffer);

/// Cuts the trailing blanks of an order number that is not closed, and copies it; see cTypDescriptor::getMLFBstring().
/// @param file  loaded
int getMLFBstring(TypeFile& file, char* text);

/// Copies the type file as it is written: order number closed.
void copyTypeFile(const TypeFile& file, char* target);

/// Remembers that it was written.
void closeOrderNumber(OrderNumber& number);

} // namespace typdescriptor::internal
