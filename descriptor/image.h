// The buffer of a type-file image.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace typdescriptor::internal {

struct Image {
    std::unique_ptr<char[]> characters;
    std::uint32_t capacity = 0; // without the slack
    std::uint32_t size = 0;     // of what was read into it
};

/// An image in which nothing stands yet, with its slack of NULs.
Image newImage(std::size_t capacity);

/// An image of NULs.
Image clearedImage(std::size_t capacity);

/// Reads a type file whole.
/// @return kOk or kErrFile
int readTypeFile(const char* fileName, Image& image);

} // namespace typdescriptor::internal
