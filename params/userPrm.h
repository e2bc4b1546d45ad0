// The station's own user parameters: the preset bytes, the structured parameters that name fields inside them, and the
// help blocks that name those fields' values.

#pragma once

#include "typefile/typeFile.h"

namespace typdescriptor::internal {

/// @param p  the section, moved behind it
/// @return 0 or the code of the first thing that is wrong
int checkUserPara(Cursor& p, TypeFile& file);

} // namespace typdescriptor::internal
