#include "host/gsdFacts.h"

#include "host/gsdFactReader.h"
#include "host/text.h"

#include <algorithm>

namespace typdescriptor {

using gsdfile::BlockKind;
using gsdfile::Document;
using gsdfile::kNone;
using gsdfile::Statement;
using gsdfile::Value;

namespace {

bool isSafetyKeyword(const Statement& statement)
{
    return isSameText(statement.name.substr(0, 2), "F_");
}

} // namespace

bool is(const Statement& statement, std::string_view keyword)
{
    return statement.keyword != nullptr && keyword == statement.keyword->name;
}

std::optional<std::int64_t> numberOf(const Statement& statement)
{
    if (statement.values.empty() || statement.values.front().kind != Value::number)
        return std::nullopt;
    return statement.values.front().first.value;
}

unsigned asUnsigned(std::int64_t number)
{
    return static_cast<unsigned>(std::clamp<std::int64_t>(number, 0, 0xFFFFFFFF));
}

std::string FactReader::textOf(const Value& value) const
{
    const std::string_view text = value.text;
    return isUtf8(text) ? fromUtf8(text) : fromLatin1(text);
}

std::string FactReader::textOf(const Statement& statement) const
{
    const auto text = std::find_if(statement.values.begin(), statement.values.end(),
                                   [](const Value& value) { return value.kind == Value::string; });
    return text == statement.values.end() ? std::string() : textOf(*text);
}

BlockKind FactReader::blockOf(const Statement& statement) const
{
    return statement.block == kNone ? BlockKind::none : document.blocks()[statement.block].kind;
}

const Statement& FactReader::openingOf(const Statement& statement) const
{
    return document.statements()[document.blocks()[statement.block].opening];
}

void FactReader::readStation(const Statement& statement)
{
    struct TextRow {
        const char* keyword;
        std::string GsdFacts::*member;
    };
    constexpr TextRow kTexts[] = {{"Model_Name", &GsdFacts::modelName},
                                  {"Vendor_Name", &GsdFacts::vendorName},
                                  {"Revision", &GsdFacts::revision},
                                  {"Hardware_Release", &GsdFacts::hardwareRelease},
                                  {"Software_Release", &GsdFacts::softwareRelease},
                                  {"Info_Text", &GsdFacts::infoText}};
    constexpr std::string_view kTsdr = "MaxTsdr_";
    GsdFacts& facts = *device.gsd;
    addChannelText(statement, channelTexts);
    for (const TextRow& row : kTexts) {
        if (is(statement, row.keyword) && (facts.*row.member).empty())
            facts.*row.member = textOf(statement);
    }
    if (isSafetyKeyword(statement))
        facts.hasSafetyParameters = true;
    const auto number = numberOf(statement);
    if (statement.keyword == nullptr || !number)
        return;
    const std::string_view name = statement.keyword->name;
    if (name.substr(0, kTsdr.size()) == kTsdr)
        facts.maxTsdr.push_back({std::string(name.substr(kTsdr.size())), asUnsigned(*number)});
    else if (name == "Max_Module" && *number > 0)
        facts.maxModule = asUnsigned(*number);
    else if (name == "DPV1_Slave")
        device.isDpv1 = *number != 0;
    else if (statement.keyword->readerId == gsdfile::kNotRead && statement.keyword->form == gsdfile::Form::value &&
             !isSafetyKeyword(statement))
        facts.others.push_back({std::string(name), *number});
    if (name == "Ext_User_Prm_Data_Ref")
        stationReferences.push_back(&statement);
}

void FactReader::readModule(const Statement& statement)
{
    GsdModule& module = modules.back();
    addChannelText(statement, module.channelTexts);
    if (statement.isReference || is(statement, "Module_Reference")) {
        if (const auto number = numberOf(statement))
            module.reference = asUnsigned(*number);
    } else if (is(statement, "Ext_User_Prm_Data_Ref")) {
        module.parameterReferences.push_back(&statement);
    } else if (is(statement, "Info_Text")) {
        module.infoText = textOf(statement);
    } else if (is(statement, "Preset")) {
        module.isPreset = numberOf(statement).value_or(0) != 0;
    } else if (isSafetyKeyword(statement)) {
        module.hasSafetyParameters = true;
    }
}

/// Data type, default, and a range or a list of values.
void FactReader::readType(const Statement& statement, Parameter& parameter) const
{
    struct Row {
        const char* keyword;
        Parameter::Type type;
        unsigned bits;
    };
    constexpr Row kRows[] = {{"Unsigned8", Parameter::kByte, 8},
                             {"Unsigned16", Parameter::kUint, 16},
                             {"Unsigned32", Parameter::kUint32, 32},
                             {"Signed8", Parameter::kInt8, 8},
                             {"Signed16", Parameter::kInt, 16},
                             {"Signed32", Parameter::kInt32, 32},
                             {"Bit", Parameter::kBit, 1},
                             {"BitArea", Parameter::kBitGroup, 1}};
    for (const Row& row : kRows) {
        if (!is(statement, row.keyword))
            continue;
        parameter.type = row.type;
        parameter.bitCount = row.bits;
    }
    if (statement.argument) {
        parameter.firstBit = static_cast<unsigned>(statement.argument->first.value & 7);
        if (statement.argument->last)
            parameter.bitCount = static_cast<unsigned>(statement.argument->last->value & 7) - parameter.firstBit + 1;
    }
    const std::int64_t span = std::int64_t{1} << parameter.bitCount;
    parameter.minimum = parameter.isSigned() ? -span / 2 : 0;
    parameter.maximum = parameter.minimum + span - 1;
    if (const auto number = numberOf(statement))
        parameter.defaultValue = *number;
    for (std::size_t i = 1; i < statement.values.size(); ++i) {
        const Value& value = statement.values[i];
        if (value.kind == Value::range) {
            parameter.minimum = value.first.value;
            parameter.maximum = value.last.value;
        } else if (value.kind == Value::number) {
            parameter.allowed.push_back(value.first.value);
        }
    }
    if (!parameter.allowed.empty()) {
        const auto [least, most] = std::minmax_element(parameter.allowed.begin(), parameter.allowed.end());
        parameter.minimum = *least;
        parameter.maximum = *most;
    }
}

void FactReader::readDefinition(const Statement& statement)
{
    const auto reference = numberOf(openingOf(statement));
    if (!reference)
        return;
    Definition& definition = definitions[*reference];
    if (definition.block == kNone)
        definition.block = statement.block;
    if (definition.block != statement.block)
        return;
    if (statement.keyword != nullptr && statement.keyword->form == gsdfile::Form::type)
        readType(statement, definition.parameter);
    else if (is(statement, "Prm_Text_Ref") || is(statement, "PrmTextRef"))
        definition.texts = numberOf(statement);
    else if (is(statement, "Changeable"))
        definition.parameter.isChangeable = numberOf(statement).value_or(1) != 0;
    else if (is(statement, "Visible"))
        definition.parameter.isVisible = numberOf(statement).value_or(1) != 0;
    const auto& names = openingOf(statement).values;
    definition.parameter.name = textOf(openingOf(statement));
    definition.isSlotNumber = !names.empty() && isSameText(textOf(names.back()), "[SlotNumber]");
}

void FactReader::readValueText(const Statement& statement)
{
    const auto reference = numberOf(openingOf(statement));
    if (!reference || !is(statement, "Text") || !statement.argument)
        return;
    TextBlock& known = valueTexts[*reference];
    if (known.block == kNone)
        known.block = statement.block;
    if (known.block == statement.block)
        known.texts.push_back({statement.argument->first.value, textOf(statement), {}});
}

/// Slot(number) = "name" default, then a range or a list of module references.
void FactReader::readSlot(const Statement& statement)
{
    if (!is(statement, "Slot") || !statement.argument)
        return;
    SlotRule rule;
    rule.slot = asUnsigned(statement.argument->first.value);
    rule.name = textOf(statement);
    for (const Value& value : statement.values) {
        if (value.kind != Value::number && value.kind != Value::range)
            continue;
        const unsigned first = asUnsigned(value.first.value);
        const unsigned last = value.kind == Value::range ? asUnsigned(value.last.value) : first;
        if (!rule.preset)
            rule.preset = first; // and only what follows is allowed
        else
            rule.allowed.push_back({first, last});
    }
    if (rule.allowed.empty() && rule.preset)
        rule.allowed.push_back({*rule.preset, *rule.preset});
    device.gsd->slots.push_back(std::move(rule));
}

void FactReader::read()
{
    device.gsd.emplace();
    device.isDpv1 = false; // unless the file says otherwise
    for (std::size_t i = 0; i < document.blocks().size(); ++i) {
        const Statement& opening = document.statements()[document.blocks()[i].opening];
        if (document.blocks()[i].kind == BlockKind::unitDiagArea ||
            document.blocks()[i].kind == BlockKind::xUnitDiagArea)
            addArea(opening, i);
    }
    for (const Statement& statement : document.statements()) {
        readDiagnosis(statement);
        if (is(statement, "Module")) {
            GsdModule& module = modules.emplace_back();
            module.name = textOf(statement);
            for (const Value& value : statement.values) {
                if (value.kind == Value::number)
                    module.bytes.push_back(static_cast<std::uint8_t>(value.first.value));
            }
            continue;
        }
        switch (blockOf(statement)) {
        case BlockKind::none:
            readStation(statement);
            break;
        case BlockKind::module:
            if (!modules.empty())
                readModule(statement);
            break;
        case BlockKind::extUserPrmData:
            readDefinition(statement);
            break;
        case BlockKind::prmText:
            readValueText(statement);
            break;
        case BlockKind::slotDefinition:
            readSlot(statement);
            break;
        default:
            break;
        }
    }
    applyDiagnosis();
    applyParameters(stationReferences, device.parameters);
    applyModules();
    namePresets();
}

void addGsdFacts(Device& device, std::string gsd)
{
    const Document document(std::move(gsd));
    FactReader(document, device).read();
}

} // namespace typdescriptor
