// Saving a type file, and what a host asks around it.
//
// A type file that may not be changed is neither written nor overwritten. Everything that can refuse is asked before
// the target is emptied, its handle included.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/file.h"
#include "descriptor/orderNumber.h"
#include "gsd/textScan.h"

#include <cstdio>
#include <new>

using namespace typdescriptor::internal;

int cTypDescriptor::changeTypeFilePossible() const
{
    return changeable;
}

/// A missing, unreadable or invalid file is not protected. Raises std::bad_alloc when the file cannot be judged for
/// want of memory: it must not be overwritten then.
bool cTypDescriptor::isProtectedTypeFile(const char* path)
{
    cTypDescriptor target(path, 0, nullptr);
    // The status of a construction is the same for a missing file and for missing memory; reading again raises the
    // latter.
    if (target.image == nullptr && target.madeFromGsd == 0)
        target.readTypeFile(path);
    const int result = target.checkTypeFileContents();
    const bool compilationBroke = target.madeFromGsd != 0 && result == kErrFile;
    if (compilationBroke || result == kErrGsdMemory || result == kErrMemory)
        throw std::bad_alloc();
    return result == kOk && target.changeTypeFilePossible() == 0;
}

/// Ends the order number in the image, or in a copy of it, with ">" again. Where getMLFBstring() has shortened it, the
/// place where ">" first stood becomes a blank, so that no NUL of ours is left.
void cTypDescriptor::putBackOrderNumberClose(char* copy) const
{
    if (orderNumberEnd == nullptr)
        return;
    copy[orderNumberClose - image] = ' ';
    copy[orderNumberEnd - image] = typefile::kOrderNumberClose;
}

unsigned short cTypDescriptor::writeTypeFile(const char* path)
{
    if (loaded == 0)
        return in16Bits(kErrMemory);
    if (changeTypeFilePossible() == 0)
        return in16Bits(kErrNotChangeable);
    if (path == nullptr)
        return in16Bits(kErrWriteOpen);
    try {
        if (isProtectedTypeFile(path))
            return in16Bits(kErrTargetProtected);
    } catch (const std::bad_alloc&) {
        return in16Bits(kErrMemory);
    }

    File file = openEmptied(path);
    if (!file)
        return in16Bits(kErrWriteOpen);
    // ">" stays in the image from here on.
    putBackOrderNumberClose(image);
    orderNumberClose = orderNumberEnd;
    imageSize = static_cast<uint32_t>(typeDataEnd - image);
    const bool isWritten = std::fwrite(image, 1, imageSize, file.get()) == imageSize;
    const bool isClosed = std::fclose(file.release()) == 0;
    return in16Bits(isWritten && isClosed ? kOk : kErrWrite);
}

unsigned short cTypDescriptor::getMLFBstring(char* text)
{
    if (loaded == 0)
        return in16Bits(kErrMemory);
    *text = '\0';
    if (orderNumberPos == nullptr)
        return in16Bits(kErrNoOrderNumber);

    std::string_view orderNumber = orderNumberText(orderNumberPos);
    // Once written, the text runs on behind its ">", so that the blanks in it are no trailing ones.
    if (*orderNumberEnd == '\0') {
        const std::size_t length = orderNumber.size();
        orderNumber = withoutTrailingBlanks(orderNumber);
        if (orderNumberPos + length < headerPos) {
            orderNumberEnd = orderNumberPos + orderNumber.size();
            *orderNumberEnd = '\0';
        }
    }
    if (orderNumber.empty())
        return in16Bits(kErrNoOrderNumber);
    orderNumber.copy(text, orderNumber.size());
    text[orderNumber.size()] = '\0';
    return in16Bits(kOk);
}
