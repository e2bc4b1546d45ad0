// Findings as text for people: `file:line: error: sentence (code)`, then the line with its keyword underlined.

#pragma once

#include "tools/finding.h"

std::string findingText(const std::string& file, const Finding& finding, bool inColour);
std::string findingsText(const FileReport& report, bool inColour);
/// For example "9 files: 3 ok, 6 with warnings, 0 failed".
std::string totalsText(const Totals& totals);
/// The sentence of a finding with its detail, without the code.
std::string sentenceOf(const Finding& finding);
