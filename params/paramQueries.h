// Queries about parameters and their help texts; cTypDescriptor.h says what each answers. Of a descriptor that is not
// loaded they get a type file in which nothing was found.

#pragma once

#include "typefile/typeFile.h"

namespace typdescriptor::internal {

int getParaStruct(const TypeFile& file, int index, _parastruct* entry);
int getStructuredSlotParameterCnt(const TypeFile& file, int block);
int getStructuredSlotParameter(const TypeFile& file, int block, int index, _parastruct* entry);
int getSlotParameters(const TypeFile& file, int index, unsigned char* bytes, int* length);
/// Moves the search for keyword records on.
int hasSPBlockThisKeyWord(TypeFile& file, KEYWORD_TYPE* keyword, int index, int which);

int getPSLHelpRef(const TypeFile& file, int i);
int getHelpMessageCnt(const TypeFile& file, int block);
int getParaHelpMessage(const TypeFile& file, int block, int line, PARA_HELPMESSAGE_TYPE* message);
int getSPHelpCnt(const TypeFile& file, int block);
int getSPHelpItem(const TypeFile& file, int block, int line, PARA_HELPMESSAGE_TYPE* message);

} // namespace typdescriptor::internal
