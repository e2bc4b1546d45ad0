// Reports as text for people: `file:line:column: error: message [rule] (code)`, then the line with the place marked, the
// other places that belong to it in the same way, and what would mend it.

#pragma once

#include "tools/checkedFile.h"

#include <string>

/// @param columns  of the terminal; 0 when there is none
std::string reportText(const FileReport& report, bool inColour, std::size_t columns = 0);
/// For example "9 files: 3 ok, 6 with warnings, 0 failed; 14 warnings, 2 hints".
std::string totalsText(const Totals& totals);

/// One finding for GitHub's log of a build, which shows it at its line in a change: `::error file=...::message`.
std::string githubText(const FileReport& report);
