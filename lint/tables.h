#pragma once

// The tables that together are all rules. Each stands with its rules in a file of its own.

#include "lint/rule.h"

namespace typdescriptor::lint {

std::span<const Rule> encodingRules();
std::span<const Rule> lineRules();
std::span<const Rule> keywordRules();
std::span<const Rule> valueRules();
std::span<const Rule> mandatoryRules();

inline constexpr std::span<const Rule> (*kRuleTables[])() = {
    encodingRules, lineRules, keywordRules, valueRules, mandatoryRules,
};

} // namespace typdescriptor::lint
