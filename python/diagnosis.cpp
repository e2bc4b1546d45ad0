// Diagnoses as Python objects.

#include "bindings.h"

#include "host/diagnosis.h"
#include "host/json.h"

namespace py = pybind11;
using namespace typdescriptor;
using namespace pybind11::literals;

namespace {

void bindEntries(py::module_& module)
{
    ValueClass<DiagnosisState>(module, "DiagnosisState", "Something that an answer says, or that is wrong with it.")
        .value("name", &DiagnosisState::name, "stable, for programs")
        .value("text", &DiagnosisState::text)
        .value("offset", &DiagnosisState::offset, "of the first byte it comes from")
        .value("byte_count", &DiagnosisState::byteCount)
        .def("__str__", [](const DiagnosisState& self) { return self.text; })
        .def("__repr__", [](const DiagnosisState& self) { return "<DiagnosisState " + self.name + '>'; });
    ValueClass<DeviceEntry>(module, "DeviceEntry", "A bit or an area of the device-related diagnosis.")
        .value("byte", &DeviceEntry::byte, "behind the header byte, from 1")
        .value("offset", &DeviceEntry::offset, "of that byte in the answer")
        .value("first_bit", &DeviceEntry::firstBit)
        .value("last_bit", &DeviceEntry::lastBit)
        .value("value", &DeviceEntry::value)
        .value("text", &DeviceEntry::text)
        .value("help", &DeviceEntry::help);
    ValueClass<IdentifierPlace>(module, "IdentifierPlace")
        .value("identifier", &IdentifierPlace::identifier, "from 0")
        .value("slot", &IdentifierPlace::slot, "from 1; 0 when not known")
        .value("module", &IdentifierPlace::module)
        .value("slot_name", &IdentifierPlace::slotName);
    ValueClass<ChannelEntry>(module, "ChannelEntry")
        .value("place", &ChannelEntry::place)
        .value("channel", &ChannelEntry::channel)
        .value("error_type", &ChannelEntry::errorType)
        .value("name", &ChannelEntry::name)
        .value("direction", &ChannelEntry::direction)
        .value("unit", &ChannelEntry::unit)
        .value("text", &ChannelEntry::text)
        .value("help", &ChannelEntry::help);
    ValueClass<Dpv1Entry>(module, "Dpv1Entry", "The head of a DPV1 alarm or status.")
        .value("type", &Dpv1Entry::type)
        .value("name", &Dpv1Entry::name)
        .value("text", &Dpv1Entry::text)
        .value("slot", &Dpv1Entry::slot, "0 for the station")
        .value("module", &Dpv1Entry::module)
        .value("slot_name", &Dpv1Entry::slotName)
        .value("specifier", &Dpv1Entry::specifier)
        .value("specifier_text", &Dpv1Entry::specifierText)
        .value("sequence", &Dpv1Entry::sequence)
        .value("wants_acknowledgement", &Dpv1Entry::wantsAcknowledgement)
        .bytes("user_data", &Dpv1Entry::userData);
    ValueClass<ModuleState>(module, "ModuleState", "The state of one slot's module.")
        .value("slot", &ModuleState::slot)
        .value("module", &ModuleState::module)
        .value("slot_name", &ModuleState::slotName)
        .value("name", &ModuleState::name)
        .value("text", &ModuleState::text);
    ValueClass<LinkState>(module, "LinkState", "One publisher of a link status.")
        .value("publisher", &LinkState::publisher)
        .value("is_active", &LinkState::isActive)
        .value("has_wrong_length", &LinkState::hasWrongLength);
}

} // namespace

void bindDiagnosis(py::module_& module, ValueClass<Device>& device)
{
    bindEntries(module);
    ValueClass<DiagnosisBlock>(module, "DiagnosisBlock")
        .derived(
            "kind", [](const DiagnosisBlock& self) { return kindName(self.kind); },
            "device, identifier, channel, revision, alarm, status, moduleStatus, linkStatus")
        .value("offset", &DiagnosisBlock::offset, "of its header byte")
        .bytes("bytes", &DiagnosisBlock::bytes)
        .items("device", &DiagnosisBlock::device)
        .items("identifiers", &DiagnosisBlock::identifiers)
        .value("channel", &DiagnosisBlock::channel)
        .value("dpv1", &DiagnosisBlock::dpv1)
        .items("modules", &DiagnosisBlock::modules)
        .items("links", &DiagnosisBlock::links)
        .value("revision", &DiagnosisBlock::revision);
    ValueClass<StationStatus>(module, "StationStatus")
        .value("is_present", &StationStatus::isPresent)
        .items("states", &StationStatus::states)
        .value("master", &StationStatus::master, "bus address, or None")
        .value("ident_number", &StationStatus::identNumber);
    ValueClass<Diagnosis> diagnosis(module, "Diagnosis", "A diagnostic answer, explained.");
    diagnosis.bytes("telegram", &Diagnosis::telegram)
        .value("station", &Diagnosis::station)
        .items("blocks", &Diagnosis::blocks)
        .items("notes", &Diagnosis::notes)
        .items("problems", &Diagnosis::problems);
    addJson(diagnosis, [](const Diagnosis& self) { return toJson(self); });
    device.def(
        "explain",
        [](const Device& self, const py::bytes& answer, const Configuration* configuration,
           std::optional<bool> isDpv1) {
            return explainDiagnosis(self, bytesFrom(answer), {isDpv1, configuration});
        },
        "answer"_a, "configuration"_a = nullptr, py::kw_only(), "is_dpv1"_a = py::none(),
        "A diagnostic answer block by block; with a configuration the modules by name.");
}
