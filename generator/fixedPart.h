// The part of a type file whose places are fixed: head line, header and the fixed block of the type data, up to the
// length of the user parameters. What stands at any of its places is said here and nowhere else, whether a GSD file or a
// host record is the source.

#pragma once

#include "descriptor/records.h"
#include "generator/model.h"
#include "generator/outputImage.h"

namespace typdescriptor::internal {

/// Writes the fixed part at the start of the image; throws ImageFull.
void writeFixedPart(OutputImage& image, const GsdModel& model);

/// Texts are not cut to their field: one that is too long reaches into the terminator behind it.
void writeFixedPart(OutputImage& image, const TYPEFILE_COM_QX410& record);

/// A text member of a host record up to its NUL, or its whole width where the host left the NUL out.
template <std::size_t Size>
std::string_view textOf(const char (&member)[Size])
{
    return {member, static_cast<std::size_t>(std::find(member, member + Size, '\0') - member)};
}

} // namespace typdescriptor::internal
