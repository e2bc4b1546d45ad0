// Plans, what becomes of them, and what captured telegrams say.

#include "bindings.h"

#include "host/configuration.h"
#include "host/json.h"
#include "host/readBack.h"

#include <map>
#include <optional>
#include <utility>
#include <variant>

namespace py = pybind11;
using namespace typdescriptor;
using namespace pybind11::literals;

namespace {

using Value = std::variant<std::int64_t, std::string>;
using Modules = std::map<unsigned, std::string>;                  // by slot
using Values = std::map<std::pair<unsigned, std::string>, Value>; // by slot and parameter

std::string textOf(const Value& value)
{
    const auto* number = std::get_if<std::int64_t>(&value);
    return number != nullptr ? std::to_string(*number) : std::get<std::string>(value);
}

void addChoices(Plan& plan, const Modules& modules, const Values& values)
{
    for (const auto& [slot, module] : modules)
        plan.modules.push_back({slot, module});
    for (const auto& [place, value] : values)
        plan.values.push_back({place.first, place.second, textOf(value)});
}

template <class SlotType>
const char* originOf(const SlotType& slot)
{
    return originName(slot.origin);
}

/// The bytes of a telegram, and where each comes from.
void addTelegram(ValueClass<Configuration>& type, const char* name, const char* sources,
                 std::vector<TelegramByte> Configuration::*member, const char* doc)
{
    type.derived(
        name, [member](const Configuration& self) { return bytesOf(valuesOf(self.*member)); }, doc);
    type.items(sources, member, "its bytes with where they come from");
}

void bindPlan(py::module_& module)
{
    py::class_<StandardParameters>(module, "StandardParameters", "The seven bytes ahead of the user parameters.")
        .def_readwrite("watchdog_milliseconds", &StandardParameters::watchdogMilliseconds, "0: the watchdog is off")
        .def_readwrite("min_tsdr", &StandardParameters::minTsdr, "in bit times, 11 to 255, or 0 to leave it as it is")
        .def_readwrite("groups", &StandardParameters::groups, "one bit each for groups 1 to 8")
        .def_readwrite("is_sync", &StandardParameters::isSync)
        .def_readwrite("is_freeze", &StandardParameters::isFreeze)
        .def_readwrite("is_locked", &StandardParameters::isLocked, "for other masters");
    py::class_<Plan>(module, "Plan", "What a person decides about a slave. Slots count from 1; 0 is the station.")
        .def(py::init([](const Modules& modules, const Values& values) {
                 Plan plan;
                 addChoices(plan, modules, values);
                 return plan;
             }),
             "modules"_a = Modules(), "values"_a = Values())
        .def_readwrite("standard", &Plan::standard)
        .def_property_readonly(
            "modules",
            [](const Plan& self) {
                py::list choices;
                for (const ModuleChoice& choice : self.modules)
                    choices.append(py::make_tuple(choice.slot, choice.module));
                return py::tuple(choices);
            },
            "slot and module of each choice")
        .def_property_readonly(
            "values",
            [](const Plan& self) {
                py::list choices;
                for (const ValueChoice& choice : self.values)
                    choices.append(py::make_tuple(choice.slot, choice.parameter, choice.value));
                return py::tuple(choices);
            },
            "slot, parameter and value of each choice")
        .def(
            "plug",
            [](Plan& self, unsigned slot, std::string name) {
                self.modules.push_back({slot, std::move(name)});
            },
            "slot"_a, "module"_a, "Chooses a module by its name, the beginning of it, or \"#n\" in the device's list.")
        .def(
            "set",
            [](Plan& self, unsigned slot, std::string parameter, const Value& value) {
                self.values.push_back({slot, std::move(parameter), textOf(value)});
            },
            "slot"_a, "parameter"_a, "value"_a, "Chooses a value: a number or one of the parameter's value texts.")
        .def(
            "to_json", [](const Plan& self, const Device& device) { return toJson(self, device); }, "device"_a)
        .def_static("from_json", &planFromJson, "text"_a, "device"_a, "Raises ChoiceError.");
}

void bindTelegrams(py::module_& module)
{
    ValueClass<TelegramByte>(module, "TelegramByte")
        .value("value", &TelegramByte::value)
        .value("slot", &TelegramByte::slot, "0 for the station")
        .value("source", &TelegramByte::source);
    ValueClass<Refusal>(module, "Refusal", "What cannot be, or is not allowed.")
        .value("name", &Refusal::name, "stable, for programs")
        .value("text", &Refusal::text)
        .value("slot", &Refusal::slot, "0 for the station, None where it is not about one")
        .value("parameter", &Refusal::parameter)
        .value("value", &Refusal::value)
        .value("allowed", &Refusal::allowed)
        .def("__str__", [](const Refusal& self) { return self.text; });
    ValueClass<Slot>(module, "Slot", "A slot with what is in it.")
        .value("name", &Slot::name, "of what is in it")
        .value("slot_name", &Slot::slotName, "of the place itself, from a GSD file; often empty")
        .derived("origin", originOf<Slot>, "free, preset or chosen")
        .value("is_fixed", &Slot::isFixed)
        .value("module", &Slot::module, "index in Device.modules")
        .items("identifiers", &Slot::identifiers)
        .items("blocks", &Slot::blocks);
    ValueClass<Configuration> configuration(module, "Configuration",
                                            "Both telegrams of a slave, and what is wrong with them.");
    addTelegram(configuration, "set_prm", "set_prm_bytes", &Configuration::parameters, "the whole parameter telegram");
    addTelegram(configuration, "user_prm", "user_prm_bytes", &Configuration::userParameters,
                "the parameter telegram behind its 7 standard bytes");
    addTelegram(configuration, "chk_cfg", "chk_cfg_bytes", &Configuration::configuration, "the configuration telegram");
    configuration.items("slots", &Configuration::slots)
        .value("input_bytes", &Configuration::inputBytes)
        .value("output_bytes", &Configuration::outputBytes)
        .derived("notes", [](const Configuration& self) { return py::tuple(py::cast(self.notes)); })
        .items("problems", &Configuration::refusals, "what the device does not allow")
        .def("__repr__", [](const Configuration& self) {
            return "<Configuration of " + std::to_string(self.slots.size()) + " slots, " +
                   std::to_string(self.problems.size()) + " problems>";
        });
    addJson(configuration, [](const Configuration& self) { return toJson(self); });
}

void bindCapture(py::module_& module)
{
    ValueClass<CapturedValue>(module, "CapturedValue")
        .value("parameter", &CapturedValue::parameter)
        .value("value", &CapturedValue::value)
        .value("text", &CapturedValue::text)
        .value("is_default", &CapturedValue::isDefault)
        .value("is_allowed", &CapturedValue::isAllowed);
    ValueClass<CapturedSlot>(module, "CapturedSlot")
        .value("name", &CapturedSlot::name, "empty when no module has these identifiers")
        .derived("origin", originOf<CapturedSlot>, "free, preset or chosen")
        .value("module", &CapturedSlot::module, "index in Device.modules")
        .derived(
            "alternatives", [](const CapturedSlot& self) { return py::tuple(py::cast(self.alternatives)); },
            "modules that would give the same bytes")
        .items("identifiers", &CapturedSlot::identifiers)
        .items("values", &CapturedSlot::values);
    ValueClass<Difference>(module, "Difference", "What a capture has otherwise than it was planned.")
        .value("name", &Difference::name)
        .value("text", &Difference::text)
        .value("slot", &Difference::slot)
        .value("parameter", &Difference::parameter)
        .value("planned", &Difference::planned)
        .value("captured", &Difference::captured)
        .def("__str__", [](const Difference& self) { return self.text; });
    ValueClass<Capture>(module, "Capture", "What captured telegrams of a master say.")
        .value("standard", &Capture::standard)
        .value("ident_number", &Capture::identNumber)
        .items("station_values", &Capture::stationValues)
        .items("slots", &Capture::slots)
        .value("plan", &Capture::plan, "makes the same telegrams, as far as there are no problems")
        .derived("notes", [](const Capture& self) { return py::tuple(py::cast(self.notes)); })
        .items("problems", &Capture::problems);
}

} // namespace

void bindConfiguration(py::module_& module, ValueClass<Device>& device)
{
    bindPlan(module);
    bindTelegrams(module);
    bindCapture(module);
    device.def(
        "configure",
        [](const Device& self, const Plan& plan, const Modules& modules, const Values& values) {
            Plan whole = plan;
            addChoices(whole, modules, values);
            return configure(self, whole);
        },
        "plan"_a = Plan(), py::kw_only(), "modules"_a = Modules(), "values"_a = Values(),
        "Both telegrams of a plan, or of modules by slot and values by slot and parameter. Raises ChoiceError.");
    device.def(
        "read_back",
        [](const Device& self, const py::bytes& chkCfg, const py::bytes& setPrm, const Configuration* planned) {
            return readBack(self, {bytesFrom(chkCfg), bytesFrom(setPrm)}, planned);
        },
        py::kw_only(), "chk_cfg"_a = py::bytes(), "set_prm"_a = py::bytes(), "planned"_a = nullptr,
        "Modules and parameter values out of captured telegrams. Raises ChoiceError.");
    device.def(
        "differences",
        [](const Device& self, const Configuration& planned, const Capture& capture) {
            return py::tuple(py::cast(differencesOf(self, planned, capture)));
        },
        "planned"_a, "capture"_a, "What of a capture is otherwise than planned.");
}
