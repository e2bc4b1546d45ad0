// Filling a host record from a loaded type file.
//
// The head line, the header and the fixed block are copied out of the image; user parameter bytes and preset slots come
// from what the check has decoded. A category-II type file has values for a few members only.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/decoded.h"
#include "generator/recordText.h"
#include "typefile/format.h"
#include "typefile/hostRecordFields.h"
#include "typefile/identifiers.h"
#include "typefile/scan.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

using namespace typdescriptor::internal;

namespace {

// Digits of the baud rates that a record has a flag for; 31.25 k and 45.45 k have none.
constexpr std::array<std::size_t, 9> kBaudRateDigits{0, 1, 2, 3, 5, 6, 7, 8, 9};
constexpr std::size_t kBaudRatesAboveCategoryII = 3; // 12, 6 and 3 Mbit/s
constexpr unsigned kPlacesCategoryII = 8;
constexpr unsigned kPlacesCategoryIIHalf = 4;

/// Copies the head line without its order number and the brackets around it.
void copyHeadLine(TYPEFILE_COM_QX410& record, const TypeFile& file)
{
    constexpr std::size_t kMaxLength = sizeof record.headLine - 1;
    std::array<char, kMaxLength + kOrderNumberWidth + 3> line; // what may be copied, the brackets and a line end
    copyCharacters(file, 0, line.data(), line.size());
    const auto upToLineEnd = [](std::string_view text) { return text.substr(0, text.find(kLineEnd.front())); };
    const std::string_view text(line.data(), line.size());
    std::string_view before = upToLineEnd(text.substr(0, kMaxLength));
    std::string_view behind;
    const OrderNumber& number = file.orderNumber;
    if (number.isFound && number.begin <= before.size()) {
        behind = upToLineEnd(text.substr((number.isClosed ? number.end : number.bracket) + 1));
        before = before.substr(0, number.begin - 1);
    }
    const std::size_t length = before.copy(record.headLine, kMaxLength);
    behind.copy(record.headLine + length, kMaxLength - length);
}

void copyHeader(TYPEFILE_COM_QX410& record, const TypeFile& file)
{
    std::array<char, kHeaderLength> header{};
    copyCharacters(file, file.headLineLength, header.data(), header.size());
    copyField(record.modelName, &header[kModelName.position]);
    copyField(record.vendorName, &header[kVendorName.position]);
    copyField(record.family, &header[kFamily.position]);
    copyField(record.periphery, &header[kPeriphery.position]);
    copyField(record.identNumber, &header[kIdentNumber.position]);
}

void copyFixedBlock(TYPEFILE_COM_QX410& record, const char* block)
{
    // The check has left nothing but 'J' and 'N' wherever a flag has no third value.
    for (const HostRecordFlag& flag : kHostRecordFlags)
        record.*flag.member = toUpper(block[flag.position]) != 'N';
    record.modularStation = toUpper(block[kModular]) != 'N';
    record.asicCode = toUpper(block[kAsicCode]);
    copyField(record.minSlaveInterval, block + kSlaveInterval.position);
    for (std::size_t i = 0; i < kBaudRateDigits.size(); ++i)
        record.baudRates[i] = block[kBaudRates.position + kBaudRateDigits[i]] == '1';
    for (const HostRecordNumber& number : kHostRecordNumbers)
        copyField(record.*number.member, block + number.position);
}

void putNumber(char (&member)[kNumberDigits + 1], unsigned value)
{
    std::array<char, 10> digits{};
    copyField(member, RecordText(digits.data()).number(value).view().data());
}

void deriveCategoryII(TYPEFILE_COM_QX410& record, const SLAVE_TYPEDATA_TYPE& data, bool isQx410k)
{
    record.setSlaveAddSupp = data.cat2Flag20;
    std::memset(record.minSlaveInterval, '0', kSlaveInterval.width);
    for (std::size_t i = kBaudRatesAboveCategoryII; i < kBaudRateDigits.size(); ++i)
        record.baudRates[i] = 1;

    const unsigned places = data.cat2Flag4 == 1 ? kPlacesCategoryIIHalf : kPlacesCategoryII;
    const unsigned outputs = data.cat2Digit0;
    const unsigned withoutInput = data.cat2Digit8;
    putNumber(record.maxInputLen, isQx410k ? 3 : places - outputs - withoutInput);
    putNumber(record.maxOutputLen, isQx410k ? 2 : outputs);
    putNumber(record.maxModule, isQx410k ? 4 : places - withoutInput);
}

/// Makes a text of the host a string again, behind the piece just appended; returns where the next one goes.
char* endPiece(char* text, RecordText& piece)
{
    const std::size_t length = piece.length();
    piece.character('\0');
    return text + length;
}

char* appendByte(char* text, uint8_t byte)
{
    return endPiece(text, RecordText(text).number(byte));
}

/// Appends the bytes of one preset slot in decimal.
char* appendSlot(char* text, const CSLAVE_SLOT_PRESET_TYPE& slot)
{
    text = appendByte(text, slot.identifier);
    if (slot.kind != kCfgSpecial)
        return text;
    CFG_SPECIAL_INFO special;
    decodeSpecialByte(slot.identifier, special);
    if (special.lengthBytes() > 0)
        text = appendByte(text, static_cast<uint8_t>(slot.lengthByte1));
    if (special.lengthBytes() > 1)
        text = appendByte(text, static_cast<uint8_t>(slot.lengthByte2));
    for (unsigned i = 0; i < special.mfrBytes(); ++i)
        text = appendByte(text, slot.mfrData[i]);
    return text;
}

void fillCategoryI(TYPEFILE_COM_QX410& record, const TypeFile& file)
{
    copyFixedBlock(record, file.headerPosition() + kHeaderLength);

    char* hexDigits = record.userPrmHex;
    for (std::size_t i = 0; hexDigits != nullptr && i < static_cast<std::size_t>(file.userPrmCount); ++i)
        hexDigits = endPiece(hexDigits, RecordText(hexDigits).hexByte(file.userPrm[i]));

    char* slotText = record.fixedSlotText;
    if (slotText == nullptr)
        return;
    *slotText = '\0';
    for (const MLFB_ITEM& slot : file.presetSlots)
        slotText = appendSlot(slotText, slot.preset);
}

} // namespace

int cTypDescriptor::getCOMTypeData(TYPEFILE_COM_QX410* record)
{
    if (record == nullptr)
        return 0;
    std::memset(record, 0, offsetof(TYPEFILE_COM_QX410, userPrmHex));
    const TypeFile& file = loaded(typeFile, typeCategory);
    if (!file.isLoaded)
        return 0;
    if (file.headLineLength != 0)
        copyHeadLine(*record, file);
    if (OrderNumberBuffer buffer; file.orderNumber.isFound)
        orderNumberText(file, buffer).copy(record->orderNumber, kOrderNumberWidth);
    copyHeader(*record, file);
    if (file.category == kCategoryI)
        fillCategoryI(*record, file);
    else
        deriveCategoryII(*record, file.typeData, file.station == StationKind::kQx410k);
    return file.isChangeable ? 1 : 0;
}
