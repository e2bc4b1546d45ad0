// The frame of the generation: the fixed part, then the record groups in their order.

#include "generator/typeFileGenerator.h"

#include "descriptor/resultCodes.h"
#include "generator/fixedPart.h"
#include "generator/sharePrmBlocks.h"

namespace typdescriptor::internal {

int TypeFileGenerator::generateTypeFile()
{
    try {
        return writeRecords();
    } catch (const ImageFull&) {
        return kErrGsdImageFull;
    }
}

int TypeFileGenerator::writeRecords()
{
    image.clear();
    writeFixedPart(image, model);
    sharePrmBlocks(model);

    writeUserPrmData();
    if (const int result = writeStationPrmBlock(); result < 0)
        return result;
    writeHelpTextBlock(Scope::station);
    writePresetConfig();
    writeDiagTexts();
    writeBitmapName();
    image.append(image.record().text(kDefaultLibrary).end());
    image.append(image.record().head(kTagSlotOffset, model.modulOffset));
    if (model.isKgpDevice)
        writeSlotRecords();
    writeMaxDataLen();
    writeOrderNumberList();
    writeModuleList();
    writeOffsetOfModuleBlocks();
    if (const int result = writeSlotPrmBlocks(model.isKgpDevice ? model.kgpModulePrms : model.modulePrms); result < 0)
        return result;
    writeHelpTextBlock(Scope::module);
    image.append(image.record().head(kTagEterDelay, model.eterDelay));
    image.append(image.record().head(kTagResponseDelay, model.maxResponseDelay));
    return kOk;
}

void TypeFileGenerator::writeUserPrmData()
{
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

void TypeFileGenerator::writeBitmapName()
{
    constexpr std::string_view kFiller = "_______";
    const std::string_view name = model.bitmapDevice.substr(0, kBitmapName.width);
    image.append(image.record().text(name).text(kFiller.substr(name.size())).end());
}

void TypeFileGenerator::writeSlotRecords()
{
    if (model.kgpGui.given) {
        image.append(image.record()
                         .text(kTagSlotNumbering)
                         .numberField(model.kgpGui.bytes[0])
                         .text(model.kgpGui.text)
                         .quote()
                         .numberField(model.kgpGui.bytes[1])
                         .numberField(model.kgpGui.bytes[2], 1)
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

} // namespace typdescriptor::internal
