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

} // namespace typdescriptor::internal
