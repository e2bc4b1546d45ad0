// The descriptor object image: what a host stores of a descriptor and hands back later.
//
// It is the type-file image up to the end that the check has found, followed by two 32-bit words in the byte order of
// the platform: whether the image was compiled from a GSD file, and the GSD revision.

#include "descriptor/cTypDescriptor.h"

#include <cstring>
#include <new>

namespace {

constexpr std::size_t kTrailerSize = sizeof(uint32_t) + sizeof(int32_t);

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
    std::memcpy(&madeFromGsd, data + length, sizeof madeFromGsd);
    std::memcpy(&gsdRevision, data + length + sizeof madeFromGsd, sizeof gsdRevision);
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
    std::memcpy(buffer + length, &madeFromGsd, sizeof madeFromGsd);
    std::memcpy(buffer + length + sizeof madeFromGsd, &gsdRevision, sizeof gsdRevision);
    return 1;
}
