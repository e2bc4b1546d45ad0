// The descriptor object image: what a host stores of a descriptor and hands back later.
//
// It is the type-file image up to the end that the check has found, followed by two 32-bit words: whether the image was
// compiled from a GSD file, and the GSD revision. Their low byte comes first on every machine, because a project may be
// stored on one and opened on another.

#include "descriptor/cTypDescriptor.h"

#include <cstring>
#include <new>

namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::size_t kTrailerSize = 2 * kWordSize;
constexpr unsigned kBitsPerByte = 8;

uint32_t wordAt(const char* bytes)
{
    uint32_t word = 0;
    for (std::size_t i = kWordSize; i-- > 0;)
        word = word << kBitsPerByte | static_cast<unsigned char>(bytes[i]);
    return word;
}

void putWord(char* bytes, uint32_t word)
{
    for (std::size_t i = 0; i < kWordSize; ++i, word >>= kBitsPerByte)
        bytes[i] = static_cast<char>(word & 0xFF);
}

} // namespace

cTypDescriptor::cTypDescriptor(unsigned short size, char* data)
{
    initialAttributes();
    const std::size_t length = size < kTrailerSize ? 0 : size - kTrailerSize;
    const bool hasTrailer = size >= kTrailerSize;
    if (hasTrailer && data == nullptr) {
        status = kErrFile;
        return;
    }
    try {
        allocateClearedImage(size);
    } catch (const std::bad_alloc&) {
        status = kErrFile;
        return;
    }
    if (!hasTrailer)
        return;
    std::memcpy(image, data, length);
    madeFromGsd = wordAt(data + length);
    gsdRevision = static_cast<int32_t>(wordAt(data + length + kWordSize));
}

/// The whole size, not modulo 65536; 0 when there is nothing that may be stored.
size_t cTypDescriptor::objectImageSize() const
{
    if (loaded == 0 || typeCategory != 0)
        return 0;
    return static_cast<size_t>(typeDataEnd - image) + kTrailerSize;
}

unsigned short cTypDescriptor::getDataSize() const
{
    return static_cast<unsigned short>(objectImageSize());
}

int cTypDescriptor::writeObject(char* buffer) const
{
    const size_t size = objectImageSize();
    if (size == 0)
        return 0;
    const size_t length = size - kTrailerSize;
    std::memcpy(buffer, image, length);
    putBackOrderNumberClose(buffer);
    putWord(buffer + length, madeFromGsd);
    putWord(buffer + length + kWordSize, static_cast<uint32_t>(gsdRevision));
    return 1;
}
