// Findings for programs: JSON of our own, and SARIF 2.1.0 for editors and code-review systems.

#pragma once

#include "tools/finding.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

nlohmann::ordered_json findingsJson(const std::vector<FileReport>& reports, const Totals& totals);
nlohmann::ordered_json sarif(const std::vector<FileReport>& reports);

/// JSON as text; a byte that is not UTF-8, in a file name say, is replaced.
std::string jsonText(const nlohmann::ordered_json& json);
/// The path of a file as a reference of a URI: percent-encoded.
std::string uriOf(const std::string& path);
