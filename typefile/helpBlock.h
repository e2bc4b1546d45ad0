// Help blocks: the values that a structured parameter may take, each with its text.

#pragma once

#include "typefile/scan.h"

namespace typdescriptor::internal {

struct HelpBlock;

/// @param p      the block, moved behind it; its texts stay in the image
/// @param block  receives its number, the number of its lines and where they begin
/// @return 0 or kErrHelpBlock
int checkHelpBlock(Cursor& p, HelpBlock& block);

} // namespace typdescriptor::internal
