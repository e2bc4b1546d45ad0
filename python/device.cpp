// Devices as Python objects.

#include "bindings.h"

#include "host/diagnosis.h"
#include "host/json.h"
#include "host/loadDevice.h"
#include "host/plan.h"

#include <pybind11/stl/filesystem.h>

#include <array>
#include <filesystem>

namespace py = pybind11;
using namespace typdescriptor;
using namespace pybind11::literals;

namespace {

/// A result of the library may be missing: numbers below zero then.
py::object knownBlock(int block)
{
    return block == kNoBlock ? py::object(py::none()) : py::int_(block);
}

std::string nameWithIdent(const Device& device)
{
    constexpr std::size_t kSize = 8;
    std::array<char, kSize> ident{};
    std::snprintf(ident.data(), ident.size(), "0x%04X", static_cast<unsigned>(device.header.identNumber));
    return device.modelName + "' " + ident.data();
}

/// A field of a record: up to its NUL, without the blanks that pad it.
py::str fieldOf(const char* field)
{
    std::string text = field;
    text.erase(text.find_last_not_of(' ') + 1);
    return textOf(text);
}

void bindIdentifiers(py::module_& module)
{
    ValueClass<IoData>(module, "IoData", "The data of one direction.")
        .value("count", &IoData::count, "of bytes or words")
        .value("in_words", &IoData::inWords)
        .value("is_consistent", &IoData::isConsistent, "over the whole length; else unit by unit")
        .derived("bytes", &IoData::bytes);
    ValueClass<Identifier>(module, "Identifier", "What a module exchanges with the master.")
        .derived("format", [](const Identifier& self) { return formatName(self.format); })
        .value("input", &Identifier::input)
        .value("output", &Identifier::output)
        .bytes("manufacturer_bytes", &Identifier::manufacturerBytes)
        .bytes("file_bytes", &Identifier::fileBytes, "as in the type file: the input's length first")
        .bytes("wire_bytes", &Identifier::wireBytes, "as in the configuration telegram: the output's length first")
        .derived("input_bytes", &Identifier::inputBytes)
        .derived("output_bytes", &Identifier::outputBytes)
        .def("__str__", [](const Identifier& self) { return inWords(self); })
        .def("__repr__", [](const Identifier& self) { return "<Identifier " + inWords(self) + '>'; });
}

void bindParameters(py::module_& module)
{
    ValueClass<ValueText>(module, "ValueText", "The text of a value.")
        .value("value", &ValueText::value)
        .value("text", &ValueText::text)
        .value("help", &ValueText::help);
    ValueClass<Parameter>(module, "Parameter", "A parameter that a person can set.")
        .value("name", &Parameter::name)
        .derived(
            "type", [](const Parameter& self) { return typeName(self.type); },
            "bit, binary, bitGroup, uint8, int8, uint16, int16, uint32, int32")
        .value("byte", &Parameter::byte, "in its area, from 0")
        .value("first_bit", &Parameter::firstBit, "of a bit or a bit group")
        .value("bit_count", &Parameter::bitCount)
        .value("default", &Parameter::defaultValue)
        .value("minimum", &Parameter::minimum)
        .value("maximum", &Parameter::maximum)
        .derived(
            "allowed", [](const Parameter& self) { return py::tuple(py::cast(self.allowed)); },
            "single values, where a GSD file lists them; else empty")
        .value("is_changeable", &Parameter::isChangeable)
        .value("is_visible", &Parameter::isVisible)
        .value("may_be_shortened", &Parameter::mayBeShortened, "of a type file, which keeps 32 bits in 16")
        .items("texts", &Parameter::texts)
        .def("allows", &Parameter::allows, "value"_a)
        .def("text_of", &Parameter::textOf, "value"_a, "The text of a value, empty when it has none.")
        .def("__repr__", [](const Parameter& self) {
            return "<Parameter '" + self.name + "' " + self.typeInWords() + ", " + self.allowedInWords() + '>';
        });
    ValueClass<SlotNumberField>(module, "SlotNumberField", "Where a block wants the number of its slot.")
        .value("byte", &SlotNumberField::byte)
        .value("byte_count", &SlotNumberField::byteCount);
    ValueClass<ParameterArea>(module, "ParameterArea", "A run of parameter bytes with the parameters in it.")
        .bytes("bytes", &ParameterArea::bytes, "with the defaults in them")
        .items("parameters", &ParameterArea::parameters)
        .items("slot_numbers", &ParameterArea::slotNumbers);
}

void bindModules(py::module_& module)
{
    ValueClass<ModulePart>(module, "ModulePart", "An identifier of a module, with its parameters.")
        .value("text", &ModulePart::text)
        .value("order_number", &ModulePart::orderNumber)
        .value("identifier", &ModulePart::identifier)
        .derived(
            "block", [](const ModulePart& self) { return knownBlock(self.block); }, "index in Device.blocks");
    ValueClass<KgpModule>(module, "KgpModule", "What a KGP station knows a module by.")
        .value("number", &KgpModule::number)
        .bytes("values", &KgpModule::values);
    ValueClass<Module>(module, "Module", "A module to choose for a slot.")
        .value("name", &Module::name)
        .value("full_name", &Module::fullName, "from a GSD file only, as reference, info_text and channel_texts")
        .value("is_from_order_list", &Module::isFromOrderList, "else from the module lists")
        .value("is_fixed", &Module::isFixed)
        .value("has_safety_parameters", &Module::hasSafetyParameters)
        .items("parts", &Module::parts)
        .value("kgp", &Module::kgp)
        .value("reference", &Module::reference)
        .value("info_text", &Module::infoText)
        .items("channel_texts", &Module::channelTexts)
        .def("__repr__", [](const Module& self) { return "<Module '" + self.name + "'>"; });
    ValueClass<PresetSlot>(module, "PresetSlot", "A slot that has its module from the beginning.")
        .value("name", &PresetSlot::name, "of its module, from a GSD file only")
        .value("order_number", &PresetSlot::orderNumber)
        .value("identifier", &PresetSlot::identifier)
        .derived(
            "block", [](const PresetSlot& self) { return knownBlock(self.block); }, "index in Device.blocks")
        .value("is_fixed", &PresetSlot::isFixed);
    ValueClass<SLOT_NUMBERING_TYPE>(module, "SlotNumbering", "How a KGP station numbers its slots.")
        .derived("text", [](const SLOT_NUMBERING_TYPE& self) { return fieldOf(self.text); })
        .value("value1", &SLOT_NUMBERING_TYPE::value1)
        .value("value2", &SLOT_NUMBERING_TYPE::value2)
        .value("digit", &SLOT_NUMBERING_TYPE::digit);
}

void bindDiagnosisTexts(py::module_& module)
{
    ValueClass<BitText>(module, "BitText", "The texts of a bit of the device-related diagnosis.")
        .value("byte", &BitText::byte, "behind the header byte, from 1")
        .value("bit", &BitText::bit)
        .value("set", &BitText::set)
        .value("clear", &BitText::clear)
        .value("set_help", &BitText::setHelp)
        .value("clear_help", &BitText::clearHelp);
    ValueClass<AreaText>(module, "AreaText", "The texts of a value that fills several bits.")
        .value("byte", &AreaText::byte, "as in BitText")
        .value("first_bit", &AreaText::firstBit)
        .value("last_bit", &AreaText::lastBit, "above 7 where the area goes on in the next byte")
        .items("texts", &AreaText::texts);
    ValueClass<DiagnosisTexts>(module, "DiagnosisTexts")
        .items("bits", &DiagnosisTexts::bits)
        .items("areas", &DiagnosisTexts::areas);
    ValueClass<DiagnosisType>(module, "DiagnosisType", "Texts for the blocks of one DPV1 type alone.")
        .value("number", &DiagnosisType::number)
        .value("texts", &DiagnosisType::texts);
    ValueClass<GSD_WARNING_ITEM>(module, "Warning", "A warning of the compilation.")
        .value("code", &GSD_WARNING_ITEM::code)
        .value("line", &GSD_WARNING_ITEM::lineNumber)
        .derived("text", [](const GSD_WARNING_ITEM& self) { return resultText(self.code); });
}

void bindGsdFacts(py::module_& module)
{
    ValueClass<NamedNumber>(module, "NamedNumber")
        .value("name", &NamedNumber::name)
        .value("value", &NamedNumber::value);
    ValueClass<SlotRule> rule(module, "SlotRule", "What a GSD file's SlotDefinition says of a slot.");
    rule.value("slot", &SlotRule::slot)
        .value("name", &SlotRule::name)
        .value("preset", &SlotRule::preset, "reference of a module")
        .def("allows", &SlotRule::allows, "reference"_a);
    rule.derived(
        "allowed",
        [](const SlotRule& self) {
            py::list ranges;
            for (const SlotRule::References& range : self.allowed)
                ranges.append(py::make_tuple(range.first, range.last));
            return py::tuple(ranges);
        },
        "ranges of references of modules, first and last");
    ValueClass<GsdFacts>(module, "GsdFacts", "What a GSD file says and a type file cannot hold.")
        .value("model_name", &GsdFacts::modelName, "in full, as vendor_name")
        .value("vendor_name", &GsdFacts::vendorName)
        .value("revision", &GsdFacts::revision)
        .value("hardware_release", &GsdFacts::hardwareRelease)
        .value("software_release", &GsdFacts::softwareRelease)
        .value("info_text", &GsdFacts::infoText)
        .items("max_tsdr", &GsdFacts::maxTsdr, "by rate, in bit times")
        .value("max_module", &GsdFacts::maxModule)
        .items("slots", &GsdFacts::slots)
        .value("has_safety_parameters", &GsdFacts::hasSafetyParameters)
        .items("others", &GsdFacts::others);
}

py::frozenset featuresOf(const Device& device)
{
    py::set names;
    for (const FeatureName& feature : featureNames()) {
        if (device.has(feature.feature))
            names.add(feature.name);
    }
    return py::frozenset(names);
}

/// Numbers of the type data, by the names of the JSON's limits.
void addLimits(ValueClass<Device>& device)
{
    struct Limit {
        const char* name;
        int SLAVE_TYPEDATA_TYPE::*member;
    };
    constexpr std::array<Limit, 10> kLimits = {Limit{"max_modules", &SLAVE_TYPEDATA_TYPE::maxModule},
                                               Limit{"max_input_bytes", &SLAVE_TYPEDATA_TYPE::maxInputLen},
                                               Limit{"max_input_bits", &SLAVE_TYPEDATA_TYPE::maxInputBits},
                                               Limit{"max_output_bytes", &SLAVE_TYPEDATA_TYPE::maxOutputLen},
                                               Limit{"max_output_bits", &SLAVE_TYPEDATA_TYPE::maxOutputBits},
                                               Limit{"max_data_bytes", &SLAVE_TYPEDATA_TYPE::maxDataLen},
                                               Limit{"max_diagnostic_bytes", &SLAVE_TYPEDATA_TYPE::maxDiagDataLen},
                                               Limit{"eter_delay", &SLAVE_TYPEDATA_TYPE::eterDelay},
                                               Limit{"max_response_delay", &SLAVE_TYPEDATA_TYPE::maxResponseDelay},
                                               Limit{"kgp_slots", &SLAVE_TYPEDATA_TYPE::slotCount}};
    for (const Limit& limit : kLimits)
        device.derived(limit.name, [member = limit.member](const Device& self) { return self.data.*member; });
    device.derived("min_slave_interval_microseconds",
                   [](const Device& self) { return 100 * self.data.minSlaveInterval; });
    device.derived("user_parameter_bytes", &Device::parameterBudget,
                   "that user parameters may take, behind the 7 standard bytes");
}

void addIdentification(ValueClass<Device>& device)
{
    device.value("model_name", &Device::modelName, "as the type file has it; in full in gsd")
        .value("vendor_name", &Device::vendorName)
        .derived("ident_number", [](const Device& self) { return self.header.identNumber; })
        .value("order_number", &Device::orderNumber)
        .value("family", &Device::family)
        .value("periphery", &Device::periphery)
        .value("station_type", &Device::stationType)
        .derived(
            "chip", [](const Device& self) { return chipName(self); }, "empty when not stated")
        .value("bitmap_name", &Device::bitmapName)
        .value("library_name", &Device::libraryName)
        .derived("format_version", [](const Device& self) { return fieldOf(self.header.version); })
        .derived(
            "gsd_revision",
            [](const Device& self) { return self.isFromGsd ? py::object(py::int_(self.gsdRevision)) : py::none(); },
            "None for a type file")
        .value("is_from_gsd", &Device::isFromGsd)
        .value("is_category_ii", &Device::isCategoryII)
        .value("is_modular", &Device::isModular)
        .derived("is_kgp", &Device::isKgp)
        .value("is_dpv1", &Device::isDpv1, "None where the file does not say");
}

} // namespace

ValueClass<Device> bindDevice(py::module_& module)
{
    bindIdentifiers(module);
    bindParameters(module);
    bindModules(module);
    bindDiagnosisTexts(module);
    bindGsdFacts(module);

    ValueClass<Device> device(module, "Device", "A device type, as load() gives it.");
    addIdentification(device);
    addLimits(device);
    device.derived("features", featuresOf, "names, as in the JSON")
        .derived(
            "baud_rates", [](const Device& self) { return py::tuple(py::cast(baudRates(self))); }, "lowest first")
        .derived("slot_count", &Device::slotCount)
        .value("slot_offset", &Device::slotOffset, "number shown for the first slot")
        .value("slot_numbering", &Device::slotNumbering)
        .items("preset_slots", &Device::presetSlots)
        .items("modules", &Device::modules)
        .value("parameters", &Device::parameters, "of the station")
        .items("blocks", &Device::blocks, "of the modules")
        .value("diagnosis_texts", &Device::diagnosisTexts)
        .items("diagnosis_types", &Device::diagnosisTypes)
        .items("channel_texts", &Device::channelTexts)
        .items("warnings", &Device::warnings)
        .value("gsd", &Device::gsd, "None for a type file")
        .def("__repr__", [](const Device& self) { return "<Device '" + nameWithIdent(self) + '>'; });
    addJson(device, [](const Device& self) { return toJson(self); });

    module.def(
        "load",
        [](const std::filesystem::path& path, bool withGsdFacts) {
            const py::gil_scoped_release released;
            return loadDevice(path.string(), LoadOptions{withGsdFacts});
        },
        "path"_a, py::kw_only(), "with_gsd_facts"_a = true,
        "The device in a GSD file or a type file; the name tells which. Raises LoadError.");
    module.def(
        "find",
        [](const std::filesystem::path& folder, unsigned identNumber, bool isRecursive) {
            std::vector<std::filesystem::path> paths;
            for (std::string& path : findDevices(folder.string(), identNumber, FindOptions{isRecursive}))
                paths.emplace_back(std::move(path));
            return paths;
        },
        "folder"_a, "ident_number"_a, py::kw_only(), "recursive"_a = false,
        "The files of a folder that state an ident number. Raises LoadError.");
    return device;
}
