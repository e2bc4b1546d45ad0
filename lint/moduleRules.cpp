// Rules about modules: their identifier bytes, their sizes against the station's, their names and numbers.

#include "lint/deviceIndex.h"
#include "lint/firstPlaces.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>

namespace typdescriptor::lint {

namespace {

constexpr std::int64_t kRevisionWithReferences = 3;

Span bytesPlace(const Module& module)
{
    return module.bytes.empty() ? module.place : joined(module.bytes.front().place, module.bytes.back().place);
}

/// "2 length bytes and 1 manufacturer's byte", as an identifier announces them.
std::string announced(std::int64_t identifier)
{
    constexpr std::size_t kNoManufacturerBytes = 15;
    const auto direction = static_cast<unsigned>(identifier) >> 6U;
    const std::size_t lengths = direction == 3 ? 2 : direction == 0 ? 0 : 1;
    const auto maker = static_cast<std::size_t>(identifier & 0x0F);
    const std::size_t makerBytes = maker == kNoManufacturerBytes ? 0 : maker;
    std::string words = lengths > 0 ? counted(lengths, "length byte", "length bytes") : "";
    if (makerBytes > 0)
        words += (words.empty() ? "" : " and ") + counted(makerBytes, "manufacturer's byte", "manufacturer's bytes");
    return words;
}

void checkIdentifiers(const Context& context, Report& report)
{
    for (const Module& module : context.device().modules) {
        if (module.config.missing == 0)
            continue;
        const ModuleIdentifier& last = module.config.identifiers.back();
        const Number& byte = module.bytes[last.first];
        report.add(byte.place, "the identifier " + inHex(byte.value, 2) + " announces " + announced(byte.value) + ", " +
                                   counted(module.config.missing, "byte is", "bytes are") +
                                   " missing at the end of the list");
    }
}

// Tells when a module has more bytes than one of the station's lengths; the result says whether it does.
bool tellSize(const Module& module, const Entry* most, unsigned size, const char* what, Report& report)
{
    if (!hasNumber(most) || size <= most->number())
        return false;
    report
        .add(bytesPlace(module), "the module has " + counted(size, "byte", "bytes") + what + ", the station at most " +
                                     std::to_string(most->number()))
        .note(most->valuePlace(), std::string(most->keyword) + " of the station");
    return true;
}

void checkSizes(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* input = device.entry("Max_Input_Len");
    const Entry* output = device.entry("Max_Output_Len");
    const Entry* both = device.isOn("Max_Data_Len") ? device.entry("Max_Data_Len") : nullptr; // 0 is told elsewhere
    for (const Module& module : device.modules) {
        const ModuleConfig& config = module.config;
        if (config.missing > 0)
            continue;
        const bool isInputTooLarge = tellSize(module, input, config.inputBytes, " of input", report);
        const bool isOutputTooLarge = tellSize(module, output, config.outputBytes, " of output", report);
        if (!isInputTooLarge && !isOutputTooLarge)
            tellSize(module, both, config.inputBytes + config.outputBytes, " of input and output", report);
    }
}

void checkCompactChoice(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    if (!device.hasSection || device.isOn("Modular_Station") || device.modules.size() < 2)
        return;
    report
        .add(device.modules[1].place, "a compact station has one fixed configuration, this one has " +
                                          std::to_string(device.modules.size()) + " modules")
        .note(device.modules[0].place, "the first module")
        .note(valuePlaceOf(device.entry("Modular_Station")), "the station is compact");
}

void checkNames(const Context& context, Report& report)
{
    FirstPlaces<std::string_view> seen;
    for (const Module& module : context.device().modules) {
        if (module.name.text.empty())
            continue;
        if (const Span* first = seen.before(module.name.text, module.name.place))
            report.add(module.name.place, "another module has the name " + inQuotes(module.name.text) + " already")
                .note(*first, "the first one");
    }
}

void checkReferences(const Context& context, Report& report)
{
    FirstPlaces<std::int64_t> seen;
    for (const Module& module : context.device().modules) {
        if (!module.reference)
            continue;
        if (const Span* first = seen.before(module.reference->value, module.reference->place))
            report
                .add(module.reference->place,
                     "another module has the reference number " + std::to_string(module.reference->value) + " already")
                .note(*first, "the first one");
    }
}

void checkMissingReferences(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const bool isNeeded =
        device.slotDefinition != nullptr || device.number("GSD_Revision").value_or(0) >= kRevisionWithReferences;
    if (!isNeeded)
        return;
    const Module* first = nullptr;
    std::size_t without = 0;
    for (const Module& module : device.modules) {
        if (module.reference || module.isKgp)
            continue;
        ++without;
        if (first == nullptr)
            first = &module;
    }
    if (first == nullptr)
        return;
    const std::string all = without > 1 ? "; " + std::to_string(without) + " modules have none" : "";
    Finding& finding = report.add(first->place, "the module has no reference number on the line behind it" + all);
    if (device.slotDefinition != nullptr)
        finding.note(device.slotDefinition->place, "the slots name modules by their numbers");
    else
        finding.note(valuePlaceOf(device.entry("GSD_Revision")), "every module has one from revision 3 on");
}

const Entry* entryOf(const DataArea& area, std::string_view keyword)
{
    const auto entry = std::ranges::find(area.entries, keyword, &Entry::keyword);
    return entry == area.entries.end() || (*entry)->numbers.empty() ? nullptr : *entry;
}

void checkDataArea(const Module& module, const DataArea& area, Report& report)
{
    const std::vector<ModuleIdentifier>& identifiers = module.config.identifiers;
    const auto count = static_cast<std::int64_t>(identifiers.size());
    const Entry* related = entryOf(area, "Related_CFG_Identifier");
    if (related == nullptr || module.config.missing > 0 || related->number() < 1)
        return;
    if (related->number() > count) {
        report
            .add(related->valuePlace(),
                 "the module has only " + counted(identifiers.size(), "identifier", "identifiers"))
            .note(bytesPlace(module), "the identifiers of the module");
        return;
    }
    const ModuleIdentifier& identifier = identifiers[static_cast<std::size_t>(related->number() - 1)];
    const unsigned bytes = std::max(identifier.inputBytes, identifier.outputBytes);
    const Entry* length = entryOf(area, "Length");
    if (length == nullptr || length->number() <= bytes)
        return;
    report
        .add(length->valuePlace(),
             "the area has " + std::to_string(length->number()) + " bytes, its identifier " + std::to_string(bytes))
        .note(module.bytes[identifier.first].place, "the identifier");
}

void checkDataAreas(const Context& context, Report& report)
{
    for (const Module& module : context.device().modules)
        for (const DataArea& area : module.areas)
            checkDataArea(module, area, report);
}

constexpr Rule kRules[] = {
    {"malformed-identifier", Severity::error, Group::consistency,
     "The bytes of a module make up whole configuration identifiers.",
     "Bits 5 and 4 of an identifier are its direction. Where both are 0 it is a special one: bits 7 and 6 announce a "
     "length byte of the outputs (10), the inputs (01) or one of each (11), bits 3 to 0 a number of manufacturer's "
     "bytes (15: none). A list that ends before all of them came is no configuration.",
     "Module = \"AI 4\" 0x42, 0x07, 0x11\nEndModule", "Module = \"AI 4\" 0x42, 0x07, 0x11, 0x00\nEndModule",
     checkIdentifiers},
    {"module-too-large", Severity::error, Group::consistency, "One module fits into the station's data lengths.",
     "The identifiers of a module say how many bytes it exchanges. A module with more than Max_Input_Len, "
     "Max_Output_Len or Max_Data_Len can never be configured.",
     "Max_Input_Len = 4\nModule = \"8 bytes\" 0x17\nEndModule",
     "Max_Input_Len = 8\nModule = \"8 bytes\" 0x17\nEndModule", checkSizes},
    {"compact-several-modules", Severity::warning, Group::consistency, "A compact station has one module.",
     "Without Modular_Station = 1 the one Module block is the station's configuration. Some tools take several for a "
     "choice of fixed configurations, others refuse the file.",
     "Modular_Station = 0\nModule = \"A\" 0x11\nEndModule\nModule = \"B\" 0x21\nEndModule",
     "Modular_Station = 1\nMax_Module = 1\nModule = \"A\" 0x11\nEndModule\nModule = \"B\" 0x21\nEndModule",
     checkCompactChoice},
    {"duplicate-module-name", Severity::warning, Group::consistency, "Every module has a name of its own.",
     "The user picks modules by their names and cannot tell two of one name apart; tools that look a module up by its "
     "name find the first.",
     "Module = \"DI 8\" 0x10\nEndModule\nModule = \"DI 8\" 0x11\nEndModule",
     "Module = \"DI 8\" 0x10\nEndModule\nModule = \"DI 16\" 0x11\nEndModule", checkNames},
    {"duplicate-module-reference", Severity::error, Group::consistency,
     "Every module has a reference number of its own.",
     "Slots name modules by their reference numbers. With one number twice nobody knows which module is meant.",
     "Module = \"DI 8\" 0x10\n1\nEndModule\nModule = \"DO 8\" 0x20\n1\nEndModule",
     "Module = \"DI 8\" 0x10\n1\nEndModule\nModule = \"DO 8\" 0x20\n2\nEndModule", checkReferences},
    {"missing-module-reference", Severity::warning, Group::consistency,
     "Every module has a reference number, from revision 3 on and with slots.",
     "The number stands alone on the line behind the Module line. Slots name modules by it, and projects keep it, so "
     "that a module is found again in a newer file whose names have changed.",
     "GSD_Revision = 3\nModule = \"DI 8\" 0x10\nEndModule", "GSD_Revision = 3\nModule = \"DI 8\" 0x10\n1\nEndModule",
     checkMissingReferences},
    {"data-area-identifier", Severity::warning, Group::consistency,
     "A data area belongs to an identifier of its module.",
     "Related_CFG_Identifier is the position of the identifier whose data the area describes, counted from 1. The area "
     "has no more bytes than the identifier.",
     "Module = \"DI 8\" 0x10\nData_Area_Beg\nRelated_CFG_Identifier = 3\nData_Area_End\nEndModule",
     "Module = \"DI 8\" 0x10\nData_Area_Beg\nRelated_CFG_Identifier = 1\nData_Area_End\nEndModule", checkDataAreas},
};

} // namespace

std::span<const Rule> moduleRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
