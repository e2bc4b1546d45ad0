// Splitting a module's configuration bytes into identifiers.

#pragma once

#include "generator/elements.h"

namespace typdescriptor::internal {

/// Counts the module's identifiers in its configuration bytes. The two length bytes of a special identifier are
/// exchanged for good, so that the module keeps the input length first, the reverse of the GSD.
/// @param multiIdentifierModuleSeen  set when the module has two or more identifiers, else left as it is
/// @return 0, or kErrGsdConfiguration when the bytes do not decode exactly
int splitModuleConfig(GSD_MODULE& module, bool& multiIdentifierModuleSeen);

} // namespace typdescriptor::internal
