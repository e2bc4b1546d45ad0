// Rules about what stands behind a keyword: its form, its values, their ranges and lengths.

#include "lint/phrases.h"
#include "lint/places.h"
#include "lint/tables.h"
#include "lint/valueGrammar.h"

#include <algorithm>

namespace typdescriptor::lint {

using gsdfile::Document;
using gsdfile::FaultKind;
using gsdfile::Form;
using gsdfile::Keyword;
using gsdfile::Range;
using gsdfile::Statement;
using gsdfile::Value;
using gsdfile::ValueType;

namespace {

template <typename Visit>
void forEachKnown(const Context& context, Visit visit)
{
    for (const Statement& statement : context.document.statements())
        if (statement.keyword)
            visit(statement, *statement.keyword);
}

// Null when the statement has no fault of that kind.
const gsdfile::Fault* faultOf(const Statement& statement, FaultKind kind)
{
    const auto fault = std::ranges::find(statement.faults, kind, &gsdfile::Fault::kind);
    return fault == statement.faults.end() ? nullptr : &*fault;
}

bool hasFault(const Statement& statement, FaultKind kind)
{
    return faultOf(statement, kind) != nullptr;
}

Span faultPlace(const Document& document, const gsdfile::Fault& fault)
{
    return spanOf(document.tokens()[fault.token]);
}

constexpr std::string_view kTwoBits = "BitArea"; // the one keyword with "first-last" in its parentheses

bool takesArgument(const Keyword& keyword)
{
    return keyword.form == Form::argument || (keyword.form == Form::type && keyword.arguments.highest > 0);
}

// "the default of Unsigned8", "Max_Module".
std::string nameOf(const Keyword& keyword, const Item& item)
{
    return *item.name == '\0' ? keyword.name : std::string("the ") + item.name + " of " + keyword.name;
}

std::string sentence(std::string text)
{
    if (text.starts_with("the "))
        text[0] = 'T';
    return text;
}

// Form

bool takesEquals(const Keyword& keyword)
{
    return keyword.form == Form::value || keyword.form == Form::argument;
}

// Whether "=" stands there as it should.
bool isEqualsRight(const Statement& statement)
{
    const bool hasEquals = statement.equalsToken != gsdfile::kNone;
    return takesEquals(*statement.keyword) ? hasEquals || statement.values.empty() : !hasEquals;
}

// Values are not what they seem where a fault stands that has a finding of its own.
bool isLost(const Statement& statement)
{
    return !isEqualsRight(statement) || hasFault(statement, FaultKind::openQuote) ||
           hasFault(statement, FaultKind::secondEquals) || hasFault(statement, FaultKind::strayCharacter) ||
           hasFault(statement, FaultKind::strayBackslash);
}

// What is wrong with the parentheses behind a keyword; true when something is.
bool reportArgument(const Document& document, const Statement& statement, const Keyword& keyword, Report& report)
{
    if (statement.faults.empty() && (statement.argument != nullptr) == takesArgument(keyword) &&
        !(statement.argument && statement.argument->last))
        return false;
    const std::string name = keyword.name;
    if (const gsdfile::Fault* fault = faultOf(statement, FaultKind::openArgument))
        report.add(faultPlace(document, *fault), "no \")\" closes the parenthesis");
    else if (const gsdfile::Fault* bad = faultOf(statement, FaultKind::badArgument); bad && takesArgument(keyword))
        report.add(faultPlace(document, *bad),
                   "in the parentheses of " + name + " belongs a number" + (name == kTwoBits ? " - number" : ""));
    else if (bad || (statement.argument && !takesArgument(keyword)))
        report.add(bad ? faultPlace(document, *bad) : spanOf(document.tokens()[statement.argument->openToken]),
                   name + " takes nothing in parentheses");
    else if (!statement.argument && takesArgument(keyword))
        report.add(keywordPlace(document, statement), name + " has no number in parentheses behind it");
    else if (statement.argument && statement.argument->last && name != kTwoBits)
        report.add(spanOf(document.tokens()[statement.argument->openToken]), name + " takes one number in parentheses");
    else
        return false;
    return true;
}

// One finding for a statement: where its form is lost, the rest of it follows.
void checkForm(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        if (reportArgument(document, statement, keyword, report))
            return;
        if (const gsdfile::Fault* second = faultOf(statement, FaultKind::secondEquals))
            report.add(faultPlace(document, *second), "a second \"=\"");
        else if (!isEqualsRight(statement) && takesEquals(keyword))
            report.add(keywordPlace(document, statement),
                       "no \"=\" stands between " + std::string(keyword.name) + " and its value");
        else if (!isEqualsRight(statement))
            report.add(spanOf(document.tokens()[statement.equalsToken]), std::string(keyword.name) + " takes no \"=\"");
    });
}

// Missing and surplus values

// [Slotnumber] in place of a parameter's name: of this library's dialect, with and without quotes.
bool isSlotNumberName(const Value& value)
{
    return value.kind == Value::word && value.text.starts_with('[') && value.text.ends_with(']');
}

bool isSlotNumber(const Statement& statement)
{
    return statement.values.size() == 2 && isSlotNumberName(statement.values.back());
}

std::string wanted(const Item& item, const Keyword& keyword)
{
    if (item.want == Want::text)
        return "a text in double quotes";
    if (item.want == Want::range)
        return "a range such as 8-11";
    return (item.least == 1 ? "a number" : counted(item.least, "number", "numbers")) + " from " +
           std::to_string(keyword.values.lowest) + " to " + std::to_string(keyword.values.highest);
}

// Where something is missing: at the last that stands there.
Span lastPlace(const Document& document, const Statement& statement)
{
    if (!statement.values.empty())
        return valuePlace(document, statement.values.back());
    return statement.equalsToken != gsdfile::kNone ? spanOf(document.tokens()[statement.equalsToken])
                                                   : keywordPlace(document, statement);
}

void checkMissing(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        if (hasFault(statement, FaultKind::openArgument))
            return;
        if (keyword.form == Form::type && statement.block != gsdfile::kNone &&
            isSlotNumber(document.statements()[document.blocks()[statement.block].opening]))
            return; // it has no default: the slot is known
        bool isReported = false;
        forEachItem(
            statement,
            [&](const Item& item, std::span<const Value> values) {
                if (values.size() >= item.least || isReported)
                    return;
                isReported = true;
                const std::string found = item.least > 1 ? "; " + std::to_string(values.size()) + " found" : "";
                report.add(
                    lastPlace(document, statement),
                    sentence(*item.name == '\0' ? "the value of " + std::string(keyword.name) : nameOf(keyword, item)) +
                        " is missing: " + wanted(item, keyword) + found);
            },
            [](std::span<const Value>) {});
        for (const gsdfile::Fault& fault : statement.faults)
            if (fault.kind == FaultKind::missingItem)
                report.add(faultPlace(document, fault), "no value stands behind the comma");
    });
}

void checkSurplus(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        if (isLost(statement))
            return;
        std::size_t most = 0;
        forEachItem(
            statement, [&](const Item&, std::span<const Value> values) { most += values.size(); },
            [&](std::span<const Value> surplus) {
                const Span place{valuePlace(document, surplus.front()).begin, valuePlace(document, surplus.back()).end};
                const Severity severity = keyword.type == ValueType::family ? Severity::warning : Severity::error;
                report.add(severity, place,
                           std::string(keyword.name) + " takes " +
                               (most == 0 ? "no value" : counted(most, "value", "values")) + " here, and " +
                               counted(statement.values.size(), "stands", "stand") + " there");
            });
    });
}

// Numbers of one list stand behind one another with a comma between them; the first is told.
void checkCommas(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        if (statement.values.size() < 2 || isLost(statement))
            return;
        forEachItem(
            statement,
            [&](const Item& item, std::span<const Value> values) {
                if (values.size() < 2 || item.want == Want::text || item.want == Want::family)
                    return;
                const auto isBare = [](const Value& value) { return !value.isBehindComma; };
                const auto bare = std::ranges::find_if(values.subspan(1), isBare);
                if (bare == values.end())
                    return;
                const auto count = static_cast<std::size_t>(std::ranges::count_if(values.subspan(1), isBare));
                const std::string others = count == 1 ? "" : ", nor ahead of " + std::to_string(count - 1) + " more";
                report
                    .add(valuePlace(document, *bare),
                         "no comma stands ahead of this value of " + std::string(keyword.name) + others)
                    .note(valuePlace(document, *std::prev(bare)), "the value before");
            },
            [](std::span<const Value>) {});
    });
}

// Numbers and texts

template <typename Visit>
void forEachValue(const Context& context, Visit visit)
{
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        forEachItem(
            statement,
            [&](const Item& item, std::span<const Value> values) {
                for (const Value& value : values)
                    visit(statement, keyword, item, value);
            },
            [](std::span<const Value>) {});
    });
}

void checkNumber(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachValue(context, [&](const Statement& statement, const Keyword& keyword, const Item& item,
                              const Value& value) {
        if (item.want == Want::text || item.want == Want::family || isOfKind(value, item.want) || isLost(statement))
            return;
        const Span place = valuePlace(document, value);
        const std::string found = textAt(document, place);
        std::string message = sentence(nameOf(keyword, item)) + " takes " + wanted(item, keyword) + ", and this is ";
        if (value.kind == Value::string)
            message += "a text";
        else if (value.kind == Value::word)
            message += "none: " + found;
        else
            message += value.kind == Value::range ? "a range" : "a number";
        report.add(place, message);
    });
}

void checkText(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword&) {
        for (const gsdfile::Fault& fault : statement.faults)
            if (fault.kind == FaultKind::openQuote)
                report.add(faultPlace(document, fault), "no double quote closes the text on its line");
    });
    forEachValue(context, [&](const Statement& statement, const Keyword& keyword, const Item& item,
                              const Value& value) {
        if (item.want != Want::text || isOfKind(value, item.want) || isLost(statement))
            return;
        if (isSlotNumberName(value) && keyword.type == ValueType::definition)
            report.add(Severity::hint, valuePlace(document, value),
                       textAt(document, valuePlace(document, value)) + " without quotes is of this library's dialect");
        else
            report.add(valuePlace(document, value), sentence(nameOf(keyword, item)) + " takes a text in double quotes");
    });
}

// Ranges

// Their types are certain and their ranges likely.
constexpr std::string_view kLikelyRanges[] = {"GSD_Revision",
                                              "Min_Slave_Intervall",
                                              "Max_Module",
                                              "Physical_Interface",
                                              "Slave_Redundancy_supp",
                                              "Subsys_Dir_Index",
                                              "Subsys_Module_Dir_Index",
                                              "Slave_Family",
                                              "Slot"};

Severity rangeSeverity(const Keyword& keyword)
{
    const std::string_view name = keyword.name;
    const bool isLikely = keyword.sureness != gsdfile::Sureness::sure || name.starts_with("MaxTsdr_") ||
                          std::ranges::find(kLikelyRanges, name) != std::end(kLikelyRanges);
    return isLikely ? Severity::warning : Severity::error;
}

std::string allowed(Range range)
{
    if (range.lowest == range.highest)
        return "only " + std::to_string(range.lowest) + " is allowed";
    return "allowed are " + std::to_string(range.lowest) + (range.highest == range.lowest + 1 ? " and " : " to ") +
           std::to_string(range.highest);
}

void checkNumberRange(const gsdfile::Number& number, const Keyword& keyword, const Item* item, const Document& document,
                      Report& report)
{
    // Without an item it is the number in parentheses.
    const bool isAllowed = item ? allowsValue(keyword, number.value) : keyword.arguments.holds(number.value);
    if (isAllowed && !number.isTooLarge)
        return;
    const Span place = spanOf(document.tokens()[number.token]);
    const std::string name =
        item ? nameOf(keyword, *item) : std::string("the number in parentheses of ") + keyword.name;
    report.add(item ? rangeSeverity(keyword) : Severity::error, place,
               sentence(name) + " is " + textAt(document, place) + "; " +
                   (item && keyword.type == ValueType::numberSet ? "allowed are " + allowedValues(keyword)
                                                                 : allowed(item ? keyword.values : keyword.arguments)));
}

void checkRange(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachKnown(context, [&](const Statement& statement, const Keyword& keyword) {
        if (!statement.argument || !takesArgument(keyword) || hasFault(statement, FaultKind::badArgument))
            return;
        checkNumberRange(statement.argument->first, keyword, nullptr, document, report);
        if (statement.argument->last)
            checkNumberRange(*statement.argument->last, keyword, nullptr, document, report);
    });
    forEachValue(context, [&](const Statement&, const Keyword& keyword, const Item& item, const Value& value) {
        if (item.want == Want::text || item.want == Want::family || !isOfKind(value, item.want))
            return;
        checkNumberRange(value.first, keyword, &item, document, report);
        if (value.kind == Value::range)
            checkNumberRange(value.last, keyword, &item, document, report);
    });
}

// Texts

std::size_t characters(std::string_view text, gsdfile::Encoding encoding)
{
    if (encoding != gsdfile::Encoding::utf8)
        return text.size();
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

void checkLength(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachValue(
        context, [&](const Statement& statement, const Keyword& keyword, const Item& item, const Value& value) {
            if (item.want != Want::text || value.kind != Value::string || keyword.maxText == 0 ||
                hasFault(statement, FaultKind::openQuote))
                return;
            const std::size_t length = characters(value.text, document.encoding());
            if (length > 0 && length <= keyword.maxText)
                return;
            const std::string most = std::to_string(keyword.maxText);
            const Severity severity = keyword.sureness == gsdfile::Sureness::sure ? Severity::error : Severity::warning;
            const std::string name = sentence(nameOf(keyword, item));
            report.add(severity, valuePlace(document, value),
                       length == 0
                           ? name + " is empty; 1 to " + most + " characters are allowed"
                           : name + " has " + std::to_string(length) + " characters; at most " + most + " are allowed");
        });
}

void checkVisible(const Context& context, Report& report)
{
    const Document& document = context.document;
    forEachValue(context, [&](const Statement&, const Keyword& keyword, const Item& item, const Value& value) {
        const bool isLatin1 = document.encoding() == gsdfile::Encoding::latin1;
        const auto isControl = [isLatin1](char c) {
            const auto code = static_cast<unsigned char>(c);
            return code < 0x20 || code == 0x7F || (isLatin1 && code >= 0x80 && code < 0xA0);
        };
        const auto control = std::ranges::find_if(value.text, isControl);
        if (value.kind != Value::string || control == value.text.end())
            return;
        const int code = static_cast<unsigned char>(*control);
        Span place = valuePlace(document, value);
        if (value.firstToken == value.lastToken && document.unit() == 1) { // else it may stand on another line
            place.begin += static_cast<std::uint32_t>(control - value.text.begin()) + 1; // behind the quote
            place.end = place.begin + 1;
        }
        report.add(place, sentence(nameOf(keyword, item)) + " has a character that nobody can see: " +
                              (code == '\t' ? "a tab" : "code " + std::to_string(code)));
    });
}

constexpr Rule kRules[] = {
    {"wrong-form", Severity::error, Group::form, "A statement has the form of its keyword.",
     "Most keywords stand before \"=\" and a value. Block ends and a few others stand alone, data types have no \"=\", "
     "and some keywords need a number in parentheses. Written otherwise, a statement is refused or skipped.",
     "Station_Type 0\nUnit_Diag_Bit = \"Fault\"", "Station_Type = 0\nUnit_Diag_Bit(0) = \"Fault\"", checkForm},
    {"missing-value", Severity::error, Group::form, "A statement has all the values of its keyword.",
     "A keyword without its value describes nothing, and readers refuse it or take 0.",
     "Station_Type =\nModule = \"DI 8\"", "Station_Type = 0\nModule = \"DI 8\" 0x10", checkMissing},
    {"surplus-value", Severity::error, Group::form, "A statement has no more values than its keyword takes.",
     "What follows the last value that the keyword takes is refused by some readers and overlooked by others. A "
     "comment begins with a semicolon; a comma announces another value.",
     "Max_Module = 4, 8\nFMS_supp = 0 DP only", "Max_Module = 4\nFMS_supp = 0 ; DP only", checkSurplus},
    {"missing-comma", Severity::error, Group::form, "A comma stands between the values of a list.",
     "Bytes, identifier bytes and the allowed values of a parameter are lists. Without the comma readers stop at the "
     "blank, refuse the line, or take two numbers for one. It is often missing where a list goes on in the next line.",
     "User_Prm_Data = 0x00, 0x01 0x02", "User_Prm_Data = 0x00, 0x01, 0x02", checkCommas},
    {"malformed-number", Severity::error, Group::form, "A number is decimal, or 0x and hexadecimal digits.",
     "Numbers have no decimal point, no unit and no quotes. A negative number is written in decimal digits.",
     "Ident_Number = 4A17h\nMax_Module = \"4\"", "Ident_Number = 0x4A17\nMax_Module = 4", checkNumber},
    {"malformed-text", Severity::error, Group::form, "A text stands between double quotes.",
     "A text begins and ends with a double quote in one statement and has none inside: there is no way to write one.",
     "Vendor_Name = \"Halden\nRevision = 1.0", "Vendor_Name = \"Halden\"\nRevision = \"1.0\"", checkText},
    {"value-out-of-range", Severity::error, Group::form, "A number is in the range of its keyword.",
     "A value outside cannot be sent, or means nothing. Where the range is not certain for every revision this is a "
     "warning.",
     "Max_Input_Len = 249\nFreeze_Mode_supp = 2", "Max_Input_Len = 244\nFreeze_Mode_supp = 1", checkRange},
    {"text-too-long", Severity::error, Group::form,
     "A text has as many characters as its keyword allows, and at least one.",
     "Names and texts have 1 to 32 characters, names of pictures 1 to 8, help texts and Info_Text 1 to 256. Some "
     "readers cut longer ones, others refuse the file.",
     "Bitmap_Device = \"HALDENDI8\"", "Bitmap_Device = \"HALDENDI\"", checkLength},
    {"invisible-character", Severity::warning, Group::form, "Texts have visible characters only.",
     "A tab or another control character in a text shows as a box or a gap, or breaks the line of a list. Codes 128 to "
     "159 are control characters in ISO 8859-1; some editors save dashes and curved quotes with them.",
     "Vendor_Name = \"Halden<TAB>Feldbus\"", "Vendor_Name = \"Halden Feldbus\"", checkVisible},
};

} // namespace

std::span<const Rule> valueRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
