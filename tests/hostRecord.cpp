#include "tests/hostRecord.h"

#include "fuzz/property.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr int kStandardPrmBytes = 7;
constexpr std::size_t kMaxIdentifierBytes = 17; // with length bytes and manufacturer bytes
constexpr std::size_t kMaxSlots = 244;
constexpr std::size_t kLengthBytes = 2;
constexpr std::size_t kNoTexts = 0xFFFF;

/// A text as a host hands it over: up to its NUL and not a byte more.
std::vector<char> hostText(std::string_view text)
{
    std::vector<char> copy(text.begin(), std::find(text.begin(), text.end(), '\0'));
    copy.push_back('\0');
    copy.shrink_to_fit();
    return copy;
}

} // namespace

void setMember(TYPEFILE_COM_QX410& record, const HostRecordMember& member, std::string_view bytes)
{
    char* const place = reinterpret_cast<char*>(&record) + member.position;
    std::memset(place, '\0', member.size);
    bytes.copy(place, member.size);
}

HostRecord::HostRecord()
    : userPrmHex(3 * kMaxIdentifierBytes * kMaxSlots), fixedSlotText(3 * kMaxIdentifierBytes * kMaxSlots + 1)
{
    fields.userPrmHex = userPrmHex.data();
    fields.fixedSlotText = fixedSlotText.data();
}

HostRecord::HostRecord(cTypDescriptor& device)
{
    SLAVE_TYPEDATA_TYPE data = {};
    device.getSlaveTypeData(&data);
    int slots = 0;
    device.isKonfigFixed(&slots);
    userPrmHex.resize(2 * static_cast<std::size_t>(std::max(data.userPrmDataLenRead - kStandardPrmBytes, 0)) + 1);
    fixedSlotText.resize(3 * kMaxIdentifierBytes * static_cast<std::size_t>(slots) + 1);
    fields.userPrmHex = userPrmHex.data();
    fields.fixedSlotText = fixedSlotText.data();
    requireResult(device.getCOMTypeData(&fields), {device.changeTypeFilePossible()}, "getCOMTypeData");
}

void HostRecord::setTexts(std::string_view userPrm, std::string_view fixedSlots)
{
    userPrmHex = hostText(userPrm);
    fixedSlotText = hostText(fixedSlots);
    fields.userPrmHex = userPrmHex.data();
    fields.fixedSlotText = fixedSlotText.data();
}

RecordInput::RecordInput(std::string_view bytes)
{
    std::memcpy(&fields, bytes.data(), std::min(bytes.size(), kMembers));
    bytes.remove_prefix(std::min(bytes.size(), kMembers));
    if (bytes.size() < kLengthBytes)
        return;
    const std::size_t length = static_cast<std::uint8_t>(bytes[0]) + 256U * static_cast<std::uint8_t>(bytes[1]);
    bytes.remove_prefix(kLengthBytes);
    hasTexts = length != kNoTexts;
    userPrmHex = bytes.substr(0, length);
    fixedSlotText = bytes.substr(userPrmHex.size());
}

RecordInput::RecordInput(const HostRecord& record)
    : fields(record.fields), userPrmHex(record.fields.userPrmHex), fixedSlotText(record.fields.fixedSlotText)
{
    fields.baudRates[0] = 0x10001; // those handed out stand elsewhere than those taken
}

std::string RecordInput::bytes() const
{
    std::string bytes(reinterpret_cast<const char*>(&fields), kMembers);
    const std::size_t length = hasTexts ? std::min(userPrmHex.size(), kNoTexts - 1) : kNoTexts;
    bytes += static_cast<char>(length & 0xFF);
    bytes += static_cast<char>(length >> 8);
    return bytes + userPrmHex.substr(0, length) + fixedSlotText;
}

HostRecord RecordInput::record() const
{
    HostRecord record;
    record.fields = fields;
    record.fields.userPrmHex = record.fields.fixedSlotText = nullptr;
    if (hasTexts)
        record.setTexts(userPrmHex, fixedSlotText);
    return record;
}
