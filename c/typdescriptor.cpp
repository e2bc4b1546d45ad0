#include "c/typdescriptor.h"

#include "descriptor/cTypDescriptor.h"

#include <new>

struct typdescriptor_device {
    template <class... Arguments>
    explicit typdescriptor_device(Arguments... arguments) : descriptor(arguments...)
    {}

    cTypDescriptor descriptor;
};

namespace {

/// What answers for a null handle.
typdescriptor_device nothingLoaded()
{
    return typdescriptor_device(static_cast<const TYPEFILE_COM_QX410*>(nullptr));
}

template <class Result, class... Parameters>
Result ask(const typdescriptor_device* device, Result (cTypDescriptor::*member)(Parameters...) const,
           Parameters... arguments)
{
    return device != nullptr ? (device->descriptor.*member)(arguments...)
                             : (nothingLoaded().descriptor.*member)(arguments...);
}

template <class Result, class... Parameters>
Result ask(typdescriptor_device* device, Result (cTypDescriptor::*member)(Parameters...), Parameters... arguments)
{
    return device != nullptr ? (device->descriptor.*member)(arguments...)
                             : (nothingLoaded().descriptor.*member)(arguments...);
}

} // namespace

typdescriptor_device* typdescriptor_open(const char* fileName, int writeFlag, const char* outputName)
{
    return new (std::nothrow) typdescriptor_device(fileName, writeFlag, outputName);
}

typdescriptor_device* typdescriptor_openRecord(const TYPEFILE_COM_QX410* record)
{
    return new (std::nothrow) typdescriptor_device(record);
}

typdescriptor_device* typdescriptor_openObject(unsigned short size, char* data)
{
    return new (std::nothrow) typdescriptor_device(size, data);
}

void typdescriptor_close(typdescriptor_device* device)
{
    delete device;
}

const char* typdescriptor_resultText(int code)
{
    return resultText(code);
}

int typdescriptor_getStatus(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getStatus);
}

int typdescriptor_getGsdErrLineNr(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getGsdErrLineNr);
}

int typdescriptor_getGsdCntOfWarnings(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getGsdCntOfWarnings);
}

void typdescriptor_getGsdWarnings(const typdescriptor_device* device, char* dst)
{
    ask(device, &cTypDescriptor::getGsdWarnings, dst);
}

int typdescriptor_getGsdRevision(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getGsdRevision);
}

void typdescriptor_getGsdFoundMandatories(const typdescriptor_device* device, unsigned char* dst)
{
    ask(device, &cTypDescriptor::getGsdFoundMandatories, dst);
}

int typdescriptor_checkTypeFileContents(typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::checkTypeFileContents);
}

int typdescriptor_getCOMTypeData(typdescriptor_device* device, TYPEFILE_COM_QX410* record)
{
    return ask(device, &cTypDescriptor::getCOMTypeData, record);
}

unsigned short typdescriptor_getDataSize(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getDataSize);
}

int typdescriptor_writeObject(const typdescriptor_device* device, char* buffer)
{
    return ask(device, &cTypDescriptor::writeObject, buffer);
}

unsigned short typdescriptor_writeTypeFile(typdescriptor_device* device, const char* path)
{
    return ask(device, &cTypDescriptor::writeTypeFile, path);
}

int typdescriptor_changeTypeFilePossible(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::changeTypeFilePossible);
}

unsigned short typdescriptor_getMLFBstring(typdescriptor_device* device, char* text)
{
    return ask(device, &cTypDescriptor::getMLFBstring, text);
}

unsigned short typdescriptor_getSlaveTypeHeader(const typdescriptor_device* device, SLAVE_TYPE_HEADER_INFO* record)
{
    return ask(device, &cTypDescriptor::getSlaveTypeHeader, record);
}

unsigned short typdescriptor_getSlaveTypeData(const typdescriptor_device* device, SLAVE_TYPEDATA_TYPE* record)
{
    return ask(device, &cTypDescriptor::getSlaveTypeData, record);
}

int typdescriptor_getFamily(const typdescriptor_device* device, char* text)
{
    return ask(device, &cTypDescriptor::getFamily, text);
}

int typdescriptor_getBitMapFileName(const typdescriptor_device* device, char* name)
{
    return ask(device, &cTypDescriptor::getBitMapFileName, name);
}

int typdescriptor_getDLLFileName(const typdescriptor_device* device, char* name)
{
    return ask(device, &cTypDescriptor::getDLLFileName, name);
}

int typdescriptor_getSlotOffset(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getSlotOffset);
}

int typdescriptor_isModular(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::isModular);
}

int typdescriptor_isKonfigFixed(const typdescriptor_device* device, int* count)
{
    return ask(device, &cTypDescriptor::isKonfigFixed, count);
}

int typdescriptor_isPresetKonfigFixed(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::isPresetKonfigFixed);
}

int typdescriptor_getFixedSlotId(const typdescriptor_device* device, int index, CSLAVE_SLOT_PRESET_TYPE* preset)
{
    return ask<int>(device, &cTypDescriptor::getFixedSlotId, index, preset);
}

int typdescriptor_getFixedSlotItem(const typdescriptor_device* device, int index, MLFB_ITEM* item)
{
    return ask<int>(device, &cTypDescriptor::getFixedSlotId, index, item);
}

int typdescriptor_getSlotNumbering(const typdescriptor_device* device, SLOT_NUMBERING_TYPE* numbering)
{
    return ask(device, &cTypDescriptor::getSlotNumbering, numbering);
}

int typdescriptor_getMaxSPBlockLen(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getMaxSPBlockLen);
}

int typdescriptor_getSlaveDiagMsgCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getSlaveDiagMsgCnt);
}

int typdescriptor_getSlaveDiagMsg(const typdescriptor_device* device, int byteHigh, int byteLow, int bit,
                                  SLAVE_DIAG_TYPE* message)
{
    return ask(device, &cTypDescriptor::getSlaveDiagMsg, byteHigh, byteLow, bit, message);
}

int typdescriptor_getSlaveBGrDiagMsgCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getSlaveBGrDiagMsgCnt);
}

int typdescriptor_getSlaveBGrDiagMsg(const typdescriptor_device* device, int index, SLAVE_BGR_DIAG_TYPE* message)
{
    return ask(device, &cTypDescriptor::getSlaveBGrDiagMsg, index, message);
}

int typdescriptor_getChannelDiagMsgCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getChannelDiagMsgCnt);
}

int typdescriptor_getChannelDiagMsg(const typdescriptor_device* device, int errorType, char* text)
{
    return ask(device, &cTypDescriptor::getChannelDiagMsg, errorType, text);
}

int typdescriptor_getMLFBListCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getMLFBListCnt);
}

int typdescriptor_getMLFBListItem(const typdescriptor_device* device, int index, MLFB_ITEM* item)
{
    return ask(device, &cTypDescriptor::getMLFBListItem, index, item);
}

int typdescriptor_getLSKCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getLSKCnt);
}

int typdescriptor_getLSKText(const typdescriptor_device* device, int index, char* text)
{
    return ask(device, &cTypDescriptor::getLSKText, index, text);
}

int typdescriptor_getSKListCnt(const typdescriptor_device* device, int index, int* vFlag)
{
    return ask(device, &cTypDescriptor::getSKListCnt, index, vFlag);
}

int typdescriptor_getSKListItem(const typdescriptor_device* device, int index, int item, LSK_ITEM* entry)
{
    return ask(device, &cTypDescriptor::getSKListItem, index, item, entry);
}

int typdescriptor_getParaStructCnt(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getParaStructCnt);
}

int typdescriptor_getParaStruct(const typdescriptor_device* device, int index, _parastruct* entry)
{
    return ask(device, &cTypDescriptor::getParaStruct, index, entry);
}

int typdescriptor_getStructuredSlotParameterCnt(const typdescriptor_device* device, int block)
{
    return ask(device, &cTypDescriptor::getStructuredSlotParameterCnt, block);
}

int typdescriptor_getStructuredSlotParameter(const typdescriptor_device* device, int block, int index,
                                             _parastruct* entry)
{
    return ask(device, &cTypDescriptor::getStructuredSlotParameter, block, index, entry);
}

int typdescriptor_getSlotParameters(const typdescriptor_device* device, int index, unsigned char* bytes, int* length)
{
    return ask(device, &cTypDescriptor::getSlotParameters, index, bytes, length);
}

int typdescriptor_hasSPBlockThisKeyWord(typdescriptor_device* device, KEYWORD_TYPE* keyword, int index, int which)
{
    return ask(device, &cTypDescriptor::hasSPBlockThisKeyWord, keyword, index, which);
}

int typdescriptor_getHelpMessageCnt(const typdescriptor_device* device, int block)
{
    return ask(device, &cTypDescriptor::getHelpMessageCnt, block);
}

int typdescriptor_getParaHelpMessage(const typdescriptor_device* device, int block, int line,
                                     PARA_HELPMESSAGE_TYPE* message)
{
    return ask(device, &cTypDescriptor::getParaHelpMessage, block, line, message);
}

int typdescriptor_getSPHelpCnt(const typdescriptor_device* device, int block)
{
    return ask(device, &cTypDescriptor::getSPHelpCnt, block);
}

int typdescriptor_getSPHelpItem(const typdescriptor_device* device, int block, int line, PARA_HELPMESSAGE_TYPE* message)
{
    return ask(device, &cTypDescriptor::getSPHelpItem, block, line, message);
}

int typdescriptor_getSPBlockAnz(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getSPBlockAnz);
}

int typdescriptor_getSPHelpAnz(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getSPHelpAnz);
}

int typdescriptor_getPSLHelpAnz(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getPSLHelpAnz);
}

int typdescriptor_getPSLHelpRef(const typdescriptor_device* device, int i)
{
    return ask(device, &cTypDescriptor::getPSLHelpRef, i);
}

int typdescriptor_isMLFBModeP36(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::isMLFBModeP36);
}

int typdescriptor_isP36KY(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::isP36KY);
}

char* typdescriptor_getDKMPos(const typdescriptor_device* device)
{
    return ask(device, &cTypDescriptor::getDKMPos);
}
