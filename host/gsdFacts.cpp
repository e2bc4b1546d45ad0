#include "host/gsdFacts.h"

#include "host/parameterValue.h"
#include "host/text.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace typdescriptor {

namespace {

using gsdfile::BlockKind;
using gsdfile::Document;
using gsdfile::kNone;
using gsdfile::Statement;
using gsdfile::Value;

constexpr unsigned kKeptBits = 16; // of a parameter, by the library

/// An ExtUserPrmData block, but for its place. Of several blocks with one reference the first counts, as for the library.
struct Definition {
    std::size_t block = kNone;
    Parameter parameter;
    bool isSlotNumber = false;
    std::optional<std::int64_t> texts; // reference of its PrmText block
};

/// A PrmText block; of several with one reference the first counts.
struct TextBlock {
    std::size_t block = kNone;
    std::vector<ValueText> texts;
};

/// A Module block.
struct GsdModule {
    std::string name;
    std::vector<std::uint8_t> bytes;
    std::optional<unsigned> reference;
    std::string infoText;
    std::vector<ValueText> channelTexts;
    std::vector<const Statement*> parameterReferences;
    bool hasSafetyParameters = false;
    bool isPreset = false;
};

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

/// A number that is to be none below 0 and none of more than 32 bits, whatever stands in the file.
unsigned small(std::int64_t number)
{
    return static_cast<unsigned>(std::clamp<std::int64_t>(number, 0, 0xFFFFFFFF));
}

bool isSafetyKeyword(const Statement& statement)
{
    return isSameText(statement.name.substr(0, 2), "F_");
}

/// Reads a document once, from its first statement to its last.
class FactReader {
public:
    FactReader(const Document& source, Device& target) : document(source), device(target) {}

    void read();

private:
    std::string textOf(const Value& value) const;
    std::string textOf(const Statement& statement) const;
    BlockKind blockOf(const Statement& statement) const;
    const Statement& openingOf(const Statement& statement) const;

    void readStation(const Statement& statement);
    void readModule(const Statement& statement);
    void readDefinition(const Statement& statement);
    void readType(const Statement& statement, Parameter& parameter) const;
    void readValueText(const Statement& statement);
    void readSlot(const Statement& statement);
    void readDiagnosis(const Statement& statement);
    void readDiagnosisBlock(const Statement& statement, BlockKind kind);
    DiagnosisTexts& textsOf(std::size_t block);
    void addBit(DiagnosisTexts& texts, const Statement& statement, std::string BitText::*member) const;
    void addValue(DiagnosisTexts& texts, const Statement& statement, std::size_t area, bool isHelp) const;
    void addArea(const Statement& statement, std::size_t block);

    const Definition* definitionOf(const Statement& statement) const;
    std::vector<ValueText> textsOf(std::int64_t reference) const;
    void applyModules();
    void namePresets();
    void applyParameters(const std::vector<const Statement*>& references, ParameterArea& area) const;
    int ownBlock(int index, const GsdModule& module);

    const Document& document;
    Device& device;
    std::map<std::int64_t, Definition> definitions;
    std::map<std::int64_t, TextBlock> valueTexts;
    std::vector<GsdModule> modules;
    std::vector<const Statement*> stationReferences;
    std::map<std::size_t, std::pair<std::size_t, std::size_t>> areas; // of a block: in diagnosisTypes (or kNone), index
    DiagnosisTexts stationTexts;
};

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
        facts.maxTsdr.push_back({std::string(name.substr(kTsdr.size())), small(*number)});
    else if (name == "Max_Module" && *number > 0)
        facts.maxModule = small(*number);
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
    if (statement.isReference || is(statement, "Module_Reference")) {
        if (const auto number = numberOf(statement))
            module.reference = small(*number);
    } else if (is(statement, "Ext_User_Prm_Data_Ref")) {
        module.parameterReferences.push_back(&statement);
    } else if (is(statement, "Info_Text")) {
        module.infoText = textOf(statement);
    } else if ((is(statement, "Channel_Diag") || is(statement, "ChannelDiag")) && statement.argument) {
        module.channelTexts.push_back({statement.argument->first.value, textOf(statement), {}});
    } else if (is(statement, "Channel_Diag_Help") && statement.argument) {
        for (ValueText& text : module.channelTexts) {
            if (text.value == statement.argument->first.value)
                text.help = textOf(statement);
        }
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
    rule.slot = small(statement.argument->first.value);
    rule.name = textOf(statement);
    for (const Value& value : statement.values) {
        if (value.kind != Value::number && value.kind != Value::range)
            continue;
        const unsigned first = small(value.first.value);
        const unsigned last = value.kind == Value::range ? small(value.last.value) : first;
        if (!rule.preset)
            rule.preset = first; // and only what follows is allowed
        else
            rule.allowed.push_back({first, last});
    }
    if (rule.allowed.empty() && rule.preset)
        rule.allowed.push_back({*rule.preset, *rule.preset});
    device.gsd->slots.push_back(std::move(rule));
}

/// The texts that a block of the diagnosis belongs to: those of the station, or of the UnitDiagType around it.
DiagnosisTexts& FactReader::textsOf(std::size_t block)
{
    for (; block != kNone; block = document.blocks()[block].parent) {
        if (document.blocks()[block].kind != BlockKind::unitDiagType)
            continue;
        const Statement& opening = document.statements()[document.blocks()[block].opening];
        const unsigned number = small(numberOf(opening).value_or(0));
        auto& types = device.diagnosisTypes;
        const auto known = std::find_if(types.begin(), types.end(),
                                        [number](const DiagnosisType& type) { return type.number == number; });
        if (known != types.end())
            return known->texts;
        types.push_back({number, {}});
        return types.back().texts;
    }
    return stationTexts;
}

void FactReader::addBit(DiagnosisTexts& texts, const Statement& statement, std::string BitText::*member) const
{
    if (!statement.argument)
        return;
    const unsigned position = small(statement.argument->first.value);
    const unsigned byte = position / 8 + 1;
    const unsigned bit = position % 8;
    auto known = std::find_if(texts.bits.begin(), texts.bits.end(),
                              [=](const BitText& text) { return text.byte == byte && text.bit == bit; });
    if (known == texts.bits.end()) {
        texts.bits.push_back({byte, bit, {}, {}, {}, {}});
        known = texts.bits.end() - 1;
    }
    (*known).*member = textOf(statement);
}

void FactReader::addArea(const Statement& statement, std::size_t block)
{
    constexpr std::int64_t kMostBits = 16;
    if (statement.values.empty() || statement.values.front().kind != Value::range)
        return;
    const std::int64_t first = statement.values.front().first.value;
    const std::int64_t last = statement.values.front().last.value;
    if (first < 0 || last < first || last - first >= kMostBits)
        return;
    const unsigned start = small(first);
    DiagnosisTexts& texts = textsOf(document.blocks()[block].parent);
    areas[block] = {0, texts.areas.size()};
    texts.areas.push_back({start / 8 + 1, start % 8, start % 8 + static_cast<unsigned>(last - first), {}});
}

void FactReader::addValue(DiagnosisTexts& texts, const Statement& statement, std::size_t area, bool isHelp) const
{
    if (!statement.argument || area >= texts.areas.size())
        return;
    std::vector<ValueText>& values = texts.areas[area].texts;
    const std::int64_t value = statement.argument->first.value;
    auto known =
        std::find_if(values.begin(), values.end(), [value](const ValueText& text) { return text.value == value; });
    if (known == values.end())
        known = values.insert(values.end(), {value, {}, {}});
    (isHelp ? known->help : known->text) = textOf(statement);
}

void FactReader::readDiagnosis(const Statement& statement)
{
    struct Row {
        const char* keyword;
        std::string BitText::*member;
    };
    constexpr Row kRows[] = {{"Unit_Diag_Bit", &BitText::set},
                             {"X_Unit_Diag_Bit", &BitText::set},
                             {"Unit_Diag_Not_Bit", &BitText::clear},
                             {"Unit_Diag_!Bit", &BitText::clear},
                             {"X_Unit_Diag_Not_Bit", &BitText::clear},
                             {"Unit_Diag_Bit_Help", &BitText::setHelp},
                             {"X_Unit_Diag_Bit_Help", &BitText::setHelp},
                             {"Unit_Diag_Not_Bit_Help", &BitText::clearHelp},
                             {"X_Unit_Diag_Not_Bit_Help", &BitText::clearHelp}};
    for (const Row& row : kRows) {
        if (is(statement, row.keyword))
            addBit(textsOf(statement.block), statement, row.member);
    }
    const auto area = areas.find(statement.block);
    if (area == areas.end())
        return;
    const bool isHelp = is(statement, "Value_Help") || is(statement, "X_Value_Help");
    if (isHelp || is(statement, "Value") || is(statement, "X_Value"))
        addValue(textsOf(document.blocks()[statement.block].parent), statement, area->second.second, isHelp);
}

void FactReader::read()
{
    device.gsd.emplace();
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
    if (!stationTexts.bits.empty() || !stationTexts.areas.empty())
        device.diagnosisTexts = std::move(stationTexts);
    applyParameters(stationReferences, device.parameters);
    applyModules();
    namePresets();
}

const Definition* FactReader::definitionOf(const Statement& statement) const
{
    const auto reference = numberOf(statement);
    if (!reference)
        return nullptr;
    const auto known = definitions.find(*reference);
    return known == definitions.end() ? nullptr : &known->second;
}

std::vector<ValueText> FactReader::textsOf(std::int64_t reference) const
{
    const auto texts = valueTexts.find(reference);
    return texts == valueTexts.end() ? std::vector<ValueText>() : texts->second.texts;
}

/// The library gives the place of a slot number without its hundreds.
void placeSlotNumber(unsigned byte, ParameterArea& area)
{
    constexpr unsigned kHundred = 100;
    for (SlotNumberField& field : area.slotNumbers) {
        if (byte % kHundred == field.byte)
            field.byte = byte;
    }
}

/// What the library keeps of a parameter; null when it leaves it out.
Parameter* placedAs(const Parameter& parameter, ParameterArea& area)
{
    for (Parameter& known : area.parameters) {
        if (known.byte == parameter.byte && known.firstBit == parameter.firstBit &&
            known.bitCount == std::min(parameter.bitCount, kKeptBits))
            return &known;
    }
    return nullptr;
}

/// Describes the parameters of an area as the file does, and puts in the defaults that the library's 16 bits do not hold.
void FactReader::applyParameters(const std::vector<const Statement*>& references, ParameterArea& area) const
{
    for (const Statement* statement : references) {
        const Definition* const definition = definitionOf(*statement);
        if (definition == nullptr || !statement->argument)
            continue;
        Parameter parameter = definition->parameter;
        parameter.byte = small(statement->argument->first.value);
        if (definition->isSlotNumber) {
            placeSlotNumber(parameter.byte, area);
            continue;
        }
        const bool isLong = parameter.bitCount > kKeptBits;
        if (definition->texts)
            parameter.texts = textsOf(*definition->texts);
        Parameter* const known = placedAs(parameter, area);
        if (known == nullptr)
            continue;
        if (isLong)
            putValue(parameter, parameter.defaultValue, area.bytes);
        *known = std::move(parameter);
    }
}

/// A block of a module's own: modules that the library lets share one may differ in what it does not keep.
int FactReader::ownBlock(int index, const GsdModule& module)
{
    ParameterArea own = device.blocks[static_cast<std::size_t>(index)];
    applyParameters(module.parameterReferences, own);
    for (std::size_t i = 0; i < device.blocks.size(); ++i) {
        if (isSameArea(device.blocks[i], own))
            return static_cast<int>(i);
    }
    device.blocks.push_back(std::move(own));
    return static_cast<int>(device.blocks.size()) - 1;
}

/// Finds each of the device's modules in the file by its bytes and name, and adds what the file says of it.
void FactReader::applyModules()
{
    std::vector<bool> isTaken(modules.size());
    std::vector<bool> isDescribed(device.blocks.size()); // by the first of its modules
    for (Module& module : device.modules) {
        std::vector<std::uint8_t> bytes;
        for (const ModulePart& part : module.parts)
            bytes.insert(bytes.end(), part.identifier.wireBytes.begin(), part.identifier.wireBytes.end());
        for (std::size_t i = 0; i < modules.size(); ++i) {
            if (isTaken[i] || modules[i].bytes != bytes || !isNameOf(module.name, modules[i].name))
                continue;
            isTaken[i] = true;
            module.fullName = modules[i].name;
            module.reference = modules[i].reference;
            module.infoText = modules[i].infoText;
            module.channelTexts = modules[i].channelTexts;
            module.hasSafetyParameters = modules[i].hasSafetyParameters;
            for (ModulePart& part : module.parts) {
                if (part.block == kNoBlock)
                    continue;
                const auto block = static_cast<std::size_t>(part.block);
                if (block < isDescribed.size() && !isDescribed[block]) {
                    isDescribed[block] = true;
                    applyParameters(modules[i].parameterReferences, device.blocks[block]);
                } else {
                    part.block = ownBlock(part.block, modules[i]);
                }
            }
            break;
        }
    }
}

/// The presets are the identifiers of the modules that are preset, in the order of the file; of a device with a single
/// module they are that module's.
void FactReader::namePresets()
{
    std::size_t slot = 0;
    for (const GsdModule& module : modules) {
        if (!module.isPreset && modules.size() > 1)
            continue;
        for (std::size_t bytes = 0; slot < device.presetSlots.size() && bytes < module.bytes.size(); ++slot) {
            device.presetSlots[slot].name = module.name;
            bytes += device.presetSlots[slot].identifier.wireBytes.size();
        }
    }
}

} // namespace

void addGsdFacts(Device& device, std::string gsd)
{
    const Document document(std::move(gsd));
    FactReader(document, device).read();
}

} // namespace typdescriptor
