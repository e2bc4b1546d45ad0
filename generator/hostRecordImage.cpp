// The image is that of a plain DP slave whose type file may be changed: whatever a record has no member for (lists,
// diagnostic texts, names of files) is written in its empty or default form. Texts are not cut to their field and
// numbers are not tested here: the check of the image refuses what is wrong.

#include "generator/hostRecordImage.h"

#include "generator/fixedPart.h"
#include "generator/outputImage.h"
#include "typefile/identifiers.h"
#include "typefile/scan.h"

#include <algorithm>
#include <array>

namespace typdescriptor::internal {

namespace {

// More than the longest head line, header, fixed block and every group that does not depend on the texts of the host,
// with the headroom of an image.
constexpr std::size_t kFixedRoom = 504;
constexpr std::size_t kRoomPerPrmByte = kHexByteDigits + kTerminator.size();
// A group that only continues an identifier takes less: a quote and its digits. A last identifier without its groups
// takes one character more.
constexpr std::size_t kRoomPerSlotGroup = kNumberDigits + kTerminator.size();
constexpr std::size_t kMaxCount = 999;
constexpr int kNormFormat = 1;

std::string_view textOfBuffer(const char* buffer)
{
    return buffer == nullptr ? std::string_view() : std::string_view(buffer);
}

void writeUserPrm(OutputImage& image, std::string_view hexDigits)
{
    const std::size_t count = std::min(hexDigits.size() / kHexByteDigits, kMaxCount);
    image.append(image.record().head(kTagUserPrmBytes, count));
    for (std::size_t i = 0; i < count; ++i)
        image.append(image.record().text(hexDigits.substr(i * kHexByteDigits, kHexByteDigits)).end());
}

/// Number of groups that belong to an identifier: its length bytes and as many manufacturer bytes as it states.
std::size_t followingGroups(std::string_view identifier)
{
    const auto byte = static_cast<std::uint32_t>(numberAt(identifier.data()));
    if (identifierKind(byte, kNormFormat) != kCfgSpecial)
        return 0;
    CFG_SPECIAL_INFO special;
    decodeSpecialByte(byte, special);
    return special.lengthBytes() + special.mfrLength;
}

void writePresetSlots(OutputImage& image, std::string_view digits)
{
    const std::size_t groups = digits.size() / kNumberDigits;
    const auto group = [digits](std::size_t i) { return digits.substr(i * kNumberDigits, kNumberDigits); };
    const std::size_t head = image.reserve(kStructureWidth);
    std::size_t slots = 0;
    for (std::size_t i = 0; i < std::min(groups, kMaxCount); ++slots) {
        const std::size_t following = followingGroups(group(i));
        const std::size_t end = std::min(i + 1 + following, groups);
        image.append(image.record().text(group(i)));
        for (++i; i < end; ++i)
            image.append(image.record().quote().text(group(i)));
        if (following > 0)
            image.append(image.record().quote());
        image.append(image.record().end());
    }
    image.setListHead(head, kStructureWidth, kTagPresetByIdentifier, slots);
    image.append(image.record().text(kTagSlotsEnd).end());
}

/// Input and output length together, as far as three digits go.
std::size_t maxDataLength(const TYPEFILE_COM_QX410& record)
{
    const int sum = numberAt(record.maxInputLen) + numberAt(record.maxOutputLen);
    return static_cast<std::size_t>(std::clamp(sum, 0, static_cast<int>(kMaxCount)));
}

} // namespace

std::size_t hostRecordImageSize(const TYPEFILE_COM_QX410& record)
{
    return kFixedRoom + textOfBuffer(record.userPrmHex).size() / kHexByteDigits * kRoomPerPrmByte +
           textOfBuffer(record.fixedSlotText).size() / kNumberDigits * kRoomPerSlotGroup;
}

void writeHostRecordImage(char* buffer, std::uint32_t capacity, const TYPEFILE_COM_QX410& record)
{
    OutputImage image(buffer, capacity);
    const auto putEmpty = [&image](std::string_view tag) { image.append(image.record().head(tag, 0)); };
    writeFixedPart(image, record);
    image.reserve(kNumberDigits); // the length of the user parameters stands there with the other numbers
    image.append(image.record().end());
    writeUserPrm(image, textOfBuffer(record.userPrmHex));
    putEmpty(kTagPrmList);
    writePresetSlots(image, textOfBuffer(record.fixedSlotText));
    putEmpty(kTagDeviceDiag);
    putEmpty(kTagChannelDiag);
    image.append(image.record().text(kDefaultBitmap).end());
    image.append(image.record().text(kDefaultLibrary).end());
    putEmpty(kTagSlotOffset);
    image.append(image.record().head("", maxDataLength(record)));
    putEmpty(kTagOrderNumbers);
    putEmpty(kTagModuleLists);
    putEmpty(""); // common parameter length
    putEmpty(kTagSlotPrmBlocks);
    putEmpty(kTagHelpList);
}

} // namespace typdescriptor::internal
