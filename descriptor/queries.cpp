// The check and the queries of a descriptor: the one step from the class to the functions over its type file.

#include "access/queries.h"
#include "descriptor/cTypDescriptor.h"
#include "params/paramQueries.h"
#include "typefile/typeFile.h"

#include <new>

namespace internal = typdescriptor::internal;
using internal::TypeFile;

namespace {

/// What a descriptor answers from: before the first check, from a type file in which nothing was found.
const TypeFile& orNothing(const TypeFile* file)
{
    static const TypeFile kNothing;
    return file != nullptr ? *file : kNothing;
}

bool isLoaded(const TypeFile* file)
{
    return file != nullptr && file->isLoaded;
}

template <class Entry>
int countOf(const std::vector<Entry>& entries)
{
    return static_cast<int>(entries.size());
}

constexpr unsigned short in16Bits(int result)
{
    return static_cast<unsigned short>(result);
}

} // namespace

int cTypDescriptor::checkTypeFileContents()
{
    if (status != kOk)
        return status;
    try {
        if (typeFile == nullptr)
            typeFile = new TypeFile;
    } catch (const std::bad_alloc&) {
        return status = kErrMemory;
    }
    status = internal::check(image, imageCapacity, *typeFile);
    header = typeFile->header;
    typeData = typeFile->typeData;
    typeCategory = typeFile->category;
    return status;
}

unsigned short cTypDescriptor::getMLFBstring(char* text)
{
    return in16Bits(typeFile != nullptr ? internal::getMLFBstring(*typeFile, text) : kErrMemory);
}

int cTypDescriptor::changeTypeFilePossible() const
{
    return orNothing(typeFile).isChangeable ? 1 : 0;
}

unsigned short cTypDescriptor::getSlaveTypeHeader(SLAVE_TYPE_HEADER_INFO* record) const
{
    if (!isLoaded(typeFile))
        return in16Bits(kErrHeader);
    *record = header;
    return kOk;
}

unsigned short cTypDescriptor::getSlaveTypeData(SLAVE_TYPEDATA_TYPE* record) const
{
    if (!isLoaded(typeFile))
        return in16Bits(kErrFile);
    *record = typeData;
    return typeFile->station == internal::StationKind::kQx410k ? 2 : in16Bits(typeCategory);
}

int cTypDescriptor::getFamily(char* text) const
{
    return internal::getFamily(orNothing(typeFile), text);
}

int cTypDescriptor::getBitMapFileName(char* name) const
{
    return internal::getBitMapFileName(orNothing(typeFile), name);
}

int cTypDescriptor::getDLLFileName(char* name) const
{
    return internal::getDLLFileName(orNothing(typeFile), name);
}

int cTypDescriptor::getSlotOffset() const
{
    return isLoaded(typeFile) ? typeFile->slotOffset : 0;
}

int cTypDescriptor::isModular() const
{
    return orNothing(typeFile).isModular ? 1 : 0;
}

int cTypDescriptor::isKonfigFixed(int* count) const
{
    return internal::isKonfigFixed(orNothing(typeFile), count);
}

int cTypDescriptor::isPresetKonfigFixed() const
{
    return internal::isPresetKonfigFixed(orNothing(typeFile));
}

int cTypDescriptor::getFixedSlotId(int index, CSLAVE_SLOT_PRESET_TYPE* preset) const
{
    return internal::getFixedSlotId(orNothing(typeFile), index, preset);
}

int cTypDescriptor::getFixedSlotId(int index, MLFB_ITEM* item) const
{
    return internal::getFixedSlotId(orNothing(typeFile), index, item);
}

int cTypDescriptor::getSlotNumbering(SLOT_NUMBERING_TYPE* numbering) const
{
    return internal::getSlotNumbering(orNothing(typeFile), numbering);
}

int cTypDescriptor::getMaxSPBlockLen() const
{
    return isLoaded(typeFile) ? typeFile->maxSlotBlockLength : 0;
}

int cTypDescriptor::isMLFBModeP36() const
{
    return orNothing(typeFile).presetCode.byOrderNumber ? 1 : 0;
}

int cTypDescriptor::isP36KY() const
{
    return orNothing(typeFile).presetCode.closed ? 1 : 0;
}

char* cTypDescriptor::getDKMPos() const
{
    const char* const position = orNothing(typeFile).deviceDiag.begin;
    return position != nullptr ? image + (position - typeFile->image) : nullptr;
}

int cTypDescriptor::getSlaveDiagMsgCnt() const
{
    return isLoaded(typeFile) ? typeFile->deviceDiag.count : 0;
}

int cTypDescriptor::getSlaveDiagMsg(int byteHigh, int byteLow, int bit, SLAVE_DIAG_TYPE* message) const
{
    return internal::getSlaveDiagMsg(orNothing(typeFile), byteHigh, byteLow, bit, message);
}

int cTypDescriptor::getSlaveBGrDiagMsgCnt() const
{
    return isLoaded(typeFile) ? typeFile->deviceDiag.groupCount : 0;
}

int cTypDescriptor::getSlaveBGrDiagMsg(int index, SLAVE_BGR_DIAG_TYPE* message) const
{
    return internal::getSlaveBGrDiagMsg(orNothing(typeFile), index, message);
}

int cTypDescriptor::getChannelDiagMsgCnt() const
{
    return isLoaded(typeFile) ? typeFile->channelDiag.count : 0;
}

int cTypDescriptor::getChannelDiagMsg(int errorType, char* text) const
{
    return internal::getChannelDiagMsg(orNothing(typeFile), errorType, text);
}

int cTypDescriptor::getMLFBListCnt() const
{
    return isLoaded(typeFile) ? countOf(typeFile->orderNumbers) : 0;
}

int cTypDescriptor::getMLFBListItem(int index, MLFB_ITEM* item) const
{
    return internal::getMLFBListItem(orNothing(typeFile), index, item);
}

int cTypDescriptor::getLSKCnt() const
{
    return isLoaded(typeFile) ? countOf(typeFile->moduleLists) : 0;
}

int cTypDescriptor::getLSKText(int index, char* text) const
{
    return internal::getLSKText(orNothing(typeFile), index, text);
}

int cTypDescriptor::getSKListCnt(int index, int* vFlag) const
{
    return internal::getSKListCnt(orNothing(typeFile), index, vFlag);
}

int cTypDescriptor::getSKListItem(int index, int item, LSK_ITEM* entry) const
{
    return internal::getSKListItem(orNothing(typeFile), index, item, entry);
}

int cTypDescriptor::getParaStructCnt() const
{
    return internal::getParaStructCnt(orNothing(typeFile));
}

int cTypDescriptor::getParaStruct(int index, _parastruct* entry) const
{
    return internal::getParaStruct(orNothing(typeFile), index, entry);
}

int cTypDescriptor::getStructuredSlotParameterCnt(int block) const
{
    return internal::getStructuredSlotParameterCnt(orNothing(typeFile), block);
}

int cTypDescriptor::getStructuredSlotParameter(int block, int index, _parastruct* entry) const
{
    return internal::getStructuredSlotParameter(orNothing(typeFile), block, index, entry);
}

int cTypDescriptor::getSlotParameters(int index, unsigned char* bytes, int* length) const
{
    return internal::getSlotParameters(orNothing(typeFile), index, bytes, length);
}

int cTypDescriptor::hasSPBlockThisKeyWord(KEYWORD_TYPE* keyword, int index, int which)
{
    return typeFile != nullptr ? internal::hasSPBlockThisKeyWord(*typeFile, keyword, index, which) : 0;
}

int cTypDescriptor::getHelpMessageCnt(int block) const
{
    return internal::getHelpMessageCnt(orNothing(typeFile), block);
}

int cTypDescriptor::getParaHelpMessage(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    return internal::getParaHelpMessage(orNothing(typeFile), block, line, message);
}

int cTypDescriptor::getSPHelpCnt(int block) const
{
    return internal::getSPHelpCnt(orNothing(typeFile), block);
}

int cTypDescriptor::getSPHelpItem(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    return internal::getSPHelpItem(orNothing(typeFile), block, line, message);
}

int cTypDescriptor::getSPBlockAnz() const
{
    return countOf(orNothing(typeFile).slotBlocks);
}

int cTypDescriptor::getSPHelpAnz() const
{
    return countOf(orNothing(typeFile).slotHelp);
}

int cTypDescriptor::getPSLHelpAnz() const
{
    return countOf(orNothing(typeFile).help);
}

int cTypDescriptor::getPSLHelpRef(int i) const
{
    return internal::getPSLHelpRef(orNothing(typeFile), i);
}
