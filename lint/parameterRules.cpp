// Rules about parameter blocks: what is placed in them, and the lengths that are stated for them.

#include "lint/deviceIndex.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <array>
#include <vector>

namespace typdescriptor::lint {

namespace {

constexpr std::size_t kMostOffsets = 256; // an offset has one byte

struct TelegramNames {
    const char* stationLength; // null: none is stated for the station
    const char* moduleLength;
};

constexpr TelegramNames kNames[kTelegrams] = {
    {"Max_User_Prm_Data_Len", "Ext_Module_Prm_Data_Len"},
    {"X_Max_User_Prm_Data_Len", "X_Ext_Module_Prm_Data_Len"},
    {nullptr, "F_Ext_Module_Prm_Data_Len"},
};

// A parameter block with what it belongs to.
struct OwnedBlock {
    const PrmBlock& block;
    const Module* module; // null for the station
    const char* lengthKeyword;
};

// Calls a function for every parameter block, those of the station first.
template <typename Function>
void forEachBlock(const DeviceIndex& device, Function function)
{
    for (std::size_t i = 0; i < kTelegrams; ++i)
        function(OwnedBlock{device.stationPrm.blocks[i], nullptr, kNames[i].stationLength});
    for (const Module& module : device.modules)
        for (std::size_t i = 0; i < kTelegrams; ++i)
            function(OwnedBlock{module.prm.blocks[i], &module, kNames[i].moduleLength});
}

std::int64_t lengthOf(const PrmBlock& block)
{
    return hasNumber(block.length) ? block.length->number() : 0;
}

unsigned bytesOf(const Placement& placement)
{
    const TypeLine* type = placement.definition != nullptr ? placement.definition->type() : nullptr;
    return type != nullptr ? type->bytes : 1;
}

// The first byte behind everything that is placed in a block.
std::int64_t extentOf(const PrmBlock& block)
{
    std::int64_t end = 0;
    for (const Placement& placement : block.placements)
        end = std::max(end, placement.offset.value + bytesOf(placement));
    for (const Constants& constants : block.constants)
        end = std::max(end, constants.offset.value + static_cast<std::int64_t>(constants.bytes.size()));
    return end;
}

Span bytesPlace(const Constants& constants)
{
    return constants.bytes.empty() ? constants.place
                                   : joined(constants.bytes.front().place, constants.bytes.back().place);
}

void checkLengthStated(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        if (owned.block.isEmpty() || owned.lengthKeyword == nullptr || lengthOf(owned.block) > 0)
            return;
        const auto firstOf = [](const auto& list) {
            return list.empty() ? Span{UINT32_MAX, UINT32_MAX} : list.front().place;
        };
        const Span placement = firstOf(owned.block.placements);
        const Span constants = firstOf(owned.block.constants);
        const Span place = placement.begin < constants.begin ? placement : constants;
        const std::string owner = owned.module != nullptr ? "the module" : "the station";
        const std::string why = owned.block.length != nullptr ? " is 0" : " is missing";
        Finding& finding =
            report.add(place, owner + " has no length for its parameters: " + std::string(owned.lengthKeyword) + why);
        if (owned.block.length != nullptr)
            finding.note(owned.block.length->valuePlace(), "the length");
        else if (owned.module != nullptr)
            finding.note(owned.module->place, "the module");
    });
}

void tellBeyond(const OwnedBlock& owned, Span place, std::int64_t offset, std::size_t bytes, Report& report)
{
    const std::int64_t length = lengthOf(owned.block);
    if (length <= 0 || offset + static_cast<std::int64_t>(bytes) <= length)
        return;
    Finding& finding = report.add(place, counted(bytes, "byte", "bytes") + " at offset " + std::to_string(offset) +
                                             " end at " + std::to_string(offset + static_cast<std::int64_t>(bytes)) +
                                             ", the block at " + std::to_string(length));
    finding.notes.push_back(
        {owned.block.length->valuePlace(), std::string(owned.block.length->keyword) + " gives the block's length"});
}

void checkBeyond(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        for (const Placement& placement : owned.block.placements)
            tellBeyond(owned, placement.offset.place, placement.offset.value, bytesOf(placement), report);
        for (const Constants& constants : owned.block.constants)
            tellBeyond(owned, constants.offset.place, constants.offset.value, constants.bytes.size(), report);
    });
}

void checkConstantOverlap(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        if (owned.block.constants.size() < 2)
            return;
        std::array<const Constants*, kMostOffsets> owner{};
        for (const Constants& constants : owned.block.constants) {
            const Constants* other = nullptr;
            std::size_t where = 0;
            for (std::size_t i = 0; i < constants.bytes.size(); ++i) {
                const std::size_t at = static_cast<std::size_t>(constants.offset.value) + i;
                if (at >= owner.size())
                    break;
                if (owner[at] != nullptr && other == nullptr) {
                    other = owner[at];
                    where = at;
                }
                owner[at] = &constants;
            }
            if (other == nullptr)
                continue;
            report.add(bytesPlace(constants), "byte " + std::to_string(where) + " has a constant already")
                .note(other->place, "the other constant");
        }
    });
}

// The bits that a parameter takes in its block.
struct TakenBits {
    std::int64_t first;
    std::int64_t last;
    const Placement* placement;
};

// Tells once for a parameter that it takes bits that one before it has.
void checkBitsOf(const PrmBlock& block, Report& report)
{
    constexpr std::int64_t kBitsOfByte = 8;
    std::vector<TakenBits> taken;
    taken.reserve(block.placements.size());
    for (const Placement& placement : block.placements) {
        const TypeLine* type = placement.definition != nullptr ? placement.definition->type() : nullptr;
        const std::int64_t first = placement.offset.value * kBitsOfByte + (type != nullptr ? type->firstBit : 0);
        if (type != nullptr)
            taken.push_back({first, first + type->bitCount - 1, &placement});
    }
    std::ranges::stable_sort(taken, {}, &TakenBits::first);
    const TakenBits* farthest = nullptr; // of the parameters so far
    for (const TakenBits& one : taken) {
        if (farthest != nullptr && one.first <= farthest->last) {
            const bool isBehind = farthest->placement->place.begin < one.placement->place.begin;
            const Placement& later = isBehind ? *one.placement : *farthest->placement;
            const Placement& earlier = isBehind ? *farthest->placement : *one.placement;
            report
                .add(later.offset.place, "parameter " + std::to_string(later.reference.value) + " takes " +
                                             (later.definition->type()->isBits ? "bits" : "a byte") + " of parameter " +
                                             std::to_string(earlier.reference.value))
                .note(earlier.place, "the other parameter");
        }
        if (farthest == nullptr || one.last > farthest->last)
            farthest = &one;
    }
}

void checkParameterOverlap(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        if (owned.block.placements.size() > 1)
            checkBitsOf(owned.block, report);
    });
}

// Bytes of a module's block that nothing gives a value to.
void checkUnsetBytes(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        const std::int64_t length = std::min<std::int64_t>(lengthOf(owned.block), kMostOffsets);
        if (owned.module == nullptr || owned.block.isEmpty() || length <= 0)
            return;
        std::array<bool, kMostOffsets> isSet{};
        const auto set = [&](std::int64_t from, std::size_t count) {
            for (auto at = static_cast<std::size_t>(from); count > 0 && at < isSet.size(); ++at, --count)
                isSet[at] = true;
        };
        for (const Placement& placement : owned.block.placements)
            set(placement.offset.value, bytesOf(placement));
        for (const Constants& constants : owned.block.constants)
            set(constants.offset.value, constants.bytes.size());
        const auto end = isSet.begin() + length;
        const auto first = std::find(isSet.begin(), end, false);
        if (first == end)
            return;
        report.add(owned.block.length->valuePlace(),
                   "nothing gives a value to " +
                       counted(static_cast<std::size_t>(std::count(isSet.begin(), end, false)), "byte", "bytes") +
                       " of the block, beginning with byte " + std::to_string(first - isSet.begin()));
    });
}

void checkDefinitions(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        for (const Placement& placement : owned.block.placements) {
            if (placement.definition != nullptr)
                continue;
            const std::string number = std::to_string(placement.reference.value);
            if (placement.laterDefinition == nullptr) {
                report.add(placement.reference.place, "there is no ExtUserPrmData " + number);
                continue;
            }
            report
                .add(placement.reference.place,
                     "ExtUserPrmData " + number + " stands further down; it comes before its first use")
                .note(placement.laterDefinition->place, "it stands here");
        }
    });
}

void checkUnusedLengths(const Context& context, Report& report)
{
    forEachBlock(context.device(), [&report](const OwnedBlock& owned) {
        if (owned.module != nullptr && owned.block.isEmpty() && lengthOf(owned.block) > 0)
            report.add(owned.block.length->valuePlace(),
                       "the module states " +
                           counted(static_cast<std::size_t>(lengthOf(owned.block)), "byte", "bytes") +
                           " of parameters and places nothing in them");
    });
}

// What all sums of blocks are held against.
struct Budget {
    const Entry* most;
    std::int64_t station;

    explicit Budget(const DeviceIndex& device)
        : most(device.entry("Max_User_Prm_Data_Len")), station(extentOf(device.stationPrm.of(Telegram::plain)))
    {}
    std::string stationText() const
    {
        return station > 0 ? " and the station's " + counted(static_cast<std::size_t>(station), "byte", "bytes") : "";
    }
};

void checkSums(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Budget budget(device);
    if (!hasNumber(budget.most))
        return;
    for (const Module& module : device.modules) {
        const PrmBlock& block = module.prm.of(Telegram::plain);
        const std::int64_t length = lengthOf(block);
        if (length <= 0 || budget.station + length <= budget.most->number())
            continue;
        report
            .add(block.length->valuePlace(),
                 "the module's " + counted(static_cast<std::size_t>(length), "byte", "bytes") + budget.stationText() +
                     " are more than the " + std::to_string(budget.most->number()) + " of the station")
            .note(budget.most->valuePlace(), "Max_User_Prm_Data_Len");
    }
}

void checkFullStation(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Budget budget(device);
    const Entry* most = device.entry("Max_Module");
    if (!hasNumber(budget.most) || !hasNumber(most) || !device.isOn("Modular_Station"))
        return;
    std::int64_t largest = 0;
    for (const Module& module : device.modules)
        largest = std::max(largest, lengthOf(module.prm.of(Telegram::plain)));
    const std::int64_t needed = budget.station + largest * most->number();
    if (largest == 0 || budget.station + largest > budget.most->number() || needed <= budget.most->number())
        return;
    report
        .add(budget.most->valuePlace(), std::to_string(most->number()) + " modules of " + std::to_string(largest) +
                                            " bytes" + budget.stationText() + " take " + std::to_string(needed) +
                                            ": not every configuration can be parametrised")
        .note(most->valuePlace(), "Max_Module");
}

void checkFixedData(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* data = device.entry("User_Prm_Data");
    const Entry* length = device.entry("User_Prm_Data_Len");
    if (!hasNumber(data))
        return;
    const auto count = static_cast<std::int64_t>(data->numbers.size());
    const Span place = joined(data->numbers.front().place, data->numbers.back().place);
    if (!hasNumber(length) || length->number() == count)
        return;
    report
        .add(place, "User_Prm_Data has " + counted(data->numbers.size(), "byte", "bytes") +
                        ", User_Prm_Data_Len says " + std::to_string(length->number()))
        .note(length->valuePlace(), "the length");
}

void checkTwoDescriptions(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* fixed = device.entry("User_Prm_Data");
    const Entry* described = device.entry("Max_User_Prm_Data_Len");
    if (fixed == nullptr || described == nullptr)
        return;
    report
        .add(fixed->place, "the parameters are described twice, with User_Prm_Data and with "
                           "Max_User_Prm_Data_Len; tools that know the second leave out the first")
        .note(described->place, "the other description");
}

constexpr Rule kRules[] = {
    {"parameters-without-length", Severity::error, Group::consistency,
     "What is placed in a parameter block needs the block's length.",
     "Ext_User_Prm_Data_Ref and _Const place bytes in the block of the station (Max_User_Prm_Data_Len) or of a module "
     "(Ext_Module_Prm_Data_Len). Without the length there is no block.",
     "Module = \"AI\" 0x50\nExt_User_Prm_Data_Ref(0) = 1\nEndModule",
     "Module = \"AI\" 0x50\nExt_Module_Prm_Data_Len = 1\nExt_User_Prm_Data_Ref(0) = 1\nEndModule", checkLengthStated},
    {"parameter-beyond-block", Severity::error, Group::consistency,
     "Parameters and constants lie inside of their block.",
     "The offset in parentheses plus the bytes placed there must not exceed the block's length; offsets count from 0.",
     "Max_User_Prm_Data_Len = 4\nExt_User_Prm_Data_Const(3) = 0x01,0x02",
     "Max_User_Prm_Data_Len = 5\nExt_User_Prm_Data_Const(3) = 0x01,0x02", checkBeyond},
    {"constant-overlap", Severity::warning, Group::consistency, "Every byte has one constant.",
     "Of two constants for one byte the later one counts in some tools, the earlier one in others.",
     "Ext_User_Prm_Data_Const(0) = 1,2\nExt_User_Prm_Data_Const(1) = 3",
     "Ext_User_Prm_Data_Const(0) = 1,2\nExt_User_Prm_Data_Const(2) = 3", checkConstantOverlap},
    {"parameter-overlap", Severity::warning, Group::consistency, "Every bit belongs to one parameter.",
     "Two parameters in one place overwrite each other: the device gets the value of whichever the tool writes last.",
     "ExtUserPrmData = 1 \"A\"\nUnsigned16 0\nEndExtUserPrmData\nExt_User_Prm_Data_Ref(0) = "
     "1\nExt_User_Prm_Data_Ref(1) = 1",
     "Ext_User_Prm_Data_Ref(0) = 1\nExt_User_Prm_Data_Ref(2) = 1", checkParameterOverlap},
    {"unset-parameter-bytes", Severity::hint, Group::consistency,
     "Every byte of a module's parameter block has a value.",
     "The value comes from a constant or from the default of a parameter. What has neither is sent as 0, which not "
     "every device takes for \"leave it as it is\".",
     "Ext_Module_Prm_Data_Len = 3\nExt_User_Prm_Data_Const(0) = 1,2",
     "Ext_Module_Prm_Data_Len = 3\nExt_User_Prm_Data_Const(0) = 1,2,0", checkUnsetBytes},
    {"unknown-parameter-reference", Severity::error, Group::consistency,
     "Ext_User_Prm_Data_Ref names an ExtUserPrmData block that stands before.",
     "Readers look the description up when they read the reference. One that stands further down is not found by them.",
     "Ext_User_Prm_Data_Ref(0) = 7",
     "ExtUserPrmData = 7 \"Mode\"\nUnsigned8 0 0-3\nEndExtUserPrmData\nExt_User_Prm_Data_Ref(0) = 7", checkDefinitions},
    {"unused-parameter-length", Severity::warning, Group::consistency,
     "A module with a parameter length places parameters.",
     "A block in which nothing is placed is sent as zeros: either the placements are missing, or the length is left "
     "over.",
     "Module = \"AI\" 0x50\nExt_Module_Prm_Data_Len = 2\nEndModule",
     "Module = \"AI\" 0x50\nExt_Module_Prm_Data_Len = 2\nExt_User_Prm_Data_Const(0) = 0,0\nEndModule",
     checkUnusedLengths},
    {"module-parameters-too-long", Severity::warning, Group::consistency,
     "The parameters of the station and of one module fit into Max_User_Prm_Data_Len.",
     "Max_User_Prm_Data_Len limits the whole telegram, the station's part and the modules' parts together. A module "
     "that is too long by itself can never be parametrised.",
     "Max_User_Prm_Data_Len = 4\nModule = \"AI\" 0x50\nExt_Module_Prm_Data_Len = 6",
     "Max_User_Prm_Data_Len = 6\nModule = \"AI\" 0x50\nExt_Module_Prm_Data_Len = 6", checkSums},
    {"parameters-of-full-station", Severity::hint, Group::consistency,
     "The parameters of a station full of its largest modules fit into Max_User_Prm_Data_Len.",
     "Otherwise there are configurations within Max_Module whose parameters do not fit into the telegram. That may be "
     "meant so.",
     "Max_Module = 8\nMax_User_Prm_Data_Len = 16\nExt_Module_Prm_Data_Len = 4",
     "Max_Module = 4\nMax_User_Prm_Data_Len = 16\nExt_Module_Prm_Data_Len = 4", checkFullStation},
    {"fixed-parameter-count", Severity::error, Group::consistency,
     "User_Prm_Data has as many bytes as User_Prm_Data_Len says.",
     "The length stands before the data. Where the two differ, some readers cut the data and others refuse the file.",
     "User_Prm_Data_Len = 3\nUser_Prm_Data = 0x00,0x01", "User_Prm_Data_Len = 2\nUser_Prm_Data = 0x00,0x01",
     checkFixedData},
    {"two-parameter-descriptions", Severity::hint, Group::consistency,
     "A file describes the parameters with User_Prm_Data or with Max_User_Prm_Data_Len.",
     "The second takes the place of the first. Files have both for old tools; then the bytes should be the same.",
     "User_Prm_Data = 0x00\nMax_User_Prm_Data_Len = 1", "Max_User_Prm_Data_Len = 1\nExt_User_Prm_Data_Const(0) = 0x00",
     checkTwoDescriptions},
};

} // namespace

std::span<const Rule> parameterRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
