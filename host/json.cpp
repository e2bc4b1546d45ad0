#include "host/json.h"

#include "host/jsonValues.h"

namespace typdescriptor {

namespace {

std::string jsonText(const nlohmann::ordered_json& json)
{
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

std::string toJson(const Device& device)
{
    nlohmann::ordered_json json;
    for (const std::string& section : sectionNames())
        json[section] = sectionJson(device, section);
    return jsonText(json);
}

std::string toJson(const Configuration& configuration)
{
    return jsonText(configurationJson(configuration));
}

std::string toJson(const Device& device, const Capture& capture, const Configuration* planned)
{
    return jsonText(captureJson(device, capture, planned));
}

std::string toJson(const Diagnosis& diagnosis)
{
    return jsonText(diagnosisJson(diagnosis));
}

} // namespace typdescriptor
