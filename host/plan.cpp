#include "host/plan.h"

#include "host/device.h"
#include "host/hexBytes.h"
#include "host/jsonValues.h"

#include <nlohmann/json.hpp>

#include <set>

namespace typdescriptor {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kFormat = "typdescriptor-plan";
constexpr int kVersion = 1;

[[noreturn]] void refuse(const std::string& text)
{
    throw ChoiceError({"wrongPlan", "the plan: " + text});
}

/// A member of an object; the value given when there is none.
template <class Value>
Value member(const Json& object, const char* name, Value otherwise)
{
    const auto found = object.find(name);
    if (found == object.end())
        return otherwise;
    const bool isRight = std::is_same_v<Value, bool>       ? found->is_boolean()
                         : std::is_same_v<Value, unsigned> ? found->is_number_unsigned() && *found <= 0xFFFFFFFFU
                                                           : found->is_string();
    if (!isRight)
        refuse('"' + std::string(name) + "\" is " + found->dump());
    return found->template get<Value>();
}

/// The objects of a list that may be missing.
std::vector<Json> objectsIn(const Json& plan, const char* name)
{
    const auto found = plan.find(name);
    if (found == plan.end())
        return {};
    if (!found->is_array())
        refuse('"' + std::string(name) + "\" is no list");
    for (const Json& entry : *found) {
        if (!entry.is_object())
            refuse('"' + std::string(name) + "\" holds " + entry.dump());
    }
    return {found->begin(), found->end()};
}

/// A misspelt member would be lost without a word.
void refuseOthers(const Json& object, const std::set<std::string>& known)
{
    for (const auto& entry : object.items()) {
        if (!known.contains(entry.key()))
            refuse("there is no \"" + entry.key() + '"');
    }
}

/// One that is left out would be taken for the station's, or for nothing.
void refuseWithout(const Json& object, const std::set<std::string>& needed)
{
    for (const std::string& name : needed) {
        if (!object.contains(name))
            refuse("a choice has no \"" + name + '"');
    }
}

void readStandard(const Json& plan, StandardParameters& standard)
{
    const auto found = plan.find("standard");
    if (found == plan.end())
        return;
    if (!found->is_object())
        refuse("\"standard\" is no object");
    refuseOthers(*found, {"watchdogMilliseconds", "minTsdr", "groups", "sync", "freeze", "locked"});
    standard.watchdogMilliseconds = member(*found, "watchdogMilliseconds", standard.watchdogMilliseconds);
    standard.minTsdr = member(*found, "minTsdr", standard.minTsdr);
    standard.groups = member(*found, "groups", standard.groups);
    standard.isSync = member(*found, "sync", standard.isSync);
    standard.isFreeze = member(*found, "freeze", standard.isFreeze);
    standard.isLocked = member(*found, "locked", standard.isLocked);
}

} // namespace

Json planJson(const Plan& plan, const Device& device)
{
    Json json = {{"format", kFormat},
                 {"version", kVersion},
                 {"identNumber", device.header.identNumber},
                 {"modelName", device.modelName}};
    json["modules"] = Json::array();
    for (const ModuleChoice& choice : plan.modules)
        json["modules"].push_back({{"slot", choice.slot}, {"module", choice.module}});
    json["values"] = Json::array();
    for (const ValueChoice& choice : plan.values)
        json["values"].push_back({{"slot", choice.slot}, {"parameter", choice.parameter}, {"value", choice.value}});
    json["standard"] = {{"watchdogMilliseconds", plan.standard.watchdogMilliseconds},
                        {"minTsdr", plan.standard.minTsdr},
                        {"groups", plan.standard.groups},
                        {"sync", plan.standard.isSync},
                        {"freeze", plan.standard.isFreeze},
                        {"locked", plan.standard.isLocked}};
    return json;
}

std::string toJson(const Plan& plan, const Device& device)
{
    return planJson(plan, device).dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

Plan planFromJson(const std::string& text, const Device& device)
{
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object() || member(json, "format", std::string()) != kFormat)
        refuse("this is no JSON with \"format\": \"" + std::string(kFormat) + '"');
    if (member(json, "version", 0U) != kVersion)
        refuse("its version is not " + std::to_string(kVersion));
    refuseOthers(json, {"format", "version", "identNumber", "modelName", "modules", "values", "standard"});
    const unsigned ident = member(json, "identNumber", 0U);
    if (ident != device.header.identNumber)
        throw ChoiceError({"otherDevice", "the plan: it is for the device with ident number " + hexWord(ident) +
                                              ", this one has " + hexWord(device.header.identNumber)});
    Plan plan;
    for (const Json& entry : objectsIn(json, "modules")) {
        refuseOthers(entry, {"slot", "module"});
        refuseWithout(entry, {"slot", "module"});
        plan.modules.push_back({member(entry, "slot", 0U), member(entry, "module", std::string())});
    }
    for (const Json& entry : objectsIn(json, "values")) {
        refuseOthers(entry, {"slot", "parameter", "value"});
        refuseWithout(entry, {"slot", "parameter", "value"});
        plan.values.push_back({member(entry, "slot", 0U), member(entry, "parameter", std::string()),
                               member(entry, "value", std::string())});
    }
    readStandard(json, plan.standard);
    return plan;
}

} // namespace typdescriptor
