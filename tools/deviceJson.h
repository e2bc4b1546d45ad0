// The device as JSON. The names are documented in tools/JSON.md and stay as they are.

#pragma once

#include "tools/device.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

/// One section of sectionNames() as JSON: an object or an array.
nlohmann::ordered_json sectionJson(const Device& device, const std::string& section);

nlohmann::ordered_json identifierJson(const Identifier& identifier);
