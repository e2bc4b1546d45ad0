// Life of a descriptor: construction from a file or a host record, assignment, destruction, and the results of a GSD
// compilation.
//
// The name alone decides whether a file is compiled as GSD or read as a type file. Nothing is validated here.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/file.h"
#include "descriptor/image.h"
#include "generator/hostRecordImage.h"
#include "gsd/cGsdCompiler.h"
#include "typefile/typeFile.h"

#include <cstring>
#include <new>

using namespace typdescriptor::internal;

namespace {

constexpr std::size_t kGsdImageCapacity = 65000;

} // namespace

cTypDescriptor::cTypDescriptor(const char* fileName, int writeFlag, const char* outputName)
{
    if (fileName == nullptr) {
        status = kErrFile;
        return;
    }
    madeFromGsd = isGsdFileName(fileName) ? 1 : 0;
    try {
        typeFile = new TypeFile;
        Image buffer;
        if (madeFromGsd == 0)
            status = readTypeFile(fileName, buffer);
        else
            buffer = newImage(kGsdImageCapacity);
        image = buffer.characters.release();
        imageCapacity = buffer.capacity;
        imageSize = buffer.size;
        if (madeFromGsd == 0)
            return;

        cGsdCompiler compiler(image, imageCapacity); // fills the whole image
        status = compiler.compile(fileName, writeFlag, outputName);
        if (status < 0)
            gsdErrLineNr = static_cast<int32_t>(compiler.errorLine());
        gsdRevision = static_cast<int32_t>(compiler.revision());

        gsdWarnings = new GSD_WARNING_ITEM[compiler.warningCount()];
        gsdCntOfWarnings = static_cast<int32_t>(compiler.warningCount());
        compiler.copyWarnings(gsdWarnings);
        gsdFoundMandatories = new uint8_t[cGsdCompiler::kMandatoryCount];
        compiler.copyFoundMandatories(gsdFoundMandatories);
    } catch (const std::bad_alloc&) {
        status = kErrFile;
    }
}

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
        writeHostRecordImage(image, imageCapacity, *record);
    } catch (const std::bad_alloc&) {
        status = kErrFile;
    }
}

cTypDescriptor::~cTypDescriptor()
{
    delete typeFile;
    delete[] image;
    delete[] gsdWarnings;
    delete[] gsdFoundMandatories;
}

cTypDescriptor& cTypDescriptor::operator=(const cTypDescriptor& other) = default;

int cTypDescriptor::getStatus() const
{
    return status;
}

int cTypDescriptor::getGsdErrLineNr() const
{
    return gsdErrLineNr;
}

int cTypDescriptor::getGsdCntOfWarnings() const
{
    return gsdCntOfWarnings;
}

void cTypDescriptor::getGsdWarnings(char* dst) const
{
    if (gsdWarnings != nullptr && gsdCntOfWarnings > 0)
        std::memcpy(dst, gsdWarnings, static_cast<size_t>(gsdCntOfWarnings) * sizeof(GSD_WARNING_ITEM));
}

int cTypDescriptor::getGsdRevision() const
{
    return gsdRevision;
}

void cTypDescriptor::getGsdFoundMandatories(unsigned char* dst) const
{
    if (gsdFoundMandatories != nullptr)
        std::memcpy(dst, gsdFoundMandatories, cGsdCompiler::kMandatoryCount);
}
