// Modules, and the parameter data of station and modules: fixed bytes, definitions of parameters, and where constants
// and parameters are placed.

#include "descriptor/resultCodes.h"
#include "generator/splitConfig.h"
#include "gsd/cGsdCompiler.h"

#include <algorithm>

using typefile::kMaxUserPrmBytes;

namespace {

constexpr std::size_t kKgpConfigBytes = 5;
constexpr std::size_t kMaxEnumeratedValues = 16;
constexpr std::uint32_t kLastBit = 7;
constexpr std::string_view kSlotNumberName = "[SlotNumber]";
constexpr std::string_view kBareSlotNumberName = "[Slotnumber]"; // as it may stand without quotes

IntegerKind kindOf(std::uint32_t dataType)
{
    switch (dataType) {
    case kUnsigned16:
        return IntegerKind::unsigned16;
    case kUnsigned32:
        return IntegerKind::unsigned32;
    case kSigned8:
        return IntegerKind::signed8;
    case kSigned16:
        return IntegerKind::signed16;
    case kSigned32:
        return IntegerKind::signed32;
    default:
        return IntegerKind::unsigned8;
    }
}

std::size_t byteSizeOf(std::uint32_t dataType)
{
    switch (dataType) {
    case kUnsigned16:
    case kSigned16:
        return 2;
    case kUnsigned32:
    case kSigned32:
        return 4;
    default:
        return 1;
    }
}

/// The range of a data type whose line gives none. Hosts rely on the unsigned ranges of the types that the format does
/// not have.
void setImpliedRange(GSD_EXT_PRM_DEF& definition)
{
    definition.minValue = 0;
    switch (definition.dataType) {
    case kUnsigned8:
    case kSigned8:
        definition.maxValue = 0xFF;
        break;
    case kSigned16:
        definition.minValue = static_cast<std::uint32_t>(-32768);
        definition.maxValue = 32767;
        break;
    case kBitArea:
        definition.maxValue = (1U << definition.bitCount) - 1;
        break;
    case kBit:
        definition.maxValue = 1;
        break;
    default:
        definition.maxValue = 0xFFFF;
        break;
    }
}

std::span<std::uint8_t> toBytes(Arena& arena, const NumberList& list)
{
    const std::span<std::uint8_t> bytes = arena.bytes(list.count);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(list.values[i]);
    return bytes;
}

} // namespace

int cGsdCompiler::openModule(const GsdLine& line, bool isKgp)
{
    ValueReader value(line.value);
    const std::string_view name = value.string();
    const NumberList bytes = value.bytes();
    if (const int result = value.finish(); result < 0)
        return result;
    if (isKgp && bytes.count != kKgpConfigBytes)
        return kErrGsdConfiguration;

    GSD_MODULE& module = (isKgp ? model.kgpModules : model.modules).append(model.arena, {});
    module.setName(model.arena.text(name));
    module.setConfigBytes(toBytes(model.arena, bytes));
    currentModule = &module;
    openBlock = kInModule;
    return isKgp ? static_cast<int>(kOk) : splitModuleConfig(module, model.multiIdentifierModuleSeen);
}

int cGsdCompiler::handleModule(const GsdLine& line)
{
    return openModule(line, false);
}

int cGsdCompiler::handleKgpModule(const GsdLine& line)
{
    return openModule(line, true);
}

int cGsdCompiler::handleEndModule(const GsdLine& line)
{
    if (!line.value.empty())
        return kErrGsdSyntax;
    if (!currentModule->extModulePrmData().empty() || !currentModule->refs.empty())
        currentModule->paramModuleNumber = model.nextParamModuleNumber++;
    openBlock = kOutside;
    return kOk;
}

int cGsdCompiler::handleModuleReference(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t reference = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    currentModule->moduleReference = static_cast<std::uint16_t>(reference);
    return kOk;
}

int cGsdCompiler::handlePreset(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    currentModule->preset = static_cast<std::uint8_t>(flag);
    return kOk;
}

int cGsdCompiler::readPrmLength(const GsdLine& line, std::uint8_t& length)
{
    ValueReader value(line.value);
    const std::uint32_t number = value.unsigned8();
    if (const int result = value.finish(); result < 0)
        return result;
    if (number > kMaxUserPrmBytes)
        return kErrGsdNumber;
    length = static_cast<std::uint8_t>(number);
    return kOk;
}

int cGsdCompiler::handleExtModulePrmDataLen(const GsdLine& line)
{
    std::uint8_t length = 0;
    if (const int result = readPrmLength(line, length); result < 0)
        return result;
    currentModule->setExtModulePrmData(model.arena.bytes(length));
    model.extPrmUsed = true;
    return kOk;
}

int cGsdCompiler::handleUserPrmDataLen(const GsdLine& line)
{
    return readPrmLength(line, model.userPrmDataLen);
}

int cGsdCompiler::handleMaxUserPrmDataLen(const GsdLine& line)
{
    if (const int result = readPrmLength(line, model.maxUserPrmDataLen); result < 0)
        return result;
    model.extPrmUsed = true;
    return kOk;
}

int cGsdCompiler::handleUserPrmData(const GsdLine& line)
{
    ValueReader value(line.value);
    const NumberList bytes = value.bytes();
    if (const int result = value.finish(); result < 0)
        return result;
    if (bytes.count != model.userPrmDataLen)
        return kErrGsdTooMany;
    model.userPrmData = toBytes(model.arena, bytes);
    return kOk;
}

int cGsdCompiler::handleExtUserPrmData(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t reference = value.unsigned16();
    const bool bare = value.takeLast(kBareSlotNumberName);
    const std::string_view name = bare ? kSlotNumberName : value.string(kTextSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;

    GSD_EXT_PRM_DEF definition;
    definition.reference = static_cast<std::uint16_t>(reference);
    definition.isSlotNumber = name == kSlotNumberName;
    if (!definition.isSlotNumber)
        definition.name = model.arena.text(name);
    currentExtPrmDef = &model.extPrmDefs.append(model.arena, definition);
    warnOfLongText(name);
    openBlock = kInExtPrmDef;
    return kOk;
}

int cGsdCompiler::handleDataType(const GsdLine& line)
{
    GSD_EXT_PRM_DEF& definition = *currentExtPrmDef;
    const auto dataType = static_cast<std::uint32_t>(line.keyword);
    if (definition.isSlotNumber && dataType != kUnsigned8 && dataType != kUnsigned16 && dataType != kSigned16)
        return kErrGsdSlotNumberType;
    definition.dataType = dataType;
    definition.typeDefined = true;
    if (definition.isSlotNumber)
        return kOk; // default and range of the slot number are the host's business, whatever the line says
    if (dataType == kUnsigned32 || dataType == kSigned8 || dataType == kSigned32)
        addWarning(kWarnDataType);
    if (const int result = readBitPlace(line, definition); result < 0)
        return result;

    const IntegerKind kind = kindOf(dataType);
    ValueReader value(line.value);
    definition.defaultValue = value.number(kind);
    if (value.failed())
        return value.finish();
    if (value.atEnd()) {
        setImpliedRange(definition);
        return kOk;
    }
    ValueReader asRange = value;
    NumberList limits = asRange.range(kind);
    if (!asRange.failed())
        value = asRange;
    else
        limits = value.list(kMaxEnumeratedValues, kind);
    if (const int result = value.finish(); result < 0)
        return result;
    if (limits.count < 2)
        return kErrGsdSyntax;
    definition.minValue = limits.first();
    definition.maxValue = limits.last();
    return kOk;
}

int cGsdCompiler::readBitPlace(const GsdLine& line, GSD_EXT_PRM_DEF& definition)
{
    ValueReader argument(line.argument);
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    if (definition.dataType == kBitArea) {
        const NumberList bits = argument.range(IntegerKind::unsigned8);
        if (argument.failed())
            return argument.finish();
        first = bits.first();
        last = bits.last();
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

int cGsdCompiler::handlePrmTextRef(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t reference = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    GSD_PRM_TEXT* text = model.findPrmText(reference);
    if (text == nullptr)
        return kErrGsdReference;
    currentPrmText = text;
    currentExtPrmDef->prmTextRef = static_cast<std::int32_t>(reference);
    return kOk;
}

int cGsdCompiler::handlePrmTextRefOldSpelling(const GsdLine& line)
{
    if (const int result = handlePrmTextRef(line); result < 0)
        return result;
    addWarning(kWarnPrmTextRef);
    return kOk;
}

int cGsdCompiler::handleEndExtUserPrmData(const GsdLine& line)
{
    if (!line.value.empty())
        return kErrGsdSyntax;
    if (!currentExtPrmDef->typeDefined)
        return kErrGsdEmptyBlock;
    openBlock = kOutside;
    return kOk;
}

std::size_t cGsdCompiler::applicablePrmLength() const
{
    if (openBlock == kInModule)
        return currentModule->extModulePrmData().size();
    return model.maxUserPrmDataLen != 0 ? model.maxUserPrmDataLen : model.userPrmDataLen;
}

int cGsdCompiler::placePrmData(std::size_t offset, std::size_t length)
{
    const std::size_t end = offset + length;
    if (end > applicablePrmLength())
        return kErrGsdTooMany;
    if (openBlock != kInModule)
        model.prmDataEnd = std::max(model.prmDataEnd, static_cast<std::int32_t>(end));
    return kOk;
}

int cGsdCompiler::handleExtUserPrmDataConst(const GsdLine& line)
{
    ValueReader argument(line.argument);
    const std::size_t offset = argument.unsigned8();
    if (argument.failed())
        return argument.finish();
    ValueReader value(line.value);
    const NumberList list = value.bytes();
    if (const int result = value.finish(); result < 0)
        return result;
    if (applicablePrmLength() == 0)
        return kErrGsdNoPrmLen;
    if (const int result = placePrmData(offset, list.count); result < 0)
        return result;

    const bool inModule = openBlock == kInModule;
    std::uint8_t* target = inModule ? currentModule->extModulePrmData().data() : model.extUserPrmData.data();
    std::int32_t& constEnd = inModule ? currentModule->prmDataEnd : model.constPrmDataEnd;
    for (std::size_t i = 0; i < list.count; ++i)
        target[offset + i] = static_cast<std::uint8_t>(list.values[i]);
    constEnd = std::max(constEnd, static_cast<std::int32_t>(offset + list.count));
    return kOk;
}

int cGsdCompiler::handleExtUserPrmDataRef(const GsdLine& line)
{
    ValueReader argument(line.argument);
    const std::uint32_t offset = argument.unsigned8();
    if (argument.failed())
        return argument.finish();
    ValueReader value(line.value);
    const std::uint32_t reference = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    if (applicablePrmLength() == 0)
        return kErrGsdNoPrmLen;

    GSD_EXT_PRM_DEF* definition = model.findExtPrmDef(reference);
    if (definition == nullptr)
        return kErrGsdReference;
    currentExtPrmDef = definition;
    const bool inModule = openBlock == kInModule;
    if (definition->isSlotNumber && !inModule)
        return kErrGsdSyntax;
    (inModule ? currentModule->refs : model.extUserPrmRefs).append(model.arena, {reference, offset});
    return placePrmData(offset, byteSizeOf(definition->dataType));
}
