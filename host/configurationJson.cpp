#include "host/hexBytes.h"
#include "host/jsonValues.h"

#include <nlohmann/json.hpp>

namespace typdescriptor {

using Json = nlohmann::ordered_json;

namespace {

template <class Value>
Json knownJson(const std::optional<Value>& value)
{
    return value ? Json(*value) : Json();
}

Json telegramJson(const std::vector<TelegramByte>& telegram)
{
    Json bytes = Json::array();
    for (const TelegramByte& byte : telegram)
        bytes.push_back({{"value", byte.value}, {"slot", byte.slot}, {"source", byte.source}});
    return {{"hex", asHex(valuesOf(telegram))}, {"bytes", bytes}};
}

} // namespace

Json refusalJson(const Refusal& refusal)
{
    return {{"name", refusal.name},           {"text", refusal.text},   {"slot", knownJson(refusal.slot)},
            {"parameter", refusal.parameter}, {"value", refusal.value}, {"allowed", refusal.allowed}};
}

Json configurationJson(const Configuration& configuration)
{
    Json slots = Json::array();
    for (const Slot& slot : configuration.slots)
        slots.push_back({{"slot", slots.size() + 1},
                         {"name", slot.name},
                         {"slotName", slot.slotName},
                         {"module", slot.module ? Json(*slot.module + 1) : Json()},
                         {"origin", originName(slot.origin)},
                         {"fixed", slot.isFixed}});
    return {{"slots", slots},
            {"inputBytes", configuration.inputBytes},
            {"outputBytes", configuration.outputBytes},
            {"parameters", telegramJson(configuration.parameters)},
            {"userParameters", telegramJson(configuration.userParameters)},
            {"configuration", telegramJson(configuration.configuration)},
            {"notes", configuration.notes},
            {"problems", configuration.problems},
            {"refusals", listJson(configuration.refusals, refusalJson)}};
}

} // namespace typdescriptor
