#include "lint/deviceReader.h"

#include "gsdfile/keywords.h"

#include <algorithm>

namespace typdescriptor::lint {

namespace {

constexpr std::int64_t kHighestOffset = 255;
constexpr std::int64_t kHighestByte = 255;
constexpr std::int64_t kBitsOfByte = 8;

struct TypeRow {
    std::string_view keyword;
    unsigned bytes;
    std::int64_t lowest;
    std::int64_t highest;
};

constexpr TypeRow kTypes[] = {
    {"Unsigned8", 1, 0, 255},  {"Unsigned16", 2, 0, 65535},    {"Unsigned32", 4, 0, 4294967295},
    {"Signed8", 1, -128, 127}, {"Signed16", 2, -32768, 32767}, {"Signed32", 4, -2147483648, 2147483647},
    {"Bit", 1, 0, 1},          {"BitArea", 1, 0, 255},
};

// The bits of a Bit or BitArea line; the line is known when they can be gone by.
void setBits(TypeLine& type, const Statement& statement)
{
    const std::vector<Number>& bits = statement.argument;
    const bool isArea = type.keyword == "BitArea";
    type.isBits = true;
    type.isKnown = bits.size() == (isArea ? 2U : 1U) && bits.front().value >= 0 && bits.back().value < kBitsOfByte &&
                   (!isArea || bits.front().value < bits.back().value);
    type.hasReversedBits = isArea && bits.size() == 2 && bits.front().value >= bits.back().value;
    if (!type.isKnown)
        return;
    type.firstBit = static_cast<unsigned>(bits.front().value);
    type.bitCount = static_cast<unsigned>(bits.back().value - bits.front().value + 1);
    type.highest = (std::int64_t{1} << type.bitCount) - 1;
}

bool isOffset(const std::vector<Number>& argument)
{
    return argument.size() == 1 && argument.front().value >= 0 && argument.front().value <= kHighestOffset;
}

std::vector<std::uint8_t> bytesOf(std::span<const Number> numbers)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(numbers.size());
    for (const Number& number : numbers) {
        if (number.value < 0 || number.value > kHighestByte)
            return {};
        bytes.push_back(static_cast<std::uint8_t>(number.value));
    }
    return bytes;
}

Telegram telegramOf(std::string_view keyword)
{
    return keyword.starts_with("X_")   ? Telegram::extended
           : keyword.starts_with("F_") ? Telegram::safety
                                       : Telegram::plain;
}

} // namespace

DeviceReader::DeviceReader(DeviceIndex& device) : _device(device)
{
    _device.diagTexts.emplace_back();
}

DeviceReader::Handler DeviceReader::handlerOf(std::string_view keyword)
{
    struct Row {
        std::string_view keyword;
        Handler handler;
    };
    static constexpr Row kRows[] = {
        {"PrmText", &DeviceReader::beginTextBlock},
        {"Text", &DeviceReader::takeText},
        {"EndPrmText", &DeviceReader::endBlock},
        {"ExtUserPrmData", &DeviceReader::beginDefinition},
        {"Unsigned8", &DeviceReader::takeType},
        {"Unsigned16", &DeviceReader::takeType},
        {"Unsigned32", &DeviceReader::takeType},
        {"Signed8", &DeviceReader::takeType},
        {"Signed16", &DeviceReader::takeType},
        {"Signed32", &DeviceReader::takeType},
        {"Bit", &DeviceReader::takeType},
        {"BitArea", &DeviceReader::takeType},
        {"Prm_Text_Ref", &DeviceReader::takeTextReference},
        {"PrmTextRef", &DeviceReader::takeTextReference},
        {"EndExtUserPrmData", &DeviceReader::endBlock},
        {"Module", &DeviceReader::beginModule},
        {"KGPModule", &DeviceReader::beginModule},
        {"Module_Reference", &DeviceReader::takeModuleReference},
        {"EndModule", &DeviceReader::endBlock},
        {"Ext_Module_Prm_Data_Len", &DeviceReader::takeLength},
        {"X_Ext_Module_Prm_Data_Len", &DeviceReader::takeLength},
        {"F_Ext_Module_Prm_Data_Len", &DeviceReader::takeLength},
        {"Ext_User_Prm_Data_Ref", &DeviceReader::takePlacement},
        {"X_Ext_User_Prm_Data_Ref", &DeviceReader::takePlacement},
        {"F_Ext_User_Prm_Data_Ref", &DeviceReader::takePlacement},
        {"Ext_User_Prm_Data_Const", &DeviceReader::takeConstants},
        {"X_Ext_User_Prm_Data_Const", &DeviceReader::takeConstants},
        {"F_Ext_User_Prm_Data_Const", &DeviceReader::takeConstants},
        {"Data_Area_Beg", &DeviceReader::beginDataArea},
        {"Data_Area_End", &DeviceReader::endDataArea},
        {"SlotDefinition", &DeviceReader::beginSlots},
        {"Slot", &DeviceReader::takeSlot},
        {"EndSlotDefinition", &DeviceReader::endBlock},
        {"Unit_Diag_Bit", &DeviceReader::takeDiagBit},
        {"Unit_Diag_Bit_Help", &DeviceReader::takeDiagBit},
        {"Unit_Diag_Not_Bit", &DeviceReader::takeDiagBit},
        {"Unit_Diag_!Bit", &DeviceReader::takeDiagBit},
        {"Unit_Diag_Not_Bit_Help", &DeviceReader::takeDiagBit},
        {"X_Unit_Diag_Bit", &DeviceReader::takeDiagBit},
        {"X_Unit_Diag_Bit_Help", &DeviceReader::takeDiagBit},
        {"X_Unit_Diag_Not_Bit", &DeviceReader::takeDiagBit},
        {"X_Unit_Diag_Not_Bit_Help", &DeviceReader::takeDiagBit},
        {"Unit_Diag_Area", &DeviceReader::beginDiagArea},
        {"X_Unit_Diag_Area", &DeviceReader::beginDiagArea},
        {"Value", &DeviceReader::takeDiagValue},
        {"Value_Help", &DeviceReader::takeDiagValue},
        {"X_Value", &DeviceReader::takeDiagValue},
        {"X_Value_Help", &DeviceReader::takeDiagValue},
        {"Unit_Diag_Area_End", &DeviceReader::endBlock},
        {"X_Unit_Diag_Area_End", &DeviceReader::endTypedDiagArea},
        {"UnitDiagType", &DeviceReader::beginDiagType},
        {"EndUnitDiagType", &DeviceReader::endBlock},
    };
    const auto row = std::ranges::find(kRows, keyword, &Row::keyword);
    return row == std::end(kRows) ? &DeviceReader::keepEntry : row->handler;
}

// One for each row of the keywords' table.
const std::vector<DeviceReader::Handler>& DeviceReader::handlers()
{
    static const std::vector<Handler> kHandlers = [] {
        std::vector<Handler> all;
        for (const gsdfile::Keyword& row : gsdfile::keywords())
            all.push_back(handlerOf(row.name));
        return all;
    }();
    return kHandlers;
}

void DeviceReader::take(const Statement& statement)
{
    if (statement.keyword.empty()) { // no line that the library says anything about
        takeModuleReference(statement);
        return;
    }
    Entry& entry = _device.entries.emplace_back();
    entry.keyword = statement.keyword;
    entry.place = statement.place;
    if (statement.argument.size() == 1)
        entry.argument = statement.argument.front();
    entry.text = statement.text;
    entry.numbers = _device._numbers.copy(statement.numbers);
    _entry = &entry;

    if (statement.row != nullptr)
        (this->*handlers()[static_cast<std::size_t>(statement.row - gsdfile::keywords().data())])(statement);
    else
        keepEntry(statement);
}

void DeviceReader::finish()
{
    for (Definition& definition : _device.definitions) {
        if (!definition.textReference || definition.text != nullptr)
            continue;
        const auto later = _textBlocks.find(definition.textReference->value);
        if (later == _textBlocks.end())
            continue;
        definition.laterText = later->second;
        later->second->isUsed = true;
    }
    const auto resolve = [this](PrmBlocks& prm) {
        for (PrmBlock& block : prm.blocks) {
            for (Placement& placement : block.placements) {
                const auto later = _definitions.find(placement.reference.value);
                if (placement.definition != nullptr || later == _definitions.end())
                    continue;
                placement.laterDefinition = later->second;
                later->second->isUsed = true;
            }
        }
    };
    resolve(_device.stationPrm);
    for (Module& module : _device.modules)
        resolve(module.prm);
    _device.stationPrm.of(Telegram::plain).length = _device.entry("Max_User_Prm_Data_Len");
    if (_device.stationPrm.of(Telegram::plain).length == nullptr)
        _device.stationPrm.of(Telegram::plain).length = _device.entry("User_Prm_Data_Len");
    _device.stationPrm.of(Telegram::extended).length = _device.entry("X_Max_User_Prm_Data_Len");
}

void DeviceReader::leaveBlocks()
{
    _textBlock = nullptr;
    _definition = nullptr;
    _module = nullptr;
    _dataArea = nullptr;
    _isInSlots = false;
    _diagType = nullptr;
    _areaTexts = nullptr;
}

void DeviceReader::endBlock(const Statement& /*statement*/)
{
    leaveBlocks();
}

void DeviceReader::keepEntry(const Statement& statement)
{
    if (_dataArea != nullptr) {
        _dataArea->entries.push_back(_entry);
        return;
    }
    if (_module != nullptr) {
        _module->entries.push_back(_entry);
        return;
    }
    _device.stationEntries.push_back(_entry);
    if (statement.row == nullptr)
        return;
    const Entry*& first = _device._station[static_cast<std::size_t>(statement.row - gsdfile::keywords().data())];
    if (first == nullptr)
        first = _entry;
}

void DeviceReader::beginTextBlock(const Statement& statement)
{
    leaveBlocks();
    if (statement.numbers.empty())
        return;
    _textBlock = &_device.textBlocks.emplace_back();
    _textBlock->reference = statement.numbers.front();
    _textBlock->place = statement.place;
    _textBlocks.emplace(_textBlock->reference.value, _textBlock);
}

void DeviceReader::takeText(const Statement& statement)
{
    if (_textBlock != nullptr && statement.argument.size() == 1)
        _textBlock->items.push_back({statement.argument.front(), statement.text.value_or(Text{}), statement.place});
}

void DeviceReader::beginDefinition(const Statement& statement)
{
    leaveBlocks();
    if (statement.numbers.empty())
        return;
    _definition = &_device.definitions.emplace_back();
    _definition->reference = statement.numbers.front();
    _definition->name = statement.text.value_or(Text{});
    _definition->place = statement.place;
    _definitions.emplace(_definition->reference.value, _definition);
}

void DeviceReader::takeType(const Statement& statement)
{
    if (_definition == nullptr)
        return;
    const TypeRow& row = *std::ranges::find(kTypes, statement.keyword, &TypeRow::keyword);
    TypeLine type;
    type.keyword = row.keyword;
    type.place = statement.place;
    type.argument = statement.argumentPlace.end > 0 ? statement.argumentPlace : statement.place;
    type.lowest = row.lowest;
    type.highest = row.highest;
    type.bytes = row.bytes;
    type.bitCount = row.bytes * static_cast<unsigned>(kBitsOfByte);
    if (row.keyword.starts_with("Bit"))
        setBits(type, statement);
    if (statement.isWhole && !statement.numbers.empty()) {
        type.preset = statement.numbers.front();
        type.limits = _entry->numbers.subspan(1);
        type.isRange = statement.isRange && type.limits.size() == 2;
    }
    _definition->types.push_back(type);
}

void DeviceReader::takeTextReference(const Statement& statement)
{
    if (_definition == nullptr || statement.numbers.empty())
        return;
    _definition->textReference = statement.numbers.front();
    const auto found = _textBlocks.find(statement.numbers.front().value);
    if (found == _textBlocks.end())
        return;
    _definition->text = found->second;
    found->second->isUsed = true;
}

void DeviceReader::beginModule(const Statement& statement)
{
    leaveBlocks();
    _module = &_device.modules.emplace_back();
    _module->place = statement.place;
    _module->name = statement.text.value_or(Text{{}, statement.place});
    _module->isKgp = statement.keyword == "KGPModule";
    if (!statement.isWhole)
        return;
    _module->bytes = _entry->numbers;
    if (!_module->isKgp)
        _module->config = decodeModuleConfig(bytesOf(_module->bytes));
}

void DeviceReader::takeModuleReference(const Statement& statement)
{
    if (_module != nullptr && !_module->reference && !statement.numbers.empty())
        _module->reference = statement.numbers.front();
}

void DeviceReader::takeLength(const Statement& statement)
{
    if (_module != nullptr && _module->prm.of(telegramOf(statement.keyword)).length == nullptr)
        _module->prm.of(telegramOf(statement.keyword)).length = _entry;
    keepEntry(statement);
}

PrmBlock& DeviceReader::prmBlockOf(std::string_view keyword)
{
    return (_module != nullptr ? _module->prm : _device.stationPrm).of(telegramOf(keyword));
}

void DeviceReader::takePlacement(const Statement& statement)
{
    keepEntry(statement);
    if (!isOffset(statement.argument) || statement.numbers.empty())
        return;
    Placement placement{statement.keyword, statement.place, statement.argument.front(), statement.numbers.front()};
    const auto found = _definitions.find(placement.reference.value);
    if (found != _definitions.end()) {
        placement.definition = found->second;
        found->second->isUsed = true;
    }
    prmBlockOf(statement.keyword).placements.push_back(placement);
}

void DeviceReader::takeConstants(const Statement& statement)
{
    keepEntry(statement);
    if (isOffset(statement.argument) && statement.isWhole)
        prmBlockOf(statement.keyword)
            .constants.push_back({statement.keyword, statement.place, statement.argument.front(), _entry->numbers});
}

void DeviceReader::beginDataArea(const Statement& statement)
{
    if (_module == nullptr)
        return;
    _dataArea = &_module->areas.emplace_back();
    _dataArea->place = statement.place;
}

void DeviceReader::endDataArea(const Statement& /*statement*/)
{
    _dataArea = nullptr;
}

void DeviceReader::beginSlots(const Statement& /*statement*/)
{
    leaveBlocks();
    _isInSlots = true;
    if (_device.slotDefinition == nullptr)
        _device.slotDefinition = _entry;
}

void DeviceReader::takeSlot(const Statement& statement)
{
    if (!_isInSlots || statement.argument.size() != 1 || statement.numbers.size() < 2 || !statement.isWhole)
        return;
    Slot& slot = _device.slots.emplace_back();
    slot.place = statement.place;
    slot.number = statement.argument.front();
    slot.name = statement.text.value_or(Text{});
    slot.preset = statement.numbers.front();
    slot.allowed = _entry->numbers.subspan(1);
    slot.isRange = statement.isRange && slot.allowed.size() == 2;
}

DiagTexts& DeviceReader::diagTextsOf(std::string_view keyword)
{
    return keyword.starts_with("X_") && _diagType != nullptr ? *_diagType : _device.diagTexts.front();
}

void DeviceReader::takeDiagBit(const Statement& statement)
{
    keepEntry(statement);
    if (statement.argument.size() != 1 || (statement.keyword.starts_with("X_") && _diagType == nullptr))
        return;
    const bool isClear = statement.keyword.find("Not_") != std::string_view::npos ||
                         statement.keyword.find('!') != std::string_view::npos;
    diagTextsOf(statement.keyword).bits.push_back({_entry, !isClear, statement.keyword.ends_with("_Help")});
}

void DeviceReader::beginDiagArea(const Statement& statement)
{
    if (!statement.keyword.starts_with("X_"))
        leaveBlocks();
    _areaTexts = &diagTextsOf(statement.keyword);
    DiagArea& area = _areaTexts->areas.emplace_back();
    area.place = statement.place;
    if (statement.numbers.size() != 2 || !statement.isRange)
        return;
    area.first = statement.numbers[0];
    area.last = statement.numbers[1];
}

void DeviceReader::takeDiagValue(const Statement& statement)
{
    if (_areaTexts != nullptr)
        _areaTexts->areas.back().values.push_back({_entry, statement.keyword.ends_with("_Help")});
}

void DeviceReader::beginDiagType(const Statement& /*statement*/)
{
    leaveBlocks();
    _diagType = &_device.diagTexts.emplace_back();
    _diagType->type = _entry;
}

void DeviceReader::endTypedDiagArea(const Statement& /*statement*/)
{
    _areaTexts = nullptr;
}

} // namespace typdescriptor::lint
