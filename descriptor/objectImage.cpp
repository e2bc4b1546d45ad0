// The descriptor object image: what a host stores of a descriptor and hands back later.
//
// It is the type-file image up to the end that the check has found, followed by two 32-bit words: whether the image was
// compiled from a GSD file, and the GSD revision. Their low byte comes first on every machine, because a project may be
// stored on one and opened on another.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/decoded.h"
#include "descriptor/image.h"
#include "typefile/typeFile.h"

#include <cstring>
#include <new>

using namespace typdescriptor::internal;

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

/// The whole size, not modulo 65536; 0 when there is nothing that may be stored.
std::size_t objectImageSize(const TypeFile& file)
{
    return file.category == kCategoryI ? static_cast<std::size_t>(file.end - file.image) + kTrailerSize : 0;
}

} // namespace

cTypDescriptor::cTypDescriptor(unsigned short size, char* data)
{
    const bool hasTrailer = size >= kTrailerSize;
    if (hasTrailer && data == nullptr) {
        status = kErrFile;
        return;
    }
    try {
        typeFile = new TypeFile;
        Image buffer = clearedImage(size);
        image = buffer.characters.release();
        imageCapacity = buffer.capacity;
        if (!hasTrailer)
            return;
        const std::size_t length = size - kTrailerSize;
        std::memcpy(image, data, length);
        madeFromGsd = wordAt(data + length);
        gsdRevision = static_cast<int32_t>(wordAt(data + length + kWordSize));
    } catch (const std::bad_alloc&) {
        status = kErrFile;
    }
}

unsigned short cTypDescriptor::getDataSize() const
{
    return static_cast<unsigned short>(objectImageSize(loaded(typeFile, typeCategory)));
}

int cTypDescriptor::writeObject(char* buffer) const
{
    const std::size_t size = objectImageSize(loaded(typeFile, typeCategory));
    if (size == 0)
        return 0;
    copyTypeFile(*typeFile, buffer);
    putWord(buffer + size - kTrailerSize, madeFromGsd);
    putWord(buffer + size - kWordSize, static_cast<uint32_t>(gsdRevision));
    return 1;
}
