// Life of a descriptor: initial state, construction from a file, destruction, and the results of a GSD compilation.
//
// The name alone decides whether a file is compiled as GSD or read as a type file. Nothing is validated here.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/file.h"
#include "gsd/cGsdCompiler.h"
#include "typefile/format.h"
#include "typefile/imageSlack.h"
#include "typefile/moduleList.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

using namespace typdescriptor::internal;

namespace {

constexpr std::size_t kGsdImageCapacity = 65000;
constexpr int32_t kCategoryUnknown = 65535;

/// "G" and "S" before the last letter, which is the language.
bool isGsdFileName(std::string_view name)
{
    return name.size() >= 3 && typefile::toUpper(name[name.size() - 3]) == 'G' &&
           typefile::toUpper(name[name.size() - 2]) == 'S';
}

/// Length of a file in bytes, -1 when it cannot be measured. The file is rewound.
long fileLength(std::FILE* file)
{
    if (std::fseek(file, 0, SEEK_END) != 0)
        return -1;
    const long length = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 ? length : -1;
}

} // namespace

void cTypDescriptor::initialAttributes()
{
    madeFromGsd = 0;
    status = 0;
    clearCheckResults();
    typeCategory = kCategoryUnknown;
    kgpDeviceValue = 0;
    orderNumberEnd = nullptr;
    orderNumberClose = nullptr;
    std::memcpy(lineEndAndTerminator, "\r\n;\r\n", sizeof lineEndAndTerminator);

    image = nullptr;
    imageSize = 0;
    imageCapacity = 0;
    gsdErrLineNr = -1;
    gsdCntOfWarnings = 0;
    gsdWarnings = nullptr;
    gsdFoundMandatories = nullptr;
    gsdRevision = -1;
}

cTypDescriptor::cTypDescriptor(const char* fileName, int writeFlag, const char* outputName)
{
    initialAttributes();
    if (fileName == nullptr) {
        status = kErrFile;
        return;
    }
    try {
        if (isGsdFileName(fileName))
            compileGsdFile(fileName, writeFlag, outputName);
        else
            readTypeFile(fileName);
    } catch (const std::bad_alloc&) {
        status = kErrFile;
    }
}

cTypDescriptor::~cTypDescriptor()
{
    releaseCheckResults();
    delete[] image;
    delete[] gsdWarnings;
    delete[] gsdFoundMandatories;
}

cTypDescriptor& cTypDescriptor::operator=(const cTypDescriptor& other) = default;

void cTypDescriptor::compileGsdFile(const char* fileName, int writeFlag, const char* outputName)
{
    madeFromGsd = 1;
    allocateImage(kGsdImageCapacity);
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
}

void cTypDescriptor::readTypeFile(const char* fileName)
{
    status = kErrFile;
    const File file = openFile(fileName, "rb");
    if (!file)
        return;
    const long length = fileLength(file.get());
    if (length < 0 || static_cast<unsigned long>(length) > typefile::kMaxFileSize)
        return;
    const auto size = static_cast<std::size_t>(length);
    allocateClearedImage(size + 1);
    imageSize = static_cast<uint32_t>(size);
    if (std::fread(image, 1, size, file.get()) > 0 && std::ferror(file.get()) == 0)
        status = kOk;
}

void cTypDescriptor::allocateImage(size_t capacity)
{
    capacity = std::max(capacity, typefile::kMinImageSize);
    image = new char[capacity + typefile::kImageSlack];
    std::memset(image + capacity, '\0', typefile::kImageSlack);
    imageCapacity = static_cast<uint32_t>(capacity);
}

void cTypDescriptor::allocateClearedImage(size_t capacity)
{
    allocateImage(capacity);
    std::memset(image, '\0', imageCapacity);
}

void cTypDescriptor::releaseCheckResults()
{
    delete[] userPrmBytes;
    delete[] prmEntries;
    delete[] pslHelp;
    delete[] pslHelpOfNumber;
    delete[] presetSlots;
    delete[] mlfbItems;
    for (int32_t i = 0; moduleLists != nullptr && i < moduleListCount; ++i)
        delete[] moduleLists[i].entries;
    delete[] moduleLists;
    delete[] spBlockPositions;
    delete[] spStructCounts;
    delete[] spHelpPositions;
    delete[] parsedBytes;
    delete[] parsedEntries;
    clearCheckResults();
}

void cTypDescriptor::clearCheckResults()
{
    header = SLAVE_TYPE_HEADER_INFO();
    typeData = SLAVE_TYPEDATA_TYPE();
    loaded = 0;
    changeable = 0;
    modular = 1;
    slotPrmMode = 0;
    vFlag = 0;
    mFlag = 0;
    yFlag = 0;
    fixedProfileStation = 0;
    qmxStation = 0;
    qx410kStation = 0;
    dpAsiStation = 0;
    kgpStation = 0;
    bareNameStation = 0;
    headerCnfBits = 0;
    headLineLength = 0;
    orderNumberPos = nullptr;
    headerPos = nullptr;

    userPrmBytes = nullptr;
    userPrmByteCount = 0;
    prmEntries = nullptr;
    prmEntryCount = 0;
    pslHelp = nullptr;
    pslHelpCount = 0;
    pslHelpOfNumber = nullptr;
    prmAreaEnd = nullptr;

    presetRecordPos = nullptr;
    presetSlots = nullptr;
    presetCount = 0;

    dkmPos = nullptr;
    deviceDiagCount = 0;
    rangeDiagCount = 0;
    dkkPos = nullptr;
    channelDiagCount = 0;

    std::memset(bitmapName, '\0', sizeof bitmapName);
    std::memset(libraryName, '\0', sizeof libraryName);
    slotOffset = 0;
    slotNumbering = SLOT_NUMBERING_TYPE();

    mlfbItems = nullptr;
    mlfbCount = 0;
    moduleLists = nullptr;
    moduleListCount = 0;

    spBlockCount = 0;
    lastSpBlock = -1;
    spBlockPositions = nullptr;
    spStructCounts = nullptr;
    maxSpBlockLen = 0;
    spHelpPositions = nullptr;
    spHelpCount = 0;
    parsedBytes = nullptr;
    parsedEntries = nullptr;
    keywordPosition = 0;
    typeDataEnd = nullptr;
}

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
