// Rules about the slots of a modular station and the modules that they take.

#include "lint/deviceIndex.h"
#include "lint/firstPlaces.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace typdescriptor::lint {

namespace {

// The reference numbers of the modules, in order.
std::vector<std::int64_t> moduleNumbers(const DeviceIndex& device)
{
    std::vector<std::int64_t> numbers;
    for (const Module& module : device.modules)
        if (module.reference)
            numbers.push_back(module.reference->value);
    std::ranges::sort(numbers);
    return numbers;
}

bool isReversed(const Slot& slot)
{
    return slot.isRange && slot.allowed[0].value > slot.allowed[1].value;
}

bool allows(const Slot& slot, std::int64_t number)
{
    if (slot.isRange)
        return slot.allowed[0].value <= number && number <= slot.allowed[1].value;
    return std::ranges::any_of(slot.allowed, [number](const Number& one) { return one.value == number; });
}

void checkCompact(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    if (device.slotDefinition == nullptr || device.isOn("Modular_Station"))
        return;
    report.add(device.slotDefinition->place, "a compact station has no slots to define")
        .note(valuePlaceOf(device.entry("Modular_Station")), "the station is compact");
}

void checkNumbers(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* most = device.entry("Max_Module");
    FirstPlaces<std::int64_t> seen;
    for (const Slot& slot : device.slots) {
        if (const Span* first = seen.before(slot.number.value, slot.number.place))
            report.add(slot.number.place, "slot " + std::to_string(slot.number.value) + " is defined already")
                .note(*first, "the first time");
        else if (hasNumber(most) && most->number() >= 0 && slot.number.value > most->number())
            report
                .add(slot.number.place,
                     "the station has only " + counted(static_cast<std::size_t>(most->number()), "slot", "slots"))
                .note(most->valuePlace(), "Max_Module of the station");
    }
}

void checkKnown(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const std::vector<std::int64_t> numbers = moduleNumbers(device);
    const auto exists = [&numbers](std::int64_t number) { return std::ranges::binary_search(numbers, number); };
    const auto tell = [&report](const Number& number) {
        report.add(number.place, "no module has the reference number " + std::to_string(number.value));
    };
    for (const Slot& slot : device.slots) {
        if (!exists(slot.preset.value))
            tell(slot.preset);
        if (slot.isRange) {
            const auto first = std::ranges::lower_bound(numbers, slot.allowed[0].value);
            if (!isReversed(slot) && (first == numbers.end() || *first > slot.allowed[1].value))
                report.add(joined(slot.allowed[0].place, slot.allowed[1].place),
                           "no module has a reference number of this range");
            continue;
        }
        for (const Number& number : slot.allowed)
            if (number.value != slot.preset.value && !exists(number.value))
                tell(number);
    }
}

void checkPresets(const Context& context, Report& report)
{
    for (const Slot& slot : context.device().slots) {
        if (slot.allowed.empty() || isReversed(slot) || allows(slot, slot.preset.value))
            continue;
        report
            .add(slot.preset.place,
                 "the slot does not allow its own default module " + std::to_string(slot.preset.value))
            .note(joined(slot.allowed.front().place, slot.allowed.back().place), "what it allows");
    }
}

void checkRanges(const Context& context, Report& report)
{
    for (const Slot& slot : context.device().slots)
        if (isReversed(slot))
            report.add(joined(slot.allowed[0].place, slot.allowed[1].place),
                       "the range begins with " + std::to_string(slot.allowed[0].value) + ", above its end " +
                           std::to_string(slot.allowed[1].value));
}

void checkGaps(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* most = device.entry("Max_Module");
    if (device.slots.empty())
        return;
    std::vector<std::int64_t> numbers;
    for (const Slot& slot : device.slots)
        numbers.push_back(slot.number.value);
    std::ranges::sort(numbers);
    const std::int64_t last = numbers.back();
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (numbers[i] - numbers[i - 1] <= 1)
            continue;
        const auto behind =
            std::ranges::find(device.slots, numbers[i], [](const Slot& slot) { return slot.number.value; });
        report.add(behind->number.place, "the slots go from " + std::to_string(numbers[i - 1]) + " to " +
                                             std::to_string(numbers[i]) + ": none in between is defined");
        return;
    }
    if (!hasNumber(most) || last >= most->number())
        return;
    report
        .add(most->valuePlace(), "the station has " + std::to_string(most->number()) + " slots, only those up to " +
                                     std::to_string(last) + " are defined")
        .note(device.slotDefinition->place, "the definition of the slots");
}

// All numbers that some slot allows.
class AllowedNumbers {
public:
    explicit AllowedNumbers(const std::vector<Slot>& slots)
    {
        for (const Slot& slot : slots) {
            if (slot.isRange)
                _ranges.emplace_back(slot.allowed[0].value, slot.allowed[1].value);
            else
                for (const Number& number : slot.allowed)
                    _ranges.emplace_back(number.value, number.value);
        }
        std::ranges::sort(_ranges);
        for (std::size_t i = 1; i < _ranges.size(); ++i) // each range reaches as far as any before it
            _ranges[i].second = std::max(_ranges[i].second, _ranges[i - 1].second);
    }

    bool contain(std::int64_t number) const
    {
        const auto behind = std::ranges::upper_bound(_ranges, number, {}, &Range::first);
        return behind != _ranges.begin() && std::prev(behind)->second >= number;
    }

private:
    using Range = std::pair<std::int64_t, std::int64_t>;
    std::vector<Range> _ranges;
};

void checkUnusedModules(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    if (device.slots.empty())
        return;
    const AllowedNumbers allowed(device.slots);
    for (const Module& module : device.modules)
        if (module.reference && !allowed.contain(module.reference->value))
            report.add(module.name.place, "no slot allows the module");
}

constexpr Rule kRules[] = {
    {"slots-of-compact-station", Severity::warning, Group::consistency, "Only a modular station defines slots.",
     "SlotDefinition says which module may go where. A compact station has one fixed configuration.",
     "Modular_Station = 0\nSlotDefinition\nSlot(1) = \"Head\" 1 1\nEndSlotDefinition",
     "Modular_Station = 1\nSlotDefinition\nSlot(1) = \"Head\" 1 1\nEndSlotDefinition", checkCompact},
    {"slot-number", Severity::error, Group::consistency, "Slots have numbers of their own from 1 to Max_Module.",
     "A number twice or one above Max_Module is no slot of the station.",
     "Max_Module = 2\nSlot(1) = \"A\" 1 1\nSlot(1) = \"B\" 1 1",
     "Max_Module = 2\nSlot(1) = \"A\" 1 1\nSlot(2) = \"B\" 1 1", checkNumbers},
    {"slot-unknown-module", Severity::error, Group::consistency, "A slot names modules that exist.",
     "The numbers of a slot are the reference numbers that stand on the line behind a Module line.",
     "Module = \"DI 8\" 0x10\n1\nEndModule\nSlot(1) = \"A\" 2 2",
     "Module = \"DI 8\" 0x10\n1\nEndModule\nSlot(1) = \"A\" 1 1", checkKnown},
    {"slot-default-not-allowed", Severity::error, Group::consistency,
     "The default module of a slot is one that it allows.",
     "The first number is the module that is plugged until the user changes it, the others are what the slot takes.",
     "Slot(1) = \"A\" 3 1,2", "Slot(1) = \"A\" 1 1,2", checkPresets},
    {"slot-range-reversed", Severity::warning, Group::consistency,
     "The range of a slot goes from a lower to a higher number.",
     "A range whose first number is above its last one allows no module.", "Slot(1) = \"A\" 1 4-1",
     "Slot(1) = \"A\" 1 1-4", checkRanges},
    {"slot-gap", Severity::warning, Group::consistency, "The slots from 1 to Max_Module are all defined.",
     "A slot between others that is not defined, or slots up to Max_Module without a definition, take any module or "
     "none, depending on the tool.",
     "Max_Module = 3\nSlot(1) = \"A\" 1 1\nSlot(3) = \"C\" 1 1",
     "Max_Module = 3\nSlot(1) = \"A\" 1 1\nSlot(2) = \"B\" 1 1\nSlot(3) = \"C\" 1 1", checkGaps},
    {"module-in-no-slot", Severity::warning, Group::consistency, "Every module is allowed in some slot.",
     "Where slots are defined, a module that none of them allows can never be plugged.",
     "Module = \"DI 8\" 0x10\n7\nEndModule\nSlot(1) = \"A\" 1 1",
     "Module = \"DI 8\" 0x10\n7\nEndModule\nSlot(1) = \"A\" 1 1,7", checkUnusedModules},
};

} // namespace

std::span<const Rule> slotRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
