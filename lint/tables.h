#pragma once

// The tables that together are all rules. Each stands with its rules in a file of its own.

#include "lint/rule.h"

namespace typdescriptor::lint {

std::span<const Rule> encodingRules();
std::span<const Rule> lineRules();
std::span<const Rule> keywordRules();
std::span<const Rule> valueRules();
std::span<const Rule> mandatoryRules();
std::span<const Rule> stationRules();
std::span<const Rule> serviceRules();
std::span<const Rule> moduleRules();
std::span<const Rule> slotRules();
std::span<const Rule> definitionRules();
std::span<const Rule> parameterRules();
std::span<const Rule> diagnosisRules();
std::span<const Rule> libraryRules(); // last: they look at what the others found
std::span<const Rule> typeFileRules();

inline constexpr std::span<const Rule> (*kRuleTables[])() = {
    encodingRules, lineRules, keywordRules,    valueRules,     mandatoryRules, stationRules, serviceRules,
    moduleRules,   slotRules, definitionRules, parameterRules, diagnosisRules, libraryRules, typeFileRules,
};

} // namespace typdescriptor::lint
