// Diagnostic texts: device-related bits and bit groups, then channel error types.

#include "generator/typeFileGenerator.h"

namespace typdescriptor::internal {

namespace {

constexpr unsigned kBitsPerByte = 8;
constexpr std::size_t kDiagByteWidth = 7;     // tag, byte number, quote
constexpr std::size_t kBitGroupWidth = 6;     // tag, first bit, width, quote
constexpr std::size_t kGroupValueWidth = 4;   // value, quote
constexpr std::size_t kChannelErrorWidth = 6; // tag, error type, quote

RecordText digitAndQuote(RecordText record, unsigned number)
{
    return record.character(static_cast<char>('0' + number)).quote();
}

} // namespace

void TypeFileGenerator::writeDiagTexts()
{
    const std::size_t head = image.reserve(kListHeadWidth);
    std::size_t count = 0;
    for (const GSD_UNIT_DIAG_AREA& area : model.unitDiags) {
        for (const GSD_DIAG_VALUE_ITEM& item : area.values) {
            writeDeviceDiagText(area, item);
            ++count;
        }
    }
    image.setListHead(head, kListHeadWidth, kTagDeviceDiag, count);

    image.append(image.record().head(kTagChannelDiag, model.channelDiags.count()), kListHeadWidth);
    for (const GSD_CHANNEL_DIAG& channel : model.channelDiags) {
        image.append(image.record().text(kTagChannelError).number(channel.errorType, 2).quote(), kChannelErrorWidth);
        image.appendField(channel.text, kNameWidth);
        image.append(image.record().quote().end());
    }
}

void TypeFileGenerator::writeDeviceDiagText(const GSD_UNIT_DIAG_AREA& area, const GSD_DIAG_VALUE_ITEM& item)
{
    const unsigned firstBit = area.firstBit % kBitsPerByte;
    const bool isGroup = area.firstBit != area.lastBit;
    image.append(image.record().text(kTagDiagByte).number(area.firstBit / kBitsPerByte + 1).quote(), kDiagByteWidth);
    if (isGroup) {
        const unsigned width = area.lastBit - area.firstBit + 1U;
        image.append(image.record().text(kTagBitGroup).number(firstBit * 10 + width, 2).quote(), kBitGroupWidth);
    } else {
        image.append(digitAndQuote(image.record(), firstBit));
    }
    image.appendField(item.text, kNameWidth);
    image.append(image.record().quote());
    if (isGroup)
        image.append(image.record().number(item.value).quote(), kGroupValueWidth);
    else
        image.append(digitAndQuote(image.record(), item.value));
    image.append(image.record().end());
}

} // namespace typdescriptor::internal
