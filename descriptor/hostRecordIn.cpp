// Construction from a host record: plain fields come in, a type-file image goes out.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/image.h"
#include "generator/hostRecordImage.h"
#include "typefile/typeFile.h"

#include <new>

using namespace typdescriptor::internal;

cTypDescriptor::cTypDescriptor(const TYPEFILE_COM_QX410* record)
{
    if (record == nullptr) {
        status = kErrFile;
        return;
    }
    try {
        typeFile = new TypeFile;
        Image buffer = clearedImage(hostRecordImageSize(*record));
        image = buffer.characters.release();
        imageCapacity = buffer.capacity;
    } catch (const std::bad_alloc&) {
        status = kErrFile;
        return;
    }
    writeHostRecordImage(image, imageCapacity, *record);
}
