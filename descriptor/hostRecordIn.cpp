// Construction from a host record: plain fields come in, a type-file image goes out.
//
// The image is that of a plain DP slave whose type file may be changed: whatever a record has no member for (lists,
// diagnostic texts, names of files) is written in its empty or default form. Texts are not cut to their field and
// numbers are not tested here. A text that is too long reaches into the terminator behind it, and the check of the
// image refuses it.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/hostRecordFields.h"
#include "generator/recordText.h"
#include "typefile/cfgDecoder.h"
#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

namespace {

using namespace typefile;

// More than the longest head line, header, fixed block and every group that does not depend on the texts of the host.
constexpr std::size_t kFixedRoom = 504;
constexpr std::size_t kHexDigitsPerByte = 2;
constexpr std::size_t kRoomPerPrmByte = kHexDigitsPerByte + kTerminator.size();
// A group that only continues an identifier takes less: a quote and its digits. A last identifier without its groups
// takes one character more.
constexpr std::size_t kRoomPerSlotGroup = kNumberDigits + kTerminator.size();
constexpr std::size_t kMaxCount = 999;
constexpr int kNormFormat = 1;

/// A text member up to its NUL, or its whole width where the host left the NUL out.
template <std::size_t Size>
std::string_view textOf(const char (&member)[Size])
{
    return {member, static_cast<std::size_t>(std::find(member, member + Size, '\0') - member)};
}

std::string_view textOfBuffer(const char* buffer)
{
    return buffer == nullptr ? std::string_view() : std::string_view(buffer);
}

/// Appends to an image whose room was measured before.
class ImageWriter {
public:
    explicit ImageWriter(char* image) : position(image) {}

    void put(std::string_view text) { text.copy(reserve(text.size()), text.size()); }
    void put(char c) { *reserve(1) = c; }
    void putRecord(std::string_view text)
    {
        put(text);
        put(kTerminator);
    }
    void putListHead(std::string_view tag, std::size_t count)
    {
        position += RecordText(position).head(tag, count).length();
    }
    void putEmptyList(std::string_view tag) { putListHead(tag, 0); }

    /// Room that is filled by the caller.
    char* reserve(std::size_t length)
    {
        char* const start = position;
        position += length;
        return start;
    }

private:
    char* position;
};

void putAt(char* block, std::size_t position, std::string_view text)
{
    text.copy(block + position, text.size());
}

char flagLetter(bool set)
{
    return set ? 'J' : 'N';
}

void writeHeadLine(ImageWriter& out, const TYPEFILE_COM_QX410& record)
{
    const std::string_view headLine = textOf(record.headLine);
    const std::string_view orderNumber = textOf(record.orderNumber);
    out.put(headLine);
    if (!orderNumber.empty()) {
        out.put(kOrderNumberOpen);
        out.put(orderNumber);
        out.put(kOrderNumberClose);
    }
    if (!headLine.empty() || !orderNumber.empty())
        out.put(kLineEnd);
}

void writeHeader(char* header, const TYPEFILE_COM_QX410& record)
{
    std::memset(header, ' ', kHeaderLength);
    for (const std::size_t position : kHeaderTerminators)
        putAt(header, position, kTerminator);

    putAt(header, kVersion.position, kHostRecordVersion);
    putAt(header, kModelName.position, {record.modelName, kModelName.width});
    putAt(header, kVendorName.position, textOf(record.vendorName));
    putAt(header, kFamily.position, textOf(record.family));
    putAt(header, kPeriphery.position, textOf(record.periphery));
    putAt(header, kStationType.position, kStationDpsClass1);
    putAt(header, kIdentNumber.position, {record.identNumber, kIdentNumber.width});
    header[kMakerDevice] = flagLetter(false);
    header[kHeaderCnf] = flagLetter(true);
}

/// The digits are read from the low byte of 16-bit units, the halves of the flags with the low one first, although a
/// filled record holds 32-bit flags there: the two sides differ on purpose.
void writeBaudRates(char* digits, const TYPEFILE_COM_QX410& record)
{
    for (std::size_t i = 0; i < kBaudRates.width; ++i) {
        const auto halves = static_cast<uint32_t>(record.baudRates[i / 2]);
        const uint32_t unit = i % 2 == 0 ? halves : halves >> 16;
        digits[i] = (unit & 0xFF) == 1 ? '1' : '0';
    }
}

void writeFixedBlock(char* typeData, const TYPEFILE_COM_QX410& record)
{
    for (const std::size_t position : kTypeDataTerminators)
        putAt(typeData, position, kTerminator);
    putAt(typeData, kUserPrmLen + kNumberDigits, kTerminator);

    for (const HostRecordFlag& flag : kHostRecordFlags)
        typeData[flag.position] = flagLetter(record.*flag.member == 1);
    typeData[kChangeable] = flagLetter(true);
    typeData[kAsicCode] = record.asicCode;
    typeData[kModular] = flagLetter(record.modularStation != 0);
    typeData[kFailSafe] = flagLetter(false);
    typeData[kModuleKinds] = flagLetter(false);
    putAt(typeData, kSlaveInterval.position, {record.minSlaveInterval, kSlaveInterval.width});
    writeBaudRates(typeData + kBaudRates.position, record);
    for (const HostRecordNumber& number : kHostRecordNumbers)
        putAt(typeData, number.position, {record.*number.member, kNumberDigits});
}

void writeUserPrm(ImageWriter& out, std::string_view hexDigits)
{
    const std::size_t count = std::min(hexDigits.size() / kHexDigitsPerByte, kMaxCount);
    out.putListHead(kTagUserPrmBytes, count);
    for (std::size_t i = 0; i < count; ++i)
        out.putRecord(hexDigits.substr(i * kHexDigitsPerByte, kHexDigitsPerByte));
}

/// Number of groups that belong to an identifier: its length bytes and as many manufacturer bytes as it states.
std::size_t followingGroups(std::string_view identifier)
{
    const auto byte = static_cast<std::uint32_t>(numberAt(identifier.data()));
    if (CFG_DECODER().interpretCfgByte(byte, kNormFormat, kRoleIdentifier) != kCfgSpecial)
        return 0;
    CFG_SPECIAL_INFO special;
    decodeSpecialByte(byte, special);
    return special.lengthBytes() + special.mfrLength;
}

void writePresetSlots(ImageWriter& out, std::string_view digits)
{
    const std::size_t groups = digits.size() / kNumberDigits;
    const auto group = [digits](std::size_t i) { return digits.substr(i * kNumberDigits, kNumberDigits); };

    out.put(kTagPresetByIdentifier);
    char* const slotCount = out.reserve(kNumberDigits);
    out.put(kTerminator);

    std::size_t slots = 0;
    for (std::size_t i = 0; i < std::min(groups, kMaxCount); ++slots) {
        const std::size_t following = followingGroups(group(i));
        const std::size_t end = std::min(i + 1 + following, groups);
        out.put(group(i));
        for (++i; i < end; ++i) {
            out.put(kQuote);
            out.put(group(i));
        }
        if (following > 0)
            out.put(kQuote);
        out.put(kTerminator);
    }
    RecordText(slotCount).number(slots);
}

/// Input and output length together, as far as three digits go.
std::size_t maxDataLength(const char* typeData)
{
    const int sum = numberAt(typeData + kMaxInputLen.position) + numberAt(typeData + kMaxOutputLen.position);
    return static_cast<std::size_t>(std::clamp(sum, 0, static_cast<int>(kMaxCount)));
}

void writeImage(char* image, const TYPEFILE_COM_QX410& record, std::string_view userPrm, std::string_view slots)
{
    ImageWriter out(image);
    writeHeadLine(out, record);
    writeHeader(out.reserve(kHeaderLength), record);
    char* const typeData = out.reserve(kUserPrmLen + kNumberDigits + kTerminator.size());
    writeFixedBlock(typeData, record);
    writeUserPrm(out, userPrm);
    out.putEmptyList(kTagPrmList);
    writePresetSlots(out, slots);
    out.putRecord(kTagSlotsEnd);
    out.putEmptyList(kTagDeviceDiag);
    out.putEmptyList(kTagChannelDiag);
    out.putRecord(kDefaultBitmap);
    out.putRecord(kDefaultLibrary);
    out.putEmptyList(kTagSlotOffset);
    out.putListHead("", maxDataLength(typeData));
    out.putEmptyList(kTagOrderNumbers);
    out.putEmptyList(kTagModuleLists);
    out.putEmptyList(""); // common parameter length
    out.putEmptyList(kTagSlotPrmBlocks);
    out.putEmptyList(kTagHelpList);
}

} // namespace

cTypDescriptor::cTypDescriptor(const TYPEFILE_COM_QX410* record)
{
    initialAttributes();
    if (record == nullptr) {
        status = kErrFile;
        return;
    }
    const std::string_view userPrm = textOfBuffer(record->userPrmHex);
    const std::string_view slots = textOfBuffer(record->fixedSlotText);
    const std::size_t prmRoom = userPrm.size() / kHexDigitsPerByte * kRoomPerPrmByte;
    const std::size_t slotRoom = slots.size() / kNumberDigits * kRoomPerSlotGroup;
    try {
        allocateClearedImage(kFixedRoom + prmRoom + slotRoom);
    } catch (const std::bad_alloc&) {
        status = kErrFile;
        return;
    }
    writeImage(image, *record, userPrm, slots);
}
