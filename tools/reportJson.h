// Reports for programs: JSON of our own, and SARIF 2.1.0 for editors and code-review systems.
//
// The part of a file is made as soon as the file is checked, and the parts are put together at the end.

#pragma once

#include "tools/checkedFile.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

/// One report as an element of `files`.
nlohmann::ordered_json fileJson(const FileReport& report);
nlohmann::ordered_json reportJson(std::vector<nlohmann::ordered_json> files, const Totals& totals);

/// The findings of one report as SARIF results.
nlohmann::ordered_json sarifResults(const FileReport& report);
/// @param files     the results of each
/// @param problems  what could not be read, a sentence each
nlohmann::ordered_json sarifLog(std::vector<nlohmann::ordered_json> files, const std::vector<std::string>& problems);

/// All rules, for programs that show them.
nlohmann::ordered_json rulesJson();

/// JSON as text; a byte that is not UTF-8, in a file name say, is replaced.
std::string jsonText(const nlohmann::ordered_json& json);
/// The path of a file as a reference of a URI: percent-encoded.
std::string uriOf(const std::string& path);
