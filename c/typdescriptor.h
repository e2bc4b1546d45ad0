/// @file
/// The library for hosts in C and in every language that can call C: cTypDescriptor behind a handle.
///
/// Each function with a handle is the member function of cTypDescriptor of the same name: descriptor/cTypDescriptor.h
/// says what goes in, what comes out, every result and who owns what. It is so here as well, and besides:
///   - typdescriptor_open() and its like make a handle, typdescriptor_close() ends it; nothing else is allocated on one
///     side and freed on the other.
///   - A null handle answers as a descriptor into which nothing is loaded.
///   - The two getFixedSlotId() of the class are getFixedSlotId, for the identifier, and getFixedSlotItem.
///   - A handle has no assignment: two of them never share a descriptor.

#ifndef TYPDESCRIPTOR_C_TYPDESCRIPTOR_H
#define TYPDESCRIPTOR_C_TYPDESCRIPTOR_H

#include "descriptor/records.h"
#include "descriptor/resultCodes.h"

/// Define TYPDESCRIPTOR_STATIC when the library is linked statically (the CMake package does it by itself).
#if defined(TYPDESCRIPTOR_STATIC)
#define TYPDESCRIPTOR_C_API
#elif defined(_WIN32)
#if defined(TYPDESCRIPTOR_C_BUILD)
#define TYPDESCRIPTOR_C_API // the module definition file exports them, with their plain names
#else
#define TYPDESCRIPTOR_C_API __declspec(dllimport)
#endif
#else
#define TYPDESCRIPTOR_C_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// One PROFIBUS-DP slave device type. Used by one thread at a time.
// NOLINTNEXTLINE(modernize-use-using): C has no other form
typedef struct typdescriptor_device typdescriptor_device;

/// @name Handles
/// @{

/// Loads a device type from a file: the constructor cTypDescriptor(fileName, writeFlag, outputName).
/// @return a handle, also for a file that does not load (ask typdescriptor_getStatus()); null without memory for it
TYPDESCRIPTOR_C_API typdescriptor_device* typdescriptor_open(const char* fileName, int writeFlag,
                                                             const char* outputName);
/// Builds the type-file image from a host record: the constructor cTypDescriptor(record).
/// @return as typdescriptor_open()
TYPDESCRIPTOR_C_API typdescriptor_device* typdescriptor_openRecord(const TYPEFILE_COM_QX410* record);
/// Takes back a descriptor object image: the constructor cTypDescriptor(size, data).
/// @return as typdescriptor_open()
TYPDESCRIPTOR_C_API typdescriptor_device* typdescriptor_openObject(unsigned short size, char* data);
/// Ends a handle and frees what it owns; a null handle is left alone.
TYPDESCRIPTOR_C_API void typdescriptor_close(typdescriptor_device* device);
/// The sentence of a result code: resultText().
/// @return a static text, never null
TYPDESCRIPTOR_C_API const char* typdescriptor_resultText(int code);

/// @}
/// @name Construction and status
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getStatus(const typdescriptor_device* device);

/// @}
/// @name Results of a GSD compilation
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getGsdErrLineNr(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getGsdCntOfWarnings(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API void typdescriptor_getGsdWarnings(const typdescriptor_device* device, char* dst);
TYPDESCRIPTOR_C_API int typdescriptor_getGsdRevision(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API void typdescriptor_getGsdFoundMandatories(const typdescriptor_device* device, unsigned char* dst);

/// @}
/// @name Validation
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_checkTypeFileContents(typdescriptor_device* device);

/// @}
/// @name Host record and object image
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getCOMTypeData(typdescriptor_device* device, TYPEFILE_COM_QX410* record);
TYPDESCRIPTOR_C_API unsigned short typdescriptor_getDataSize(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_writeObject(const typdescriptor_device* device, char* buffer);

/// @}
/// @name Output
/// @{

TYPDESCRIPTOR_C_API unsigned short typdescriptor_writeTypeFile(typdescriptor_device* device, const char* path);
TYPDESCRIPTOR_C_API int typdescriptor_changeTypeFilePossible(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API unsigned short typdescriptor_getMLFBstring(typdescriptor_device* device, char* text);

/// @}
/// @name Header and type data
/// @{

TYPDESCRIPTOR_C_API unsigned short typdescriptor_getSlaveTypeHeader(const typdescriptor_device* device,
                                                                    SLAVE_TYPE_HEADER_INFO* record);
TYPDESCRIPTOR_C_API unsigned short typdescriptor_getSlaveTypeData(const typdescriptor_device* device,
                                                                  SLAVE_TYPEDATA_TYPE* record);
TYPDESCRIPTOR_C_API int typdescriptor_getFamily(const typdescriptor_device* device, char* text);
TYPDESCRIPTOR_C_API int typdescriptor_getBitMapFileName(const typdescriptor_device* device, char* name);
TYPDESCRIPTOR_C_API int typdescriptor_getDLLFileName(const typdescriptor_device* device, char* name);
TYPDESCRIPTOR_C_API int typdescriptor_getSlotOffset(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_isModular(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_isKonfigFixed(const typdescriptor_device* device, int* count);
TYPDESCRIPTOR_C_API int typdescriptor_isPresetKonfigFixed(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getFixedSlotId(const typdescriptor_device* device, int index,
                                                     CSLAVE_SLOT_PRESET_TYPE* preset);
TYPDESCRIPTOR_C_API int typdescriptor_getFixedSlotItem(const typdescriptor_device* device, int index, MLFB_ITEM* item);
TYPDESCRIPTOR_C_API int typdescriptor_getSlotNumbering(const typdescriptor_device* device,
                                                       SLOT_NUMBERING_TYPE* numbering);
TYPDESCRIPTOR_C_API int typdescriptor_getMaxSPBlockLen(const typdescriptor_device* device);

/// @}
/// @name Diagnostic texts
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getSlaveDiagMsgCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getSlaveDiagMsg(const typdescriptor_device* device, int byteHigh, int byteLow,
                                                      int bit, SLAVE_DIAG_TYPE* message);
TYPDESCRIPTOR_C_API int typdescriptor_getSlaveBGrDiagMsgCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getSlaveBGrDiagMsg(const typdescriptor_device* device, int index,
                                                         SLAVE_BGR_DIAG_TYPE* message);
TYPDESCRIPTOR_C_API int typdescriptor_getChannelDiagMsgCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getChannelDiagMsg(const typdescriptor_device* device, int errorType, char* text);

/// @}
/// @name Order-number list and module lists
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getMLFBListCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getMLFBListItem(const typdescriptor_device* device, int index, MLFB_ITEM* item);
TYPDESCRIPTOR_C_API int typdescriptor_getLSKCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getLSKText(const typdescriptor_device* device, int index, char* text);
TYPDESCRIPTOR_C_API int typdescriptor_getSKListCnt(const typdescriptor_device* device, int index, int* vFlag);
TYPDESCRIPTOR_C_API int typdescriptor_getSKListItem(const typdescriptor_device* device, int index, int item,
                                                    LSK_ITEM* entry);

/// @}
/// @name Parameters
/// @{

TYPDESCRIPTOR_C_API int typdescriptor_getParaStructCnt(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getParaStruct(const typdescriptor_device* device, int index, _parastruct* entry);
TYPDESCRIPTOR_C_API int typdescriptor_getStructuredSlotParameterCnt(const typdescriptor_device* device, int block);
TYPDESCRIPTOR_C_API int typdescriptor_getStructuredSlotParameter(const typdescriptor_device* device, int block,
                                                                 int index, _parastruct* entry);
TYPDESCRIPTOR_C_API int typdescriptor_getSlotParameters(const typdescriptor_device* device, int index,
                                                        unsigned char* bytes, int* length);
TYPDESCRIPTOR_C_API int typdescriptor_hasSPBlockThisKeyWord(typdescriptor_device* device, KEYWORD_TYPE* keyword,
                                                            int index, int which);
TYPDESCRIPTOR_C_API int typdescriptor_getHelpMessageCnt(const typdescriptor_device* device, int block);
TYPDESCRIPTOR_C_API int typdescriptor_getParaHelpMessage(const typdescriptor_device* device, int block, int line,
                                                         PARA_HELPMESSAGE_TYPE* message);
TYPDESCRIPTOR_C_API int typdescriptor_getSPHelpCnt(const typdescriptor_device* device, int block);
TYPDESCRIPTOR_C_API int typdescriptor_getSPHelpItem(const typdescriptor_device* device, int block, int line,
                                                    PARA_HELPMESSAGE_TYPE* message);
TYPDESCRIPTOR_C_API int typdescriptor_getSPBlockAnz(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getSPHelpAnz(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getPSLHelpAnz(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_getPSLHelpRef(const typdescriptor_device* device, int i);
TYPDESCRIPTOR_C_API int typdescriptor_isMLFBModeP36(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API int typdescriptor_isP36KY(const typdescriptor_device* device);
TYPDESCRIPTOR_C_API char* typdescriptor_getDKMPos(const typdescriptor_device* device);

/// @}

#ifdef __cplusplus
}
#endif

#endif
