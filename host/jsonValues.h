// Devices, configurations, captured telegrams and diagnoses as JSON values, for code of this tree; host/json.h is for hosts.

#pragma once

#include "host/configuration.h"
#include "host/device.h"
#include "host/diagnosis.h"
#include "host/readBack.h"

#include <nlohmann/json.hpp>

#include <string>

namespace typdescriptor {

/// A list of anything, each item by its function.
template <class List, class Function>
nlohmann::ordered_json listJson(const List& list, Function function)
{
    auto json = nlohmann::ordered_json::array();
    for (const auto& item : list)
        json.push_back(function(item));
    return json;
}

/// One section of a device: an object or an array.
nlohmann::ordered_json sectionJson(const Device& device, const std::string& section);
nlohmann::ordered_json identifierJson(const Identifier& identifier);
nlohmann::ordered_json configurationJson(const Configuration& configuration);
nlohmann::ordered_json refusalJson(const Refusal& refusal);
nlohmann::ordered_json planJson(const Plan& plan, const Device& device);
nlohmann::ordered_json captureJson(const Device& device, const Capture& capture, const Configuration* planned);
nlohmann::ordered_json diagnosisJson(const Diagnosis& diagnosis);

} // namespace typdescriptor
