// Modules with equal parameter blocks share one block of the type file.

#pragma once

#include "generator/model.h"

namespace typdescriptor::internal {

/// Whether two modules have the same parameter image and the same placements.
bool samePrmBlock(const GSD_MODULE_PRM& a, const GSD_MODULE_PRM& b);

/// Gives every module whose parameter block equals that of an earlier Module that one's number, and closes the gaps
/// that this leaves in the numbers of the Module list. The modules of the KGP list share blocks with those of the
/// Module list too, but keep their own numbers when a gap is closed.
void sharePrmBlocks(GsdModel& model);

} // namespace typdescriptor::internal
