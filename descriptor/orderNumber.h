// The bracketed order number of a head line, as queries and output read it.

#pragma once

#include "typefile/format.h"

#include <algorithm>
#include <string_view>

/// The text as a string reads it, at most 30 characters: once written, it runs on behind its ">".
inline std::string_view orderNumberText(const char* orderNumber)
{
    const char* const end = std::find(orderNumber, orderNumber + typefile::kOrderNumberWidth, '\0');
    return {orderNumber, static_cast<std::size_t>(end - orderNumber)};
}
