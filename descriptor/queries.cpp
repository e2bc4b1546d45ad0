// The check and the queries of a descriptor: the one step from the class to the functions over its type file.

#include "access/queries.h"
#include "descriptor/cTypDescriptor.h"
#include "descriptor/decoded.h"
#include "params/paramQueries.h"
#include "typefile/typeFile.h"

namespace internal = typdescriptor::internal;
using internal::decoded;
using internal::isLoaded;
using internal::loaded;

namespace {

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
    status = internal::check(image, imageCapacity, *typeFile);
    header = typeFile->header;
    typeData = typeFile->typeData;
    typeCategory = typeFile->category;
    return status;
}

unsigned short cTypDescriptor::getMLFBstring(char* text)
{
    return in16Bits(isLoaded(typeFile, typeCategory) ? internal::getMLFBstring(*typeFile, text) : kErrMemory);
}

int cTypDescriptor::changeTypeFilePossible() const
{
    return decoded(typeFile, typeCategory).isChangeable ? 1 : 0;
}

unsigned short cTypDescriptor::getSlaveTypeHeader(SLAVE_TYPE_HEADER_INFO* record) const
{
    if (!isLoaded(typeFile, typeCategory))
        return in16Bits(kErrHeader);
    *record = header;
    return kOk;
}

unsigned short cTypDescriptor::getSlaveTypeData(SLAVE_TYPEDATA_TYPE* record) const
{
    if (!isLoaded(typeFile, typeCategory))
        return in16Bits(kErrFile);
    *record = typeData;
    return typeFile->station == internal::StationKind::kQx410k ? 2 : in16Bits(typeCategory);
}

int cTypDescriptor::getFamily(char* text) const
{
    return internal::getFamily(loaded(typeFile, typeCategory), text);
}

int cTypDescriptor::getBitMapFileName(char* name) const
{
    return internal::getBitMapFileName(loaded(typeFile, typeCategory), name);
}

int cTypDescriptor::getDLLFileName(char* name) const
{
    return internal::getDLLFileName(loaded(typeFile, typeCategory), name);
}

int cTypDescriptor::getSlotOffset() const
{
    return loaded(typeFile, typeCategory).slotOffset;
}

int cTypDescriptor::isModular() const
{
    return decoded(typeFile, typeCategory).isModular ? 1 : 0;
}

int cTypDescriptor::isKonfigFixed(int* count) const
{
    return internal::isKonfigFixed(loaded(typeFile, typeCategory), count);
}

int cTypDescriptor::isPresetKonfigFixed() const
{
    return internal::isPresetKonfigFixed(loaded(typeFile, typeCategory));
}

int cTypDescriptor::getFixedSlotId(int index, CSLAVE_SLOT_PRESET_TYPE* preset) const
{
    return internal::getFixedSlotId(decoded(typeFile, typeCategory), index, preset);
}

int cTypDescriptor::getFixedSlotId(int index, MLFB_ITEM* item) const
{
    return internal::getFixedSlotId(decoded(typeFile, typeCategory), index, item);
}

int cTypDescriptor::getSlotNumbering(SLOT_NUMBERING_TYPE* numbering) const
{
    return internal::getSlotNumbering(loaded(typeFile, typeCategory), numbering);
}

int cTypDescriptor::getMaxSPBlockLen() const
{
    return loaded(typeFile, typeCategory).maxSlotBlockLength;
}

int cTypDescriptor::isMLFBModeP36() const
{
    return decoded(typeFile, typeCategory).presetCode.byOrderNumber ? 1 : 0;
}

int cTypDescriptor::isP36KY() const
{
    return decoded(typeFile, typeCategory).presetCode.closed ? 1 : 0;
}

char* cTypDescriptor::getDKMPos() const
{
    const char* const position = decoded(typeFile, typeCategory).deviceDiag.begin;
    return position != nullptr ? image + (position - typeFile->image) : nullptr;
}

int cTypDescriptor::getSlaveDiagMsgCnt() const
{
    return loaded(typeFile, typeCategory).deviceDiag.count;
}

int cTypDescriptor::getSlaveDiagMsg(int byteHigh, int byteLow, int bit, SLAVE_DIAG_TYPE* message) const
{
    return internal::getSlaveDiagMsg(loaded(typeFile, typeCategory), byteHigh, byteLow, bit, message);
}

int cTypDescriptor::getSlaveBGrDiagMsgCnt() const
{
    return loaded(typeFile, typeCategory).deviceDiag.groupCount;
}

int cTypDescriptor::getSlaveBGrDiagMsg(int index, SLAVE_BGR_DIAG_TYPE* message) const
{
    return internal::getSlaveBGrDiagMsg(loaded(typeFile, typeCategory), index, message);
}

int cTypDescriptor::getChannelDiagMsgCnt() const
{
    return loaded(typeFile, typeCategory).channelDiag.count;
}

int cTypDescriptor::getChannelDiagMsg(int errorType, char* text) const
{
    return internal::getChannelDiagMsg(loaded(typeFile, typeCategory), errorType, text);
}

int cTypDescriptor::getMLFBListCnt() const
{
    return countOf(loaded(typeFile, typeCategory).orderNumbers);
}

int cTypDescriptor::getMLFBListItem(int index, MLFB_ITEM* item) const
{
    return internal::getMLFBListItem(loaded(typeFile, typeCategory), index, item);
}

int cTypDescriptor::getLSKCnt() const
{
    return countOf(loaded(typeFile, typeCategory).moduleLists);
}

int cTypDescriptor::getLSKText(int index, char* text) const
{
    return internal::getLSKText(loaded(typeFile, typeCategory), index, text);
}

int cTypDescriptor::getSKListCnt(int index, int* vFlag) const
{
    return internal::getSKListCnt(loaded(typeFile, typeCategory), index, vFlag);
}

int cTypDescriptor::getSKListItem(int index, int item, LSK_ITEM* entry) const
{
    return internal::getSKListItem(loaded(typeFile, typeCategory), index, item, entry);
}

int cTypDescriptor::getParaStructCnt() const
{
    return countOf(loaded(typeFile, typeCategory).prmEntries);
}

int cTypDescriptor::getParaStruct(int index, _parastruct* entry) const
{
    return internal::getParaStruct(loaded(typeFile, typeCategory), index, entry);
}

int cTypDescriptor::getStructuredSlotParameterCnt(int block) const
{
    return internal::getStructuredSlotParameterCnt(loaded(typeFile, typeCategory), block);
}

int cTypDescriptor::getStructuredSlotParameter(int block, int index, _parastruct* entry) const
{
    return internal::getStructuredSlotParameter(loaded(typeFile, typeCategory), block, index, entry);
}

int cTypDescriptor::getSlotParameters(int index, unsigned char* bytes, int* length) const
{
    return internal::getSlotParameters(loaded(typeFile, typeCategory), index, bytes, length);
}

int cTypDescriptor::hasSPBlockThisKeyWord(KEYWORD_TYPE* keyword, int index, int which)
{
    return isLoaded(typeFile, typeCategory) ? internal::hasSPBlockThisKeyWord(*typeFile, keyword, index, which) : 0;
}

int cTypDescriptor::getHelpMessageCnt(int block) const
{
    return internal::getHelpMessageCnt(loaded(typeFile, typeCategory), block);
}

int cTypDescriptor::getParaHelpMessage(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    return internal::getParaHelpMessage(loaded(typeFile, typeCategory), block, line, message);
}

int cTypDescriptor::getSPHelpCnt(int block) const
{
    return internal::getSPHelpCnt(loaded(typeFile, typeCategory), block);
}

int cTypDescriptor::getSPHelpItem(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    return internal::getSPHelpItem(loaded(typeFile, typeCategory), block, line, message);
}

int cTypDescriptor::getSPBlockAnz() const
{
    return countOf(decoded(typeFile, typeCategory).slotBlocks);
}

int cTypDescriptor::getSPHelpAnz() const
{
    return countOf(decoded(typeFile, typeCategory).slotHelp);
}

int cTypDescriptor::getPSLHelpAnz() const
{
    return countOf(decoded(typeFile, typeCategory).help);
}

int cTypDescriptor::getPSLHelpRef(int i) const
{
    return internal::getPSLHelpRef(decoded(typeFile, typeCategory), i);
}
