// Diagnostic texts: device-related bits and bit groups, then channel error types.

#include "generator/typeFileGenerator.h"

namespace typdescriptor::internal {

namespace {

constexpr unsigned kBitsPerByte = 8;
constexpr std::size_t kDiagByteWidth = 7;                       // tag, byte number, quote
constexpr std::size_t kBitTextWidth = 2 + kNameWidth + 1 + 2;   // bit, text, value, with their quotes
constexpr std::size_t kGroupTextWidth = 6 + kNameWidth + 1 + 4; // tag, first bit and width, text, value
constexpr std::size_t kChannelErrorWidth = 6;                   // tag, error type, quote

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
        image.append(image.record(kChannelErrorWidth + kNameWidth)
                         .text(kTagChannelError)
                         .numberField(channel.errorType, 2)
                         .field(channel.text, kNameWidth)
                         .quote()
                         .end());
    }
}

void TypeFileGenerator::writeDeviceDiagText(const GSD_UNIT_DIAG_AREA& area, const GSD_DIAG_VALUE_ITEM& item)
{
    const unsigned firstBit = area.firstBit % kBitsPerByte;
    const bool isGroup = area.firstBit != area.lastBit;
    image.append(image.record().text(kTagDiagByte).numberField(area.firstBit / kBitsPerByte + 1), kDiagByteWidth);
    RecordText record = image.record(isGroup ? kGroupTextWidth : kBitTextWidth);
    if (isGroup)
        record.text(kTagBitGroup).numberField(firstBit * 10 + area.lastBit - area.firstBit + 1U, 2);
    else
        record.digit(firstBit).quote();
    record.field(item.text, kNameWidth).quote();
    if (isGroup)
        record.numberField(item.value);
    else
        record.digit(item.value).quote();
    image.append(record.end());
}

} // namespace typdescriptor::internal
