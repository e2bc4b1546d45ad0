// Modules, and the parameter data of station and modules: fixed bytes, definitions of parameters, and where constants
// and parameters are placed.

#include "generator/splitConfig.h"
#include "gsd/handlers.h"

#include <algorithm>
#include <array>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kKgpConfigBytes = 5;
constexpr std::size_t kMaxEnumeratedValues = 16;
constexpr std::uint32_t kLastBit = 7;
constexpr std::string_view kSlotNumberName = "[SlotNumber]";
constexpr const char* kBareSlotNumberName = "[Slotnumber]"; // as it may stand without quotes

/// How a value of a data type is read, the bytes that it takes in the parameter image, and the range when its line
/// gives none. Hosts rely on the unsigned ranges of the types that the format does not have.
struct DataTypeFormat {
    IntegerKind kind;
    std::size_t bytes;
    std::uint32_t minValue;
    std::uint32_t maxValue;
};

constexpr auto kMinSigned16 = static_cast<std::uint32_t>(-32768);

// From the first data type on.
constexpr std::array<DataTypeFormat, kBit - kUnsigned8 + 1> kDataTypes{{
    {IntegerKind::unsigned8, 1, 0, 0xFF},
    {IntegerKind::unsigned16, 2, 0, 0xFFFF},
    {IntegerKind::unsigned32, 4, 0, 0xFFFF},
    {IntegerKind::signed8, 1, 0, 0xFF},
    {IntegerKind::signed16, 2, kMinSigned16, 32767},
    {IntegerKind::signed32, 4, 0, 0xFFFF},
    {IntegerKind::unsigned8, 1, 0, 0}, // a bit area's maximum depends on its bits
    {IntegerKind::unsigned8, 1, 0, 1},
}};

const DataTypeFormat& formatOf(const GSD_EXT_PRM_DEF& definition)
{
    return kDataTypes[definition.dataType - kUnsigned8];
}

std::size_t prmLength(const GsdReading& reading)
{
    if (reading.openBlock == kInModule)
        return reading.currentModule->prm != nullptr ? reading.currentModule->prm->data.size() : 0;
    const GsdModel& model = reading.model;
    return model.maxUserPrmDataLen != 0 ? model.maxUserPrmDataLen : model.userPrmDataLen;
}

int placePrmData(GsdReading& reading, std::size_t offset, std::size_t length)
{
    const std::size_t end = offset + length;
    if (end > prmLength(reading))
        return kErrGsdTooMany;
    if (reading.openBlock != kInModule)
        reading.model.prmDataEnd = std::max(reading.model.prmDataEnd, static_cast<std::int32_t>(end));
    return kOk;
}

GSD_MODULE& appendModule(GsdReading& reading, GSD_LIST<GSD_MODULE>& list, GSD_LIST<GSD_MODULE_PRM>& prms,
                         const NamedBytes& value)
{
    Arena& arena = reading.model.arena;
    GSD_MODULE& module = list.append(arena, {});
    value.bytes.copyTo(module.keep(arena, value.name, value.bytes.count).data());
    reading.currentModule = &module;
    reading.currentModulePrms = &prms;
    return module;
}

/// Reads where the bits of a definition stand, of the data types that are bits.
int readBitPlace(const char* text, GSD_EXT_PRM_DEF& definition)
{
    ValueReader argument(text);
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (definition.dataType == kBitArea) {
        const NumberRange bits = argument.range(IntegerKind::unsigned8);
        if (argument.failed())
            return argument.finish();
        first = bits.first;
        last = bits.last;
        if (first >= last)
            return kErrGsdNumber;
    } else if (definition.dataType == kBit) {
        first = last = argument.unsigned8();
        if (argument.failed())
            return argument.finish();
    } else {
        return kOk;
    }
    if (last > kLastBit)
        return kErrGsdNumber;
    definition.bitOffset = static_cast<std::uint8_t>(first);
    definition.bitCount = static_cast<std::uint8_t>(last - first + 1);
    return kOk;
}

/// Reads default and range of a definition.
int readValueRange(ValueReader& value, GSD_EXT_PRM_DEF& definition)
{
    const DataTypeFormat& format = formatOf(definition);
    definition.defaultValue = value.number(format.kind);
    if (value.failed())
        return value.finish();
    if (value.atEnd()) {
        definition.minValue = format.minValue;
        definition.maxValue = definition.dataType == kBitArea ? (1U << definition.bitCount) - 1 : format.maxValue;
        return value.finish();
    }
    if (value.tryRange(format.kind, definition.minValue, definition.maxValue) < 0) {
        const NumberList list = value.list(kMaxEnumeratedValues, format.kind);
        if (list.count == 1)
            return kErrGsdSyntax;
        if (list.count > 1) {
            definition.minValue = list.first();
            definition.maxValue = list.last();
        }
    }
    return value.finish();
}

} // namespace

int handleModule(GsdReading& reading, const NamedBytes& value)
{
    GsdModel& model = reading.model;
    GSD_MODULE& module = appendModule(reading, model.modules, model.modulePrms, value);
    const int result = splitModuleConfig(module, model.multiIdentifierModuleSeen);
    if (result == kOk)
        reading.openBlock = kInModule;
    return result;
}

int handleKgpModule(GsdReading& reading, const NamedBytes& value)
{
    if (value.bytes.count != kKgpConfigBytes)
        return kErrGsdConfiguration;
    appendModule(reading, reading.model.kgpModules, reading.model.kgpModulePrms, value);
    reading.openBlock = kInModule;
    return kOk;
}

int checkModule(GsdReading& reading)
{
    GSD_MODULE_PRM* const prm = reading.currentModule->prm;
    if (prm != nullptr && (!prm->data.empty() || !prm->refs.empty()))
        prm->blockNumber = reading.model.nextParamModuleNumber++;
    return kOk;
}

int handleExtModulePrmDataLen(GsdReading& reading, std::uint32_t length)
{
    if (length > kMaxUserPrmBytes)
        return kErrGsdNumber;
    GsdModel& model = reading.model;
    GSD_MODULE_PRM*& prm = reading.currentModule->prm;
    if (prm == nullptr)
        prm = &reading.currentModulePrms->append(model.arena, {});
    prm->data = model.arena.bytes(length);
    model.extPrmUsed = true;
    return kOk;
}

int handleMaxUserPrmDataLen(GsdReading& reading, std::uint32_t length)
{
    reading.model.extPrmUsed = true;
    return keepNumber<&GsdModel::maxUserPrmDataLen, kMaxUserPrmBytes>(reading, length);
}

int handleUserPrmData(GsdReading& reading, const NumberList& bytes)
{
    if (bytes.count != reading.model.userPrmDataLen)
        return kErrGsdTooMany;
    reading.model.userPrmData = reading.model.arena.bytes(bytes.count);
    bytes.copyTo(reading.model.userPrmData.data());
    return kOk;
}

PrmDefHead prmDefHead(ValueReader& value)
{
    const std::uint32_t reference = value.unsigned16();
    const bool bare = value.takeLast(kBareSlotNumberName);
    return {reference, bare ? kSlotNumberName : value.string(kNameWidth)};
}

int handleExtUserPrmData(GsdReading& reading, const PrmDefHead& head)
{
    GSD_EXT_PRM_DEF definition;
    definition.reference = static_cast<std::uint16_t>(head.reference);
    definition.isSlotNumber = head.name == kSlotNumberName;
    if (!definition.isSlotNumber)
        definition.name = reading.keepText(head.name, kNameWidth);
    reading.currentExtPrmDef = &reading.model.extPrmDefs.append(reading.model.arena, definition);
    reading.openBlock = kInExtPrmDef;
    return kOk;
}

int handleDataType(GsdReading& reading, GsdLine& line)
{
    GSD_EXT_PRM_DEF& definition = *reading.currentExtPrmDef;
    const auto dataType = static_cast<std::uint8_t>(line.keyword);
    if (definition.isSlotNumber && dataType != kUnsigned8 && dataType != kUnsigned16 && dataType != kSigned16)
        return kErrGsdSlotNumberType;
    definition.dataType = dataType;
    definition.typeDefined = true;
    // Default and range of the slot number are the host's business, whatever the line says up to its end.
    if (definition.isSlotNumber)
        return line.isWhole() ? kOk : kErrGsdSyntax;
    ValueReader value(line.value, line);
    int result = readBitPlace(line.argument, definition);
    if (result == kOk)
        result = readValueRange(value, definition);
    line.value = value.rest();
    // The warning is due even when the line turns out to be wrong.
    if ((dataType == kUnsigned32 || dataType == kSigned8 || dataType == kSigned32) && (result == kOk || line.isWhole()))
        reading.addWarning(kWarnDataType);
    return result;
}

int handlePrmTextRef(GsdReading& reading, std::uint32_t reference)
{
    if (reading.model.findPrmText(reference) == nullptr)
        return kErrGsdReference;
    reading.currentExtPrmDef->prmTextRef = static_cast<std::int32_t>(reference);
    return kOk;
}

int checkExtUserPrmData(GsdReading& reading)
{
    return reading.currentExtPrmDef->typeDefined ? kOk : kErrGsdEmptyBlock;
}

int handleExtUserPrmDataConst(GsdReading& reading, std::uint32_t offset, const NumberList& bytes)
{
    if (prmLength(reading) == 0)
        return kErrGsdNoPrmLen;
    if (const int result = placePrmData(reading, offset, bytes.count); result < 0)
        return result;

    const bool inModule = reading.openBlock == kInModule;
    std::uint8_t* target = inModule ? reading.currentModule->prm->data.data() : reading.model.extUserPrmData.data();
    std::int32_t& constEnd = inModule ? reading.currentModule->prm->dataEnd : reading.model.constPrmDataEnd;
    bytes.copyTo(target + offset);
    constEnd = std::max(constEnd, static_cast<std::int32_t>(offset + bytes.count));
    return kOk;
}

int handleExtUserPrmDataRef(GsdReading& reading, std::uint32_t offset, std::uint32_t reference)
{
    if (prmLength(reading) == 0)
        return kErrGsdNoPrmLen;
    const GSD_EXT_PRM_DEF* definition = reading.model.findExtPrmDef(reference);
    if (definition == nullptr)
        return kErrGsdReference;
    const bool inModule = reading.openBlock == kInModule;
    if (definition->isSlotNumber && !inModule)
        return kErrGsdSyntax;
    (inModule ? reading.currentModule->prm->refs : reading.model.extUserPrmRefs)
        .append(reading.model.arena, {reference, offset});
    return placePrmData(reading, offset, formatOf(*definition).bytes);
}

} // namespace typdescriptor::internal
