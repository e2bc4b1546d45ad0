// Saving a type file.
//
// A type file that may not be changed is neither written nor overwritten. Everything that can refuse is asked before
// the target is emptied, its handle included.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/decoded.h"
#include "descriptor/file.h"
#include "descriptor/image.h"
#include "typefile/typeFile.h"

#include <cstdio>
#include <new>
#include <string>

using namespace typdescriptor::internal;

namespace {

/// A missing, unreadable or invalid file is not protected. Raises std::bad_alloc when the file cannot be judged for
/// want of memory: it must not be overwritten then.
bool isProtected(const char* path)
{
    if (isGsdFileName(path)) {
        cTypDescriptor target(path, 0, nullptr);
        const int result = target.checkTypeFileContents();
        if (result == kErrFile || result == kErrGsdMemory || result == kErrMemory)
            throw std::bad_alloc();
        return result == kOk && target.changeTypeFilePossible() == 0;
    }
    Image image;
    if (readTypeFile(path, image) != kOk)
        return false;
    TypeFile target;
    const int result = check(image.characters.get(), image.capacity, target);
    if (result == kErrMemory)
        throw std::bad_alloc();
    return result == kOk && !target.isChangeable;
}

/// Writes the image up to the end of its type data.
int write(const TypeFile& file, const char* path, bool& isOpened)
{
    if (!file.isLoaded)
        return kErrMemory;
    if (!file.isChangeable)
        return kErrNotChangeable;
    if (path == nullptr)
        return kErrWriteOpen;
    if (isProtected(path))
        return kErrTargetProtected;

    std::string contents(static_cast<std::size_t>(file.end - file.image), '\0');
    copyTypeFile(file, contents.data());
    File target = openEmptied(path);
    if (!target)
        return kErrWriteOpen;
    isOpened = true;
    const bool isWritten = std::fwrite(contents.data(), 1, contents.size(), target.get()) == contents.size() &&
                           std::fflush(target.get()) == 0; // a close that fails does not say everywhere why
    const bool isClosed = std::fclose(target.release()) == 0;
    return isWritten && isClosed ? kOk : kErrWrite;
}

} // namespace

unsigned short cTypDescriptor::writeTypeFile(const char* path)
{
    int result = kOk;
    bool isOpened = false;
    try {
        result = write(loaded(typeFile, typeCategory), path, isOpened);
    } catch (const std::bad_alloc&) {
        result = kErrMemory;
    }
    if (isOpened) {
        closeOrderNumber(typeFile->orderNumber); // ">" stays in what readers see from here on
        imageSize = static_cast<uint32_t>(typeFile->end - typeFile->image);
    }
    return static_cast<unsigned short>(result);
}
