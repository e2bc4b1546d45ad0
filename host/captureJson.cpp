#include "host/jsonValues.h"

namespace typdescriptor {

using Json = nlohmann::ordered_json;

namespace {

Json valueJson(const CapturedValue& value)
{
    return {{"parameter", value.parameter},
            {"value", value.value},
            {"text", value.text},
            {"default", value.isDefault},
            {"allowed", value.isAllowed}};
}

Json slotsJson(const std::vector<CapturedSlot>& slots)
{
    Json list = Json::array();
    for (const CapturedSlot& slot : slots)
        list.push_back({{"slot", list.size() + 1},
                        {"name", slot.name},
                        {"origin", originName(slot.origin)},
                        {"module", slot.module ? Json(*slot.module + 1) : Json()},
                        {"alternatives", slot.alternatives},
                        {"identifiers", listJson(slot.identifiers, identifierJson)},
                        {"values", listJson(slot.values, valueJson)}});
    return list;
}

Json differenceJson(const Difference& difference)
{
    return {{"name", difference.name},           {"text", difference.text},       {"slot", difference.slot},
            {"parameter", difference.parameter}, {"planned", difference.planned}, {"captured", difference.captured}};
}

} // namespace

Json captureJson(const Device& device, const Capture& capture, const Configuration* planned)
{
    return {{"identNumber", capture.identNumber ? Json(*capture.identNumber) : Json()},
            {"standard", capture.standard ? planJson(capture.plan, device)["standard"] : Json()},
            {"stationValues", listJson(capture.stationValues, valueJson)},
            {"slots", slotsJson(capture.slots)},
            {"plan", planJson(capture.plan, device)},
            {"notes", capture.notes},
            {"problems", listJson(capture.problems, refusalJson)},
            {"differences",
             planned == nullptr ? Json() : listJson(differencesOf(device, *planned, capture), differenceJson)}};
}

} // namespace typdescriptor
