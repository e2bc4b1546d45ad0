#include "descriptor/image.h"

#include "descriptor/file.h"
#include "descriptor/resultCodes.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstdio>

namespace typdescriptor::internal {

namespace {

/// Length of a file in bytes, -1 when it cannot be measured. The file is rewound.
long fileLength(std::FILE* file)
{
    if (std::fseek(file, 0, SEEK_END) != 0)
        return -1;
    const long length = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 ? length : -1;
}

} // namespace

Image newImage(std::size_t capacity)
{
    capacity = std::max(capacity, kMinImageSize);
    Image image{std::make_unique_for_overwrite<char[]>(capacity + kImageSlack), static_cast<std::uint32_t>(capacity)};
    std::fill_n(image.characters.get() + capacity, kImageSlack, '\0');
    return image;
}

Image clearedImage(std::size_t capacity)
{
    Image image = newImage(capacity);
    std::fill_n(image.characters.get(), image.capacity, '\0');
    return image;
}

int readTypeFile(const char* fileName, Image& image)
{
    const File file = openFile(fileName, "rb");
    if (!file)
        return kErrFile;
    const long length = fileLength(file.get());
    if (length < 0 || static_cast<unsigned long>(length) > kMaxFileSize)
        return kErrFile;
    const auto size = static_cast<std::size_t>(length);
    image = clearedImage(size + 1);
    image.size = static_cast<std::uint32_t>(size);
    // One more than there should be: where a long has 32 bits, the length of a file of 4 GiB and more is cut.
    const std::size_t read = std::fread(image.characters.get(), 1, size + 1, file.get());
    return read > 0 && read <= size && std::ferror(file.get()) == 0 ? kOk : kErrFile;
}

} // namespace typdescriptor::internal
