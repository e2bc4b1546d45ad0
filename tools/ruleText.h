// The rules as text for people, made from their rows, and the choice among them.

#pragma once

#include "lint/rule.h"

#include <stdexcept>
#include <string>
#include <vector>

/// One line for each rule: name, severity, sentence, by groups.
std::string rulesText(bool inColour);
/// A page on one rule, or on all of them when there is no name. As Markdown, which reads well as it is.
/// @exception UnknownRule
std::string explanationText(const std::string& name);

/// No rule and no group has that name; the message says which one may be meant.
struct UnknownRule : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The rules that do not run.
/// @param choices  NAME or no-NAME of a rule or a group of rules, a later one before an earlier one
/// @exception UnknownRule
std::vector<const typdescriptor::lint::Rule*> leftOutRules(const std::vector<std::string>& choices);
