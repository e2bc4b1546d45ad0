// Rules about what parameters are described with: ExtUserPrmData and PrmText blocks.

#include "lint/deviceIndex.h"
#include "lint/firstPlaces.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace typdescriptor::lint {

namespace {

constexpr std::size_t kLongestList = 16;

template <typename Blocks>
void checkNumbersOf(const Blocks& blocks, std::string_view keyword, Report& report)
{
    FirstPlaces<std::int64_t> seen;
    for (const auto& block : blocks) {
        if (const Span* first = seen.before(block.reference.value, block.reference.place))
            report
                .add(block.reference.place, std::string(keyword) + " " + std::to_string(block.reference.value) +
                                                " is defined already; references find the first")
                .note(*first, "the first definition");
    }
}

void checkNumbers(const Context& context, Report& report)
{
    checkNumbersOf(context.device().definitions, "ExtUserPrmData", report);
    checkNumbersOf(context.device().textBlocks, "PrmText", report);
}

// Of two blocks with one number the second is never found: another rule tells that.
template <typename Blocks>
void checkUseOf(const Blocks& blocks, std::string_view keyword, Report& report)
{
    std::unordered_set<std::int64_t> seen;
    for (const auto& block : blocks)
        if (seen.insert(block.reference.value).second && !block.isUsed)
            report.add(block.reference.place,
                       std::string(keyword) + " " + std::to_string(block.reference.value) + " is never used");
}

void checkUse(const Context& context, Report& report)
{
    checkUseOf(context.device().definitions, "ExtUserPrmData", report);
    checkUseOf(context.device().textBlocks, "PrmText", report);
}

void checkTypeCount(const Context& context, Report& report)
{
    for (const Definition& definition : context.device().definitions) {
        if (definition.types.empty())
            report.add(definition.place, "ExtUserPrmData " + std::to_string(definition.reference.value) +
                                             " has no line with a data type, such as Unsigned8 0 0-255");
        for (std::size_t i = 1; i < definition.types.size(); ++i) {
            if (definition.types[i].keyword == definition.types.front().keyword)
                continue; // a keyword that stands twice
            report.add(definition.types[i].place, "the parameter has a data type already")
                .note(definition.types.front().place, "its first data type");
        }
    }
}

// Calls a function for every data type that can be read.
template <typename Function>
void forEachType(const DeviceIndex& device, Function function)
{
    for (const Definition& definition : device.definitions)
        for (const TypeLine& type : definition.types)
            if (type.isKnown)
                function(type);
}

std::string rangeText(std::int64_t first, std::int64_t last)
{
    return std::to_string(first) + " to " + std::to_string(last);
}

bool isReversed(const TypeLine& type)
{
    return type.isRange && type.limits[0].value > type.limits[1].value;
}

bool isAllowed(const TypeLine& type, std::int64_t value)
{
    if (type.isList())
        return std::ranges::any_of(type.limits, [value](const Number& one) { return one.value == value; });
    const std::int64_t lowest = type.isRange ? type.limits[0].value : type.lowest;
    const std::int64_t highest = type.isRange ? type.limits[1].value : type.highest;
    return lowest <= value && value <= highest;
}

// What a type holds is told by the rule about ranges of values; how many bits there are is seen here.
constexpr std::string_view kBitArea = "BitArea";

bool fitsType(const TypeLine& type, std::int64_t value)
{
    return type.lowest <= value && value <= type.highest;
}

void checkPresets(const Context& context, Report& report)
{
    forEachType(context.device(), [&report](const TypeLine& type) {
        if (!type.preset || isReversed(type) || isAllowed(type, type.preset->value))
            return;
        const std::string value = std::to_string(type.preset->value);
        if (!fitsType(type, type.preset->value)) {
            if (type.keyword == kBitArea)
                report.add(type.preset->place, "the default " + value + " does not fit into " +
                                                   counted(type.bitCount, "bit", "bits") + ", which hold " +
                                                   rangeText(type.lowest, type.highest));
            return;
        }
        const std::string allowed = type.isRange ? "outside of " + rangeText(type.limits[0].value, type.limits[1].value)
                                                 : "none of the values listed";
        report.add(type.preset->place, "the default " + value + " is " + allowed)
            .note(joined(type.limits.front().place, type.limits.back().place), "what is allowed");
    });
}

void checkRanges(const Context& context, Report& report)
{
    forEachType(context.device(), [&report](const TypeLine& type) {
        if (isReversed(type))
            report.add(joined(type.limits[0].place, type.limits[1].place),
                       "the minimum " + std::to_string(type.limits[0].value) + " is above the maximum " +
                           std::to_string(type.limits[1].value));
    });
}

void checkLimits(const Context& context, Report& report)
{
    forEachType(context.device(), [&report](const TypeLine& type) {
        if (type.keyword != kBitArea)
            return;
        for (const Number& limit : type.limits)
            if (!fitsType(type, limit.value))
                report.add(limit.place, std::to_string(limit.value) + " does not fit into " +
                                            counted(type.bitCount, "bit", "bits") + ", which hold " +
                                            rangeText(type.lowest, type.highest));
    });
}

void checkLists(const Context& context, Report& report)
{
    forEachType(context.device(), [&report](const TypeLine& type) {
        if (type.isList() && type.limits.size() > kLongestList)
            report.add(type.limits[kLongestList].place, "the list has " + std::to_string(type.limits.size()) +
                                                            " values, at most " + std::to_string(kLongestList) +
                                                            " are allowed");
    });
}

void checkBits(const Context& context, Report& report)
{
    for (const Definition& definition : context.device().definitions)
        for (const TypeLine& type : definition.types)
            if (type.hasReversedBits)
                report.add(type.argument, "the first bit of a BitArea is below its last; a single bit is Bit(n)");
}

void checkTextReferences(const Context& context, Report& report)
{
    for (const Definition& definition : context.device().definitions) {
        if (!definition.textReference || definition.text != nullptr)
            continue;
        const std::string number = std::to_string(definition.textReference->value);
        if (definition.laterText == nullptr) {
            report.add(definition.textReference->place, "there is no PrmText " + number);
            continue;
        }
        report
            .add(definition.textReference->place,
                 "PrmText " + number + " stands further down; it comes before its first use")
            .note(definition.laterText->place, "it stands here");
    }
}

// The values that a parameter may have and that its text block does not name: the first of them, and how many.
void tellMissingTexts(const Definition& definition, const std::unordered_set<std::int64_t>& named, Report& report)
{
    const TypeLine& type = *definition.type();
    std::int64_t first = 0;
    std::int64_t missing = 0;
    if (type.isList()) {
        for (const Number& value : type.limits) {
            if (named.contains(value.value))
                continue;
            first = missing++ == 0 ? value.value : first;
        }
    } else {
        const std::int64_t lowest = type.isRange ? type.limits[0].value : type.lowest;
        const std::int64_t highest = type.isRange ? type.limits[1].value : type.highest;
        missing = highest - lowest + 1 -
                  std::ranges::count_if(named, [&](std::int64_t value) { return isAllowed(type, value); });
        first = lowest;
        while (missing > 0 && named.contains(first))
            ++first;
    }
    if (missing <= 0)
        return;
    const std::string others = missing > 1 ? " and " + std::to_string(missing - 1) + " more" : "";
    report
        .add(definition.textReference->place, "PrmText " + std::to_string(definition.textReference->value) +
                                                  " has no text for the allowed value " + std::to_string(first) +
                                                  others)
        .note(definition.text->place, "the texts");
}

void checkMissingTexts(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    std::unordered_map<const TextBlock*, std::unordered_set<std::int64_t>> namedBy;
    for (const Definition& definition : device.definitions) {
        if (definition.text == nullptr || definition.type() == nullptr || isReversed(*definition.type()))
            continue;
        std::unordered_set<std::int64_t>& named = namedBy[definition.text];
        if (named.empty())
            for (const TextItem& item : definition.text->items)
                named.insert(item.value.value);
        tellMissingTexts(definition, named, report);
    }
}

// A text that no parameter with this block allows: blocks are shared, and each parameter may use a part of the values.
void checkSurplusTexts(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    std::unordered_map<const TextBlock*, std::vector<const Definition*>> users;
    for (const Definition& definition : device.definitions)
        if (definition.text != nullptr)
            users[definition.text].push_back(&definition);
    for (const TextBlock& block : device.textBlocks) {
        const auto found = users.find(&block);
        if (found == users.end())
            continue;
        constexpr std::size_t kMostUsers = 32; // a block shared by more is a table for all of them
        const std::vector<const Definition*>& all = found->second;
        if (all.size() > kMostUsers)
            continue;
        for (const TextItem& item : block.items) {
            const auto mayHave = [&item](const Definition* one) {
                return one->type() == nullptr || isReversed(*one->type()) || isAllowed(*one->type(), item.value.value);
            };
            if (std::ranges::any_of(all, mayHave))
                continue;
            report
                .add(item.value.place,
                     "no parameter with these texts may have the value " + std::to_string(item.value.value))
                .note(all.front()->type()->place, "what the parameter may have");
        }
    }
}

void checkRepeatedTexts(const Context& context, Report& report)
{
    for (const TextBlock& block : context.device().textBlocks) {
        FirstPlaces<std::int64_t> seen;
        for (const TextItem& item : block.items) {
            if (const Span* first = seen.before(item.value.value, item.value.place))
                report.add(item.value.place, "the value " + std::to_string(item.value.value) + " has a text already")
                    .note(*first, "the first text");
        }
    }
}

void checkEmptyBlocks(const Context& context, Report& report)
{
    for (const TextBlock& block : context.device().textBlocks)
        if (block.items.empty())
            report.add(block.place, "PrmText " + std::to_string(block.reference.value) + " has no Text line");
}

constexpr Rule kRules[] = {
    {"duplicate-definition", Severity::error, Group::consistency,
     "Every ExtUserPrmData and every PrmText has a number of its own.",
     "Other statements refer to these blocks by their numbers. Of two with one number only the first is ever found.",
     "PrmText = 1\nText(0) = \"off\"\nEndPrmText\nPrmText = 1\nText(0) = \"no\"\nEndPrmText",
     "PrmText = 1\nText(0) = \"off\"\nEndPrmText\nPrmText = 2\nText(0) = \"no\"\nEndPrmText", checkNumbers},
    {"unused-definition", Severity::hint, Group::consistency, "Every ExtUserPrmData and every PrmText is used.",
     "A parameter that no Ext_User_Prm_Data_Ref places, or texts that no Prm_Text_Ref names, are never shown: either a "
     "reference is missing, or the block is left over.",
     "PrmText = 9\nText(0) = \"off\"\nEndPrmText", "PrmText = 9\n...\nPrm_Text_Ref = 9", checkUse},
    {"one-data-type", Severity::error, Group::consistency, "An ExtUserPrmData block has exactly one data type.",
     "The line with the data type gives size, default and allowed values. Without it the parameter cannot be placed, "
     "and of two nobody knows which is meant.",
     "ExtUserPrmData = 1 \"Mode\"\nEndExtUserPrmData",
     "ExtUserPrmData = 1 \"Mode\"\nUnsigned8 0 0-3\nEndExtUserPrmData", checkTypeCount},
    {"default-not-allowed", Severity::error, Group::consistency,
     "The default of a parameter is one of its allowed values.",
     "Tools send the default until the user changes it. One outside of the range or the list is refused by the tool, "
     "or by the device.",
     "Unsigned8 5 0-3", "Unsigned8 3 0-3", checkPresets},
    {"reversed-range", Severity::error, Group::consistency, "The minimum of a parameter is not above its maximum.",
     "A range is written minimum-maximum. The other way round it allows no value at all.", "Unsigned8 2 3-0",
     "Unsigned8 2 0-3", checkRanges},
    {"limit-beyond-bits", Severity::error, Group::consistency, "The allowed values of a BitArea fit into its bits.",
     "n bits hold 0 to 2^n - 1. A limit beyond it can never be reached.", "BitArea(0-1) 0 0-4", "BitArea(0-1) 0 0-3",
     checkLimits},
    {"long-value-list", Severity::warning, Group::consistency, "A list of allowed values has at most 16 of them.",
     "Readers keep no more than 16 values, and some refuse the line. A range does it where the values have no gaps.",
     "Unsigned8 0 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16", "Unsigned8 0 0-16", checkLists},
    {"reversed-bits", Severity::error, Group::consistency, "The first bit of a BitArea is below its last.",
     "The bits are those of the byte that Ext_User_Prm_Data_Ref names, 0 to 7. A single bit is Bit(n).",
     "BitArea(4-2) 0 0-7", "BitArea(2-4) 0 0-7", checkBits},
    {"unknown-text-reference", Severity::error, Group::consistency,
     "Prm_Text_Ref names a PrmText block that stands before.",
     "Readers look the block up when they read the reference. One that stands further down is not found by them.",
     "Prm_Text_Ref = 7", "PrmText = 7\nText(0) = \"off\"\nEndPrmText\n...\nPrm_Text_Ref = 7", checkTextReferences},
    {"value-without-text", Severity::hint, Group::consistency, "Every allowed value of a parameter with texts has one.",
     "Tools offer the texts in place of numbers. A value without one cannot be chosen in some of them, and stands as a "
     "bare number in others.",
     "PrmText = 1\nText(0) = \"off\"\nEndPrmText\n...\nBit(0) 0 0-1\nPrm_Text_Ref = 1",
     "PrmText = 1\nText(0) = \"off\"\nText(1) = \"on\"\nEndPrmText\n...\nBit(0) 0 0-1\nPrm_Text_Ref = 1",
     checkMissingTexts},
    {"text-without-value", Severity::warning, Group::consistency,
     "Every text of a PrmText block belongs to an allowed value.",
     "Tools show the text as a choice, and then refuse it or send a value that the device does not allow. Texts that "
     "one of the parameters with the block may have are right.",
     "PrmText = 1\nText(0) = \"off\"\nText(2) = \"on\"\nEndPrmText\n...\nBit(0) 0 0-1\nPrm_Text_Ref = 1",
     "PrmText = 1\nText(0) = \"off\"\nText(1) = \"on\"\nEndPrmText\n...\nBit(0) 0 0-1\nPrm_Text_Ref = 1",
     checkSurplusTexts},
    {"duplicate-text", Severity::error, Group::consistency, "A value has one text in its PrmText block.",
     "Of two texts for one value tools show the first, the last or both.", "Text(0) = \"off\"\nText(0) = \"on\"",
     "Text(0) = \"off\"\nText(1) = \"on\"", checkRepeatedTexts},
    {"empty-text-block", Severity::error, Group::consistency, "A PrmText block has at least one Text.",
     "A block without texts names no value.", "PrmText = 1\nEndPrmText", "PrmText = 1\nText(0) = \"off\"\nEndPrmText",
     checkEmptyBlocks},
};

} // namespace

std::span<const Rule> definitionRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
