// The frame of the generation: the fields of the fixed block that the keyword handlers leave open, and the record
// groups in their order.

#include "generator/typeFileGenerator.h"

#include "descriptor/resultCodes.h"
#include "generator/sharePrmBlocks.h"

using namespace typefile;

int TypeFileGenerator::generateTypeFile()
{
    try {
        return writeRecords();
    } catch (const ImageFull&) {
        model.initError = 1;
        return kErrGsdImageFull;
    }
}

int TypeFileGenerator::writeRecords()
{
    completeFixedFields();
    sharePrmBlocks(model);

    writeUserPrmData();
    if (const int result = writeStationPrmBlock(); result < 0)
        return result;
    writeHelpTextBlock(Scope::station);
    writePresetConfig();
    writeDiagTexts();
    image.append(image.record().text({model.bitmapDevice.data(), model.bitmapDevice.size()}).end());
    image.append(image.record().text(kDefaultLibrary).end());
    image.append(image.record().head(kTagSlotOffset, model.modulOffset));
    if (model.isKgpDevice != 0)
        writeSlotRecords();
    writeMaxDataLen();
    writeOrderNumberList();
    writeModuleList();
    writeOffsetOfModuleBlocks();
    if (const int result = writeSlotPrmBlocks(model.isKgpDevice != 0 ? model.kgpModules : model.modules); result < 0)
        return result;
    writeHelpTextBlock(Scope::module);
    image.append(image.record().head(kTagEterDelay, model.eterDelay));
    image.append(image.record().head(kTagResponseDelay, model.maxResponseDelay));
    return kOk;
}

void TypeFileGenerator::completeFixedFields()
{
    const auto set = [this](std::size_t position, std::string_view text) {
        image.set(image.typeDataPos + position, text);
    };

    if (model.isPublisher != 0)
        set(kPublisherSubscriber, model.isSubscriber != 0 ? "J" : "P");
    else if (model.isSubscriber != 0)
        set(kPublisherSubscriber, "S");
    if (model.isMaster != 0)
        set(kActiveMaster, "M");
    else if (model.isActive != 0)
        set(kActiveMaster, "J");
    if (model.onlyNormalModules != 0)
        set(kModuleKinds, "E");
    else if (model.onlySpecialModules != 0)
        set(kModuleKinds, "S");
    set(kModular, model.modularStation != 0 ? "J" : "N");
    image.recordAt(image.typeDataPos + kMaxInputLen.position).number(model.maxInputLen);
    image.recordAt(image.typeDataPos + kMaxOutputLen.position).number(model.maxOutputLen);
    image.recordAt(image.typeDataPos + kMaxModule.position).number(moduleLimit());
    for (const std::size_t position : kTypeDataTerminators)
        set(position, kTerminator);
}

std::uint32_t TypeFileGenerator::moduleLimit() const
{
    const bool given = (model.modularStation == 1 && !model.multiIdentifierModuleSeen) || model.isDpAsiLink != 0;
    return given && model.maxModule != 0 ? model.maxModule : kMaxModules;
}

void TypeFileGenerator::writeUserPrmData()
{
    image.imageLength = image.typeDataPos + kUserPrmLen;
    std::size_t length = model.userPrmDataLen;
    RecordText record = image.record();
    if (model.extPrmUsed) {
        if (model.maxUserPrmDataLen != 0)
            length = model.maxUserPrmDataLen;
        else if (length == 0)
            length = kMaxUserPrmBytes;
        record.character(kSlotPrmMode);
    } else if (length == 0) {
        length = static_cast<std::size_t>(model.prmDataEnd);
    }
    image.append(record.number(length + kStandardPrmBytes).end());

    if (model.constPrmDataEnd != 0)
        writePrmBytes(model.extUserPrmData.data(), model.extUserPrmData.size(),
                      static_cast<std::size_t>(model.constPrmDataEnd));
    else
        writePrmBytes(model.userPrmData.data(), model.userPrmData.size(), model.userPrmData.size());
}

void TypeFileGenerator::writeSlotRecords()
{
    if (model.kgpGui.given) {
        image.append(image.record()
                         .text(kTagSlotNumbering)
                         .number(model.kgpGui.bytes[0])
                         .quote()
                         .text(model.kgpGui.text)
                         .quote()
                         .number(model.kgpGui.bytes[1])
                         .quote()
                         .number(model.kgpGui.bytes[2], 1)
                         .quote()
                         .end());
    }
    image.append(image.record().head(kTagSlotCount, static_cast<std::uint16_t>(model.modules.count())));
}

void TypeFileGenerator::writeMaxDataLen()
{
    const unsigned both = static_cast<unsigned>(model.maxInputLen) + model.maxOutputLen;
    image.append(image.record().number(model.maxDataLen != 0 ? model.maxDataLen : both).end());
}

void TypeFileGenerator::writeOffsetOfModuleBlocks()
{
    std::int32_t offset = 0;
    if (model.offsetFirstMpdBlock != -1)
        offset = model.offsetFirstMpdBlock;
    else if (model.extPrmUsed && (model.constPrmDataEnd != 0 || !model.extUserPrmRefs.empty()))
        offset = model.prmDataEnd;
    else if (model.extPrmUsed)
        offset = static_cast<std::int32_t>(model.userPrmData.size());
    image.append(image.record().number(static_cast<std::uint32_t>(offset)).end());
}
