// The J/N flags of the header and of the type data.

#pragma once

#include "typefile/scan.h"

namespace typdescriptor::internal {

/// 'J' gives 1, 'N' 0, anything else -1.
constexpr int checkJNChar(char c)
{
    return toUpper(c) == 'J' ? 1 : toUpper(c) == 'N' ? 0 : -1;
}

} // namespace typdescriptor::internal
