// Parameter blocks and help texts: the parameters of the station, those of the modules' slot parameter blocks, and for
// either the texts of their values. Station and module help texts are numbered apart, in the order of their first use,
// and listed in the order of their definition.

#include "descriptor/resultCodes.h"
#include "generator/typeFileGenerator.h"

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kPrmHeadWidth = 6; // tag, byte index, quote
constexpr std::size_t kKeywordHeadWidth = 5;
constexpr std::size_t kPrmByteWidth = 2 + kTerminator.size();
constexpr std::size_t kHelpLineStart = kNameWidth + 2 + kHelpValueDigits + 1; // of a help line all but its terminator
constexpr std::size_t kHelpReferenceWidth = 9;
constexpr std::size_t kHelpHeadWidth = 8;

void addNumbers(RecordText& record, std::string_view type, const GSD_EXT_PRM_DEF& definition, std::size_t digits,
                std::uint32_t mask)
{
    record.text(type).quote();
    for (const std::uint32_t value : {definition.defaultValue, definition.minValue, definition.maxValue})
        record.numberField(value & mask, digits);
}

void addSignedNumbers(RecordText& record, const GSD_EXT_PRM_DEF& definition)
{
    record.text(kTypeSigned).quote();
    for (const std::uint32_t value : {definition.defaultValue, definition.minValue, definition.maxValue})
        record.signedNumber(static_cast<std::int16_t>(value & 0xFFFF), kLongNumberDigits).quote();
}

void addValueDescription(RecordText& record, const GSD_EXT_PRM_DEF& definition)
{
    switch (definition.dataType) {
    case kUnsigned8:
    case kSigned8:
        addNumbers(record, kTypeByte, definition, kNumberDigits, 0xFFFFFFFF);
        break;
    case kUnsigned16:
    case kUnsigned32:
    case kSigned32:
        // The format has no 32-bit parameters: hosts get the low half, and the reader has warned about it.
        addNumbers(record, kTypeUnsigned, definition, kLongNumberDigits, 0xFFFF);
        break;
    case kSigned16:
        addSignedNumbers(record, definition);
        break;
    case kBitArea:
        record.text(kTagBitGroup).numberField(definition.bitOffset * 10U + definition.bitCount, 2);
        for (unsigned bit = definition.bitCount; bit-- > 0;)
            record.character((definition.defaultValue >> bit & 1U) != 0 ? '1' : '0');
        record.quote().numberField(definition.minValue).numberField(definition.maxValue);
        break;
    case kBit:
        record.text(kTypeBit)
            .digit(definition.bitOffset)
            .character(' ')
            .quote()
            .digit(definition.defaultValue & 0xFF)
            .text("\"0\"1\"");
        break;
    }
}

std::string_view keywordType(std::uint8_t dataType)
{
    switch (dataType) {
    case kUnsigned8:
        return kTypeByte;
    case kUnsigned16:
        return kTypeUnsigned;
    default:
        return kTypeSigned;
    }
}

} // namespace

void TypeFileGenerator::writePrmBytes(const std::uint8_t* bytes, std::size_t available, std::size_t count)
{
    image.append(image.record().head(kTagUserPrmBytes, count));
    if (count == 0)
        return;
    RecordText record = image.record((count - 1) * kPrmByteWidth);
    for (std::size_t i = 0; i < count; ++i)
        record.hexByte(i < available ? bytes[i] : std::uint8_t{0}).end();
    image.append(record);
}

int TypeFileGenerator::writeStationPrmBlock()
{
    image.append(image.record().head(kTagPrmList, model.extUserPrmRefs.count()), kListHeadWidth);
    model.nextHelpTextNumber = 1;
    for (const GSD_PRM_REF_ITEM& placement : model.extUserPrmRefs) {
        if (const int result = writePrmRecord(placement, Scope::station); result < 0)
            return result;
    }
    return kOk;
}

int TypeFileGenerator::writePrmRecord(const GSD_PRM_REF_ITEM& placement, Scope scope)
{
    const std::size_t byteIndex = placement.byteOffset + (scope == Scope::station ? kStandardPrmBytes : 0);
    image.append(image.record().text(kTagPrm).numberField(byteIndex), 0);
    const GSD_EXT_PRM_DEF* definition = model.findExtPrmDef(placement.reference);
    if (definition == nullptr)
        return kErrGsdReference;

    if (definition->isSlotNumber) {
        image.imageLength += kKeywordHeadWidth;
        image.append(image.record()
                         .text(kKeywordSlotNumber)
                         .character('[')
                         .text(keywordType(definition->dataType))
                         .character(']')
                         .text(kKeywordTail)
                         .end());
        return kOk;
    }

    image.imageLength += kPrmHeadWidth;
    RecordText record = image.record(kNameWidth + 1);
    record.field(definition->name, kNameWidth).quote();
    addValueDescription(record, *definition);
    image.append(record);
    image.append(image.record().text(kTagHelp).numberField(helpNumber(*definition, scope)).end(), kHelpReferenceWidth);
    return kOk;
}

std::uint16_t TypeFileGenerator::helpNumber(const GSD_EXT_PRM_DEF& definition, Scope scope)
{
    if (definition.prmTextRef == -1)
        return 0;
    GSD_PRM_TEXT& text = *model.findPrmText(static_cast<std::uint32_t>(definition.prmTextRef));
    std::uint16_t& number = scope == Scope::station ? text.stationHelpNumber : text.moduleHelpNumber;
    if (number == 0)
        number = model.nextHelpTextNumber++;
    return number;
}

void TypeFileGenerator::writeHelpTextBlock(Scope scope)
{
    const std::size_t head = image.reserve(kListHeadWidth);
    unsigned count = 0;
    for (const GSD_PRM_TEXT& block : model.prmTexts) {
        if (count + 1 == model.nextHelpTextNumber)
            break; // all that are used are written
        const std::uint16_t number = scope == Scope::station ? block.stationHelpNumber : block.moduleHelpNumber;
        if (number == 0)
            continue;
        ++count;
        image.append(image.record().text(kTagHelp).number(number).end(), kHelpHeadWidth);
        image.append(
            image.record().text(kTagHelpLines).number(static_cast<std::uint16_t>(block.texts.count()), 1).end());
        for (const GSD_PRM_TEXT_ITEM& item : block.texts) {
            // A value of more than five digits runs under the terminator at its fixed place.
            image.append(image.record(kHelpLineStart)
                             .quotedField(item.text, kNameWidth)
                             .numberField(static_cast<std::uint32_t>(item.value), kHelpValueDigits),
                         kHelpLineStart);
            image.appendField(kTerminator, kTerminator.size());
        }
    }
    image.recordAt(head).head(kTagHelpList, count);
}

int TypeFileGenerator::writeSlotPrmBlocks(const GSD_LIST<GSD_MODULE_PRM>& prms)
{
    const std::size_t head = image.reserve(kListHeadWidth);
    unsigned blocks = 0;
    if (model.extPrmUsed) {
        model.nextHelpTextNumber = 1;
        for (const GSD_MODULE_PRM& prm : prms) {
            if (prm.blockNumber < 1 || !prm.ownsBlock)
                continue;
            if (const int result = writeSlotPrmBlock(prm); result < 0)
                return result;
            ++blocks;
        }
    }
    image.recordAt(head).head(kTagSlotPrmBlocks, blocks);
    return kOk;
}

int TypeFileGenerator::writeSlotPrmBlock(const GSD_MODULE_PRM& prm)
{
    image.append(image.record().head(kTagSlotPrmBlock, static_cast<std::uint32_t>(prm.blockNumber)));
    image.append(image.record().number(prm.data.size()).end());
    writePrmBytes(prm.data.data(), prm.data.size(), static_cast<std::size_t>(prm.dataEnd));
    image.append(image.record().head(kTagPrmList, prm.refs.count()));
    for (const GSD_PRM_REF_ITEM& placement : prm.refs) {
        if (const int result = writePrmRecord(placement, Scope::module); result < 0)
            return result;
    }
    return kOk;
}

} // namespace typdescriptor::internal
