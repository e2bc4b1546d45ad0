// Queries about header and type data, diagnostic texts, order numbers and module lists; cTypDescriptor.h says what each
// answers. Of a descriptor that is not loaded they get a type file in which nothing was found.

#pragma once

#include "typefile/typeFile.h"

namespace typdescriptor::internal {

int getFamily(const TypeFile& file, char* text);
int getBitMapFileName(const TypeFile& file, char* name);
int getDLLFileName(const TypeFile& file, char* name);
int isKonfigFixed(const TypeFile& file, int* count);
int isPresetKonfigFixed(const TypeFile& file);
int getFixedSlotId(const TypeFile& file, int index, CSLAVE_SLOT_PRESET_TYPE* preset);
int getFixedSlotId(const TypeFile& file, int index, MLFB_ITEM* item);
int getSlotNumbering(const TypeFile& file, SLOT_NUMBERING_TYPE* numbering);

int getSlaveDiagMsg(const TypeFile& file, int byteHigh, int byteLow, int bit, SLAVE_DIAG_TYPE* message);
int getSlaveBGrDiagMsg(const TypeFile& file, int index, SLAVE_BGR_DIAG_TYPE* message);
int getChannelDiagMsg(const TypeFile& file, int errorType, char* text);

int getMLFBListItem(const TypeFile& file, int index, MLFB_ITEM* item);
int getLSKText(const TypeFile& file, int index, char* text);
int getSKListCnt(const TypeFile& file, int index, int* vFlag);
int getSKListItem(const TypeFile& file, int index, int item, LSK_ITEM* entry);

} // namespace typdescriptor::internal
