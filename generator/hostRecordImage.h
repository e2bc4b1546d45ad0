// The image of a type file from a host record.

#pragma once

#include "descriptor/records.h"

#include <cstddef>
#include <cstdint>

namespace typdescriptor::internal {

/// Characters that the image of a record may take.
std::size_t hostRecordImageSize(const TYPEFILE_COM_QX410& record);

/// Writes the image of a record into a buffer of NULs, at least hostRecordImageSize() of them.
void writeHostRecordImage(char* buffer, std::uint32_t capacity, const TYPEFILE_COM_QX410& record);

} // namespace typdescriptor::internal
