#include "lint/imageCulprit.h"

#include "lint/deviceIndex.h"
#include "lint/phrases.h"

#include "descriptor/resultCodes.h"

#include <algorithm>
#include <array>

namespace typdescriptor::lint {

namespace {

using Found = std::optional<Culprit>;

// A number above the most that a type file has room for.
Found above(const Entry* entry, std::int64_t most)
{
    if (!hasNumber(entry) || entry->number() <= most)
        return std::nullopt;
    return Culprit{entry->valuePlace(), std::string(entry->keyword) + " is " + std::to_string(entry->number()) +
                                            ", at most " + std::to_string(most) + " fit into a type file"};
}

bool isModular(const DeviceIndex& device)
{
    return device.isOn("Modular_Station");
}

bool hasModuleOfSeveral(const DeviceIndex& device)
{
    return std::ranges::any_of(
        device.modules, [](const Module& module) { return !module.isKgp && module.config.identifiers.size() > 1; });
}

std::size_t plainModules(const DeviceIndex& device)
{
    return static_cast<std::size_t>(std::ranges::count(device.modules, false, &Module::isKgp));
}

// The modules go into a list of their own, not into that of order numbers.
bool hasModuleList(const DeviceIndex& device)
{
    return isModular(device) ? hasModuleOfSeveral(device) : plainModules(device) > 1;
}

const Entry* presetOf(const Module& module)
{
    const auto found = std::ranges::find(module.entries, std::string_view("Preset"),
                                         [](const Entry* entry) { return entry->keyword; });
    return found != module.entries.end() && hasNumber(*found) && (*found)->number() == 1 ? *found : nullptr;
}

std::int64_t prmLength(const Module& module)
{
    const Entry* length = module.prm.of(Telegram::plain).length;
    return hasNumber(length) ? length->number() : 0;
}

Found header(const DeviceIndex& device)
{
    const Entry* order = device.entry("OrderNumber");
    if (order != nullptr && order->text && order->text->text.find(';') != std::string_view::npos)
        return Culprit{order->text->place, "a semicolon in OrderNumber ends the head line of the type file"};
    return std::nullopt;
}

Found modelName(const DeviceIndex& device)
{
    const Entry* name = device.entry("Model_Name");
    if (name == nullptr || !name->text)
        return std::nullopt;
    return Culprit{name->text->place, "the part of Model_Name that fits into a type file is blank"};
}

Found slaveInterval(const DeviceIndex& device)
{
    return above(device.entry("Min_Slave_Intervall"), 999);
}

Found noRate(const DeviceIndex& device)
{
    for (const Entry* entry : device.stationEntries)
        if (entry->keyword.ends_with("_supp") && !entry->keyword.empty() && entry->keyword.front() >= '0' &&
            entry->keyword.front() <= '9')
            return Culprit{entry->valuePlace(), "no rate is supported"};
    return std::nullopt;
}

Found noData(const DeviceIndex& device)
{
    const Entry* input = device.entry("Max_Input_Len");
    const Entry* output = device.entry("Max_Output_Len");
    if (!hasNumber(input) || !hasNumber(output))
        return std::nullopt;
    return Culprit{
        input->valuePlace(), "Max_Input_Len and Max_Output_Len are both 0", {{output->valuePlace(), "Max_Output_Len"}}};
}

Found maxModule(const DeviceIndex& device)
{
    const Entry* most = device.entry("Max_Module");
    const Entry* even = device.entry("EvenSlotNumberRequired");
    if (!hasNumber(most) || !hasNumber(even))
        return std::nullopt;
    return Culprit{most->valuePlace(),
                   "Max_Module is odd, and EvenSlotNumberRequired is 1",
                   {{even->valuePlace(), "even numbers are required"}}};
}

Found presetCount(const DeviceIndex& device)
{
    const Entry* most = device.entry("Max_Module");
    std::int64_t count = 0;
    for (const Module& module : device.modules)
        count += presetOf(module) != nullptr ? 1 : 0;
    if (!hasNumber(most) || count <= most->number())
        return std::nullopt;
    return Culprit{most->valuePlace(),
                   std::to_string(count) + " modules are preset, Max_Module is " + std::to_string(most->number())};
}

std::int64_t extentOf(const PrmBlock& block, bool withParameters)
{
    std::int64_t end = 0;
    for (const Constants& constants : block.constants)
        end = std::max(end, constants.offset.value + static_cast<std::int64_t>(constants.bytes.size()));
    if (withParameters)
        for (const Placement& placement : block.placements)
            if (placement.definition != nullptr && placement.definition->type() != nullptr)
                end = std::max(end, placement.offset.value + placement.definition->type()->bytes);
    return end;
}

// The part of the parameters that all modules have in common, as the type file states it.
std::int64_t commonLength(const DeviceIndex& device)
{
    if (const auto stated = device.number("OffsetFirstMPDBlock"))
        return *stated;
    const PrmBlock& block = device.stationPrm.of(Telegram::plain);
    if (!block.isEmpty())
        return extentOf(block, true);
    const Entry* fixed = device.entry("User_Prm_Data");
    return fixed != nullptr ? static_cast<std::int64_t>(fixed->numbers.size()) : 0;
}

// The parameters of a module, or of all preset modules, exceed the telegram.
Found parameterBudget(const DeviceIndex& device)
{
    const Entry* most = device.entry("Max_User_Prm_Data_Len");
    if (!hasNumber(most))
        return std::nullopt;
    const std::int64_t common = commonLength(device);
    const bool isOneModule = !isModular(device) && plainModules(device) == 1; // a compact station's is preset
    std::int64_t preset = 0;
    for (const Module& module : device.modules) {
        const std::int64_t length = prmLength(module);
        preset += isOneModule || presetOf(module) != nullptr ? length : 0;
        if ((!hasModuleList(device) && !isOneModule) || length == 0 || common + length <= most->number())
            continue;
        return Culprit{module.prm.of(Telegram::plain).length->valuePlace(),
                       "the module's " + std::to_string(length) + " bytes and the common " + std::to_string(common) +
                           " exceed the " + std::to_string(most->number()) + " of Max_User_Prm_Data_Len",
                       {{most->valuePlace(), "Max_User_Prm_Data_Len"}}};
    }
    if (common + preset <= most->number())
        return std::nullopt;
    return Culprit{most->valuePlace(), "the preset modules have " + std::to_string(preset) +
                                           " bytes of parameters, with the common " + std::to_string(common) +
                                           " more than the " + std::to_string(most->number()) + " stated here"};
}

Found fixedBytes(const DeviceIndex& device)
{
    const Entry* most = device.entry("Max_User_Prm_Data_Len");
    const Entry* fixed = device.entry("User_Prm_Data");
    if (!hasNumber(most) || !hasNumber(fixed) || static_cast<std::int64_t>(fixed->numbers.size()) <= most->number())
        return std::nullopt;
    return Culprit{joined(fixed->numbers.front().place, fixed->numbers.back().place),
                   "User_Prm_Data has " + counted(fixed->numbers.size(), "byte", "bytes") +
                       ", Max_User_Prm_Data_Len is " + std::to_string(most->number()),
                   {{most->valuePlace(), "Max_User_Prm_Data_Len"}}};
}

// The default of a bit or the range of a bit area is larger than its bits: a type file has them digit by digit.
Found wrongValue(const TypeLine& type)
{
    if (type.keyword == "Bit" && type.preset && (type.preset->value < 0 || type.preset->value > 1))
        return Culprit{type.preset->place,
                       "the default of a bit is 0 or 1, this one is " + std::to_string(type.preset->value)};
    if (type.keyword != "BitArea" || type.limits.empty())
        return std::nullopt;
    for (const Number* limit : {&type.limits.front(), &type.limits.back()})
        if (limit->value > type.highest)
            return Culprit{limit->place, counted(type.bitCount, "bit holds", "bits hold") + " values up to " +
                                             std::to_string(type.highest) + ", not " + std::to_string(limit->value)};
    return std::nullopt;
}

// Of several data types of a parameter the library takes the last one.
const TypeLine* lastType(const Definition* definition)
{
    const bool isKnown = definition != nullptr && !definition->types.empty() && definition->types.back().isKnown;
    return isKnown ? &definition->types.back() : nullptr;
}

// The first parameter of a block whose value does not fit or whose byte another has: whole bytes may not be shared.
Found wrongParameter(const PrmBlock& block)
{
    constexpr std::size_t kMostBytes = 512;
    std::array<const Placement*, kMostBytes> owner{};
    for (const Placement& placement : block.placements) {
        const TypeLine* type = lastType(placement.definition);
        if (type == nullptr || placement.definition->name.text == "[SlotNumber]")
            continue;
        if (Found wrong = wrongValue(*type)) {
            wrong->notes.push_back({placement.place, "the parameter is placed here"});
            return wrong;
        }
        const std::size_t bytes = std::min(2U, type->bytes); // 32 bits are kept as 16
        for (auto at = static_cast<std::size_t>(placement.offset.value);
             at < static_cast<std::size_t>(placement.offset.value) + bytes; ++at) {
            if (owner[at] != nullptr && !type->isBits)
                return Culprit{placement.offset.place,
                               "parameter " + std::to_string(placement.reference.value) + " takes byte " +
                                   std::to_string(at) + ", which parameter " +
                                   std::to_string(owner[at]->reference.value) + " has",
                               {{owner[at]->place, "the other parameter"}}};
            if (owner[at] == nullptr)
                owner[at] = &placement;
        }
    }
    return std::nullopt;
}

Found stationParameter(const DeviceIndex& device)
{
    return wrongParameter(device.stationPrm.of(Telegram::plain));
}

Found moduleParameter(const DeviceIndex& device)
{
    for (const Module& module : device.modules)
        if (Found wrong = wrongParameter(module.prm.of(Telegram::plain)))
            return wrong;
    return std::nullopt;
}

// Texts are kept with five digits of their value, as an unsigned number.
Found helpText(const DeviceIndex& device)
{
    constexpr std::size_t kMostLines = 999;
    constexpr std::int64_t kHighest = 65535;
    for (const TextBlock& block : device.textBlocks) {
        if (!block.isUsed)
            continue;
        if (block.items.size() > kMostLines)
            return Culprit{block.place, "the block has " + std::to_string(block.items.size()) +
                                            " texts, at most 999 fit into a type file"};
        for (const TextItem& item : block.items)
            if (item.value.value < 0 || item.value.value > kHighest)
                return Culprit{item.value.place, "values of texts go from 0 to 65535 in a type file, this one is " +
                                                     std::to_string(item.value.value)};
    }
    return std::nullopt;
}

// A type file counts the octets of the diagnosis from 1 and has two digits for 1 to 62.
Found deviceDiagnosis(const DeviceIndex& device)
{
    constexpr std::int64_t kLastOctet = 62;
    constexpr std::int64_t kDigits = 1000;
    constexpr std::int64_t kHundreds = 100;
    const auto isRefused = [](std::int64_t bit) {
        const std::int64_t octet = bit / 8 + 1;
        return octet >= kDigits || octet % kHundreds == 0 || octet % kHundreds > kLastOctet;
    };
    const auto culprit = [](const Number& bit) {
        return Culprit{bit.place, "bit " + std::to_string(bit.value) + " lies in octet " +
                                      std::to_string(bit.value / 8 + 1) +
                                      " of the device's diagnosis, a type file has room for 62"};
    };
    if (device.diagTexts.empty())
        return std::nullopt;
    for (const DiagBit& bit : device.diagTexts.front().bits)
        if (!bit.isHelp && bit.entry->keyword != "Unit_Diag_Not_Bit" && isRefused(bit.entry->argument->value))
            return culprit(*bit.entry->argument);
    for (const DiagArea& area : device.diagTexts.front().areas)
        if (area.first && isRefused(area.first->value))
            return culprit(*area.first);
    return std::nullopt;
}

Found dataLength(const DeviceIndex& device)
{
    const Entry* both = device.entry("Max_Data_Len");
    if (!hasNumber(both))
        return std::nullopt;
    constexpr std::int64_t kDefault = 244; // what the library takes for a length that is not stated
    const std::int64_t sum =
        device.number("Max_Input_Len").value_or(kDefault) + device.number("Max_Output_Len").value_or(kDefault);
    return Culprit{both->valuePlace(), "Max_Data_Len is " + std::to_string(both->number()) +
                                           ", inputs and outputs together have at most " + std::to_string(sum)};
}

// A module of the kind that the station excludes: OnlyNormalModules, OnlySpecialModules.
Found excludedModule(const DeviceIndex& device)
{
    const bool onlyNormal = device.isOn("OnlyNormalModules");
    const bool onlySpecial = device.isOn("OnlySpecialModules");
    if (!onlyNormal && !onlySpecial)
        return std::nullopt;
    const Entry* kind = device.entry(onlyNormal ? "OnlyNormalModules" : "OnlySpecialModules");
    for (const Module& module : device.modules)
        for (const ModuleIdentifier& identifier : module.config.identifiers)
            if (!module.isKgp && identifier.isSpecial == onlyNormal)
                return Culprit{module.bytes[identifier.first].place,
                               std::string("the identifier is ") + (onlyNormal ? "a special one" : "no special one") +
                                   ", which " + std::string(kind->keyword) + " excludes",
                               {{kind->valuePlace(), "the kind of modules"}}};
    return std::nullopt;
}

// More modules than the three digits of a list's head can count.
Found listLength(const DeviceIndex& device)
{
    constexpr std::size_t kMost = 999;
    if (device.modules.size() <= kMost)
        return std::nullopt;
    return Culprit{device.modules[kMost].place,
                   "a type file lists at most 999 modules, this file has " + std::to_string(device.modules.size())};
}

Found orderList(const DeviceIndex& device)
{
    const Found tooLong = listLength(device);
    return tooLong ? tooLong : excludedModule(device);
}

Found moduleList(const DeviceIndex& device)
{
    for (const Module& module : device.modules)
        if (const Entry* preset = presetOf(module);
            preset != nullptr && hasModuleList(device) && !hasModuleOfSeveral(device))
            return Culprit{preset->valuePlace(), "a compact station with several modules cannot have a preset one"};
    return orderList(device);
}

Found commonBytes(const DeviceIndex& device)
{
    constexpr std::int64_t kMost = 236;
    if (commonLength(device) <= kMost)
        return std::nullopt;
    const PrmBlock& block = device.stationPrm.of(Telegram::plain);
    const Entry* fixed = device.entry("User_Prm_Data");
    Span place = fixed != nullptr ? fixed->place : Span{};
    if (!block.isEmpty())
        place = block.constants.empty() ? block.placements.back().place : block.constants.back().place;
    return Culprit{place, "the station's own parameters have " + std::to_string(commonLength(device)) +
                              " bytes, beside parameters of modules at most 236 fit into a type file"};
}

Found typeData(const DeviceIndex& device)
{
    for (const auto& [keyword, most] : {std::pair{"ETERDelay", 999}, std::pair{"MaxResponseDelay", 100}})
        if (Found found = above(device.entry(keyword), most))
            return found;
    const Entry* kgp = device.entry("IsKGPDevice");
    if (hasNumber(kgp))
        return Culprit{
            kgp->place,
            "a station with IsKGPDevice has described parameters (Max_User_Prm_Data_Len) and no module list"};
    const Entry* link = device.entry("IsDPAsiLink");
    if (hasNumber(link))
        return Culprit{
            link->place,
            "a station with IsDPAsiLink has 16 bytes of input and of output, 4 modules, 3 of them preset, and 133 "
            "bytes of fixed parameters"};
    return std::nullopt;
}

struct Row {
    int code;
    Found (*find)(const DeviceIndex&);
};

constexpr Row kRows[] = {
    {kErrHeader, header},
    {kErrTypeData, typeData},
    {kErrIdentifier, excludedModule},
    {kErrModelName, modelName},
    {kErrSlaveInterval, slaveInterval},
    {kErrBaudRates, noRate},
    {kErrNoData, noData},
    {kErrMaxModule, maxModule},
    {kErrPrmLen, parameterBudget},
    {kErrPresetCount, presetCount},
    {kErrUserPrm, fixedBytes},
    {kErrPrmValue, stationParameter},
    {kErrHelpBlock, helpText},
    {kErrDeviceDiag, deviceDiagnosis},
    {kErrMaxDataLen, dataLength},
    {kErrOrderList, orderList},
    {kErrModuleList, moduleList},
    {kErrSlotPrm, moduleParameter},
    {kErrCommonPrmLen, commonBytes},
};

} // namespace

std::optional<Culprit> culpritOf(int code, const DeviceIndex& device)
{
    const auto row = std::ranges::find(kRows, code, &Row::code);
    return row == std::end(kRows) ? std::nullopt : row->find(device);
}

} // namespace typdescriptor::lint
