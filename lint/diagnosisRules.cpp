// Rules about diagnostic texts: bits and areas of the device-related diagnosis, error types of channels.

#include "lint/deviceIndex.h"
#include "lint/firstPlaces.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace typdescriptor::lint {

namespace {

constexpr std::int64_t kWidestArea = 16;  // bits
constexpr std::int64_t kHighestBit = 495; // a block has 62 octets behind its header
constexpr std::int64_t kHeaderOctets = 7; // the six of every diagnosis and the header of the block

// Bits of one sense, or help for them: each list has a bit once. Files for several readers have a clear bit's text under both
// of its spellings.
constexpr std::size_t kLists = 5;

std::size_t listOf(const DiagBit& bit)
{
    if (bit.entry->keyword == "Unit_Diag_!Bit")
        return kLists - 1;
    return (bit.isSet ? 0U : 1U) + (bit.isHelp ? 2U : 0U);
}

void checkRepeatedBits(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        FirstPlaces<std::int64_t> seen[kLists];
        for (const DiagBit& bit : texts.bits) {
            const Number& number = *bit.entry->argument;
            if (const Span* first = seen[listOf(bit)].before(number.value, bit.entry->place))
                report
                    .add(number.place, "bit " + std::to_string(number.value) + " has a " +
                                           (bit.isHelp ? "help" : "text") + " already")
                    .note(*first, "the first one");
        }
    }
}

// Calls a function with every bit that a text is for, and the place of its number.
template <typename Function>
void forEachBit(const DiagTexts& texts, Function function)
{
    for (const DiagBit& bit : texts.bits)
        function(bit.entry->argument->value, bit.entry->argument->place);
    for (const DiagArea& area : texts.areas)
        if (area.last)
            function(area.last->value, area.last->place);
}

void checkLength(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* longest = device.entry("Max_Diag_Data_Len");
    if (!hasNumber(longest))
        return;
    const std::int64_t bits = std::max<std::int64_t>(0, 8 * (longest->number() - kHeaderOctets));
    for (const DiagTexts& texts : device.diagTexts) {
        forEachBit(texts, [&](std::int64_t bit, Span place) {
            if (bit < bits || bit > kHighestBit)
                return;
            const std::string room = bits == 0 ? "no bit" : "bits 0 to " + std::to_string(bits - 1);
            report
                .add(place, "bit " + std::to_string(bit) + " can never be sent: a diagnosis of " +
                                std::to_string(longest->number()) + " octets has room for " + room)
                .note(longest->valuePlace(), "Max_Diag_Data_Len");
        });
    }
}

void checkHighestBit(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts)
        forEachBit(texts, [&report](std::int64_t bit, Span place) {
            if (bit > kHighestBit)
                report.add(place, "bit " + std::to_string(bit) + " is beyond the longest block, whose last bit is " +
                                      std::to_string(kHighestBit));
        });
}

bool isWhole(const DiagArea& area)
{
    return area.first && area.last && area.first->value <= area.last->value;
}

void checkAreas(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        for (const DiagArea& area : texts.areas) {
            if (!area.first || !area.last)
                continue;
            const Span place = joined(area.first->place, area.last->place);
            const std::int64_t width = area.last->value - area.first->value + 1;
            if (width < 1)
                report.add(place, "the area ends at bit " + std::to_string(area.last->value) + ", before it begins");
            else if (width > kWidestArea)
                report.add(place, "the area has " + std::to_string(width) + " bits, at most 16 are allowed");
        }
    }
}

void checkAreaValues(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        for (const DiagArea& area : texts.areas) {
            if (!isWhole(area))
                continue;
            const std::int64_t width = std::min(kWidestArea, area.last->value - area.first->value + 1);
            const std::int64_t highest = (std::int64_t{1} << width) - 1;
            for (const DiagValue& value : area.values) {
                if (!value.entry->argument || value.entry->argument->value <= highest)
                    continue;
                report
                    .add(value.entry->argument->place,
                         counted(static_cast<std::size_t>(width), "bit holds", "bits hold") + " values up to " +
                             std::to_string(highest) + ", not " + std::to_string(value.entry->argument->value))
                    .note(joined(area.first->place, area.last->place), "the area");
            }
        }
    }
}

void checkRepeatedValues(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        for (const DiagArea& area : texts.areas) {
            FirstPlaces<std::int64_t> seen[2];
            for (const DiagValue& value : area.values) {
                if (!value.entry->argument)
                    continue;
                const Number& number = *value.entry->argument;
                if (const Span* first = seen[value.isHelp ? 1 : 0].before(number.value, number.place))
                    report
                        .add(number.place, "the value " + std::to_string(number.value) + " has a " +
                                               (value.isHelp ? "help" : "text") + " already")
                        .note(*first, "the first one");
            }
        }
    }
}

void checkEmptyAreas(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts)
        for (const DiagArea& area : texts.areas)
            if (area.values.empty())
                report.add(area.place, "the area has no Value line");
}

// The bits that have a text of their own, and those of areas, by their first.
struct TakenBits {
    std::int64_t first;
    std::int64_t last;
    Span place;
    bool isArea;
};

void checkOverlaps(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        if (texts.areas.empty())
            continue;
        std::vector<TakenBits> taken;
        for (const DiagArea& area : texts.areas)
            if (isWhole(area))
                taken.push_back(
                    {area.first->value, area.last->value, joined(area.first->place, area.last->place), true});
        for (const DiagBit& bit : texts.bits)
            if (!bit.isHelp)
                taken.push_back(
                    {bit.entry->argument->value, bit.entry->argument->value, bit.entry->argument->place, false});
        std::ranges::stable_sort(taken, {}, &TakenBits::first);
        const TakenBits* widest = nullptr; // of the areas so far the one that reaches farthest
        for (const TakenBits& one : taken) {
            if (widest != nullptr && one.first <= widest->last) {
                const bool isBehind = widest->place.begin < one.place.begin;
                const TakenBits& later = isBehind ? one : *widest;
                const TakenBits& earlier = isBehind ? *widest : one;
                const char* what = !earlier.isArea ? " has a text of its own as well"
                                   : later.isArea  ? " belongs to another area as well"
                                                   : " belongs to an area";
                report.add(later.place, "bit " + std::to_string(one.first) + what)
                    .note(earlier.place, "the other place");
            }
            if (one.isArea && (widest == nullptr || one.last > widest->last))
                widest = &one;
        }
    }
}

void tellLoneHelp(const Entry& help, const char* what, Report& report)
{
    report.add(help.argument->place, std::string(help.keyword) + " helps with " + what + " " +
                                         std::to_string(help.argument->value) + ", which has no text");
}

void checkHelp(const Context& context, Report& report)
{
    for (const DiagTexts& texts : context.device().diagTexts) {
        std::unordered_map<std::int64_t, bool> named[2];
        for (const DiagBit& bit : texts.bits)
            if (!bit.isHelp)
                named[bit.isSet ? 1 : 0].emplace(bit.entry->argument->value, true);
        for (const DiagBit& bit : texts.bits)
            if (bit.isHelp && !named[bit.isSet ? 1 : 0].contains(bit.entry->argument->value))
                tellLoneHelp(*bit.entry, "bit", report);
        for (const DiagArea& area : texts.areas) {
            std::unordered_map<std::int64_t, bool> values;
            for (const DiagValue& value : area.values)
                if (!value.isHelp && value.entry->argument)
                    values.emplace(value.entry->argument->value, true);
            for (const DiagValue& value : area.values)
                if (value.isHelp && value.entry->argument && !values.contains(value.entry->argument->value))
                    tellLoneHelp(*value.entry, "value", report);
        }
    }
}

bool isChannelText(const Entry& entry)
{
    return entry.argument && (entry.keyword == "Channel_Diag" || entry.keyword == "ChannelDiag");
}

// The error types of one level: the station's, or those of a module.
void checkChannels(const std::vector<const Entry*>& entries, Report& report)
{
    FirstPlaces<std::int64_t> seen;
    for (const Entry* entry : entries) {
        if (!isChannelText(*entry))
            continue;
        const Number& type = *entry->argument;
        if (const Span* first = seen.before(type.value, type.place))
            report.add(type.place, "error type " + std::to_string(type.value) + " has a text already")
                .note(*first, "the first one");
    }
}

void checkRepeatedChannels(const Context& context, Report& report)
{
    checkChannels(context.device().stationEntries, report);
    for (const Module& module : context.device().modules)
        checkChannels(module.entries, report);
}

void checkChannelHelpOf(const std::vector<const Entry*>& entries, Report& report)
{
    std::unordered_map<std::int64_t, bool> named;
    for (const Entry* entry : entries)
        if (isChannelText(*entry))
            named.emplace(entry->argument->value, true);
    for (const Entry* entry : entries)
        if (entry->argument && entry->keyword == "Channel_Diag_Help" && !named.contains(entry->argument->value))
            tellLoneHelp(*entry, "error type", report);
}

void checkChannelHelp(const Context& context, Report& report)
{
    checkChannelHelpOf(context.device().stationEntries, report);
    for (const Module& module : context.device().modules)
        checkChannelHelpOf(module.entries, report);
}

void checkAllHelp(const Context& context, Report& report)
{
    checkHelp(context, report);
    checkChannelHelp(context, report);
}

constexpr Rule kRules[] = {
    {"duplicate-diagnostic-bit", Severity::warning, Group::consistency, "A diagnostic bit has one text for its state.",
     "Unit_Diag_Bit gives the text of a set bit, Unit_Diag_Not_Bit that of a clear one. Of two texts for one state "
     "tools show the first, the last or both.",
     "Unit_Diag_Bit(7) = \"hot\"\nUnit_Diag_Bit(7) = \"cold\"",
     "Unit_Diag_Bit(7) = \"hot\"\nUnit_Diag_Bit(8) = \"cold\"", checkRepeatedBits},
    {"diagnosis-beyond-length", Severity::warning, Group::consistency,
     "Diagnostic texts are for bits that the station can send.",
     "A diagnosis has six octets that every station sends and one octet as the header of a block; Max_Diag_Data_Len "
     "less those seven is the room for bits. A text for a bit beyond it is never shown: either it has a wrong number, "
     "or Max_Diag_Data_Len is too small.",
     "Max_Diag_Data_Len = 8\nUnit_Diag_Bit(8) = \"hot\"", "Max_Diag_Data_Len = 9\nUnit_Diag_Bit(8) = \"hot\"",
     checkLength},
    {"diagnostic-bit-too-high", Severity::warning, Group::consistency, "The highest diagnostic bit is 495.",
     "A block of the diagnosis has at most 63 octets, one of them its header.", "Unit_Diag_Bit(496) = \"hot\"",
     "Unit_Diag_Bit(495) = \"hot\"", checkHighestBit},
    {"diagnostic-area", Severity::error, Group::consistency,
     "A diagnostic area has 1 to 16 bits, the first not above the last.",
     "Unit_Diag_Area = first-last takes the bits for one value.", "Unit_Diag_Area = 15-8", "Unit_Diag_Area = 8-15",
     checkAreas},
    {"diagnostic-value-too-large", Severity::error, Group::consistency,
     "The values of a diagnostic area fit into its bits.",
     "n bits hold 0 to 2^n - 1. The text of a larger value is never shown.",
     "Unit_Diag_Area = 0-1\nValue(4) = \"hot\"\nUnit_Diag_Area_End",
     "Unit_Diag_Area = 0-2\nValue(4) = \"hot\"\nUnit_Diag_Area_End", checkAreaValues},
    {"duplicate-diagnostic-value", Severity::error, Group::consistency, "A value has one text in its diagnostic area.",
     "Of two texts for one value tools show the first, the last or both.", "Value(1) = \"hot\"\nValue(1) = \"cold\"",
     "Value(1) = \"hot\"\nValue(2) = \"cold\"", checkRepeatedValues},
    {"empty-diagnostic-area", Severity::error, Group::consistency, "A diagnostic area has at least one Value.",
     "An area without texts says nothing about its bits.", "Unit_Diag_Area = 0-1\nUnit_Diag_Area_End",
     "Unit_Diag_Area = 0-1\nValue(1) = \"hot\"\nUnit_Diag_Area_End", checkEmptyAreas},
    {"diagnostic-overlap", Severity::warning, Group::consistency,
     "A bit belongs to one diagnostic area, or has a text of its own.",
     "A tool shows both texts for the same bits, and one of the two is wrong.",
     "Unit_Diag_Bit(3) = \"hot\"\nUnit_Diag_Area = 0-3", "Unit_Diag_Bit(4) = \"hot\"\nUnit_Diag_Area = 0-3",
     checkOverlaps},
    {"help-without-text", Severity::warning, Group::consistency, "Help stands beside a text.",
     "The _Help keywords say more about a bit, a value or an error type whose text another keyword gives. Without the "
     "text there is nothing to help with.",
     "Unit_Diag_Bit_Help(7) = \"check the fan\"",
     "Unit_Diag_Bit(7) = \"hot\"\nUnit_Diag_Bit_Help(7) = \"check the fan\"", checkAllHelp},
    {"duplicate-channel-text", Severity::error, Group::consistency,
     "An error type has one text for the station or a module.",
     "Of two texts for one error type tools show the first, the last or both.",
     "Channel_Diag(17) = \"hot\"\nChannel_Diag(17) = \"cold\"",
     "Channel_Diag(17) = \"hot\"\nChannel_Diag(18) = \"cold\"", checkRepeatedChannels},
};

} // namespace

std::span<const Rule> diagnosisRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
