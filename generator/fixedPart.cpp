#include "generator/fixedPart.h"

#include "typefile/hostRecordFields.h"

#include <span>

namespace typdescriptor::internal {

namespace {

// The head line of a compiled GSD file, with blanks for the order number.
constexpr std::string_view kHeadLine =
    "TYPGEN V2.53, TimeStamp: mm/dd/yy, hh:mm:ss <                              >\r\n";
constexpr std::size_t kDatePosition = kHeadLine.find("mm/dd");
constexpr std::size_t kTimePosition = kHeadLine.find("hh:mm");
constexpr std::size_t kOrderNumberPosition = kHeadLine.find(kOrderNumberOpen) + 1;

/// A block of fields at fixed places, the next of the image: blanks and the terminators of the fields, then the fields.
class FixedFields {
public:
    FixedFields(OutputImage& image, std::size_t length, std::span<const std::size_t> terminators)
        : start(image.takeRoom(length))
    {
        std::memset(start, ' ', length);
        for (const std::size_t position : terminators)
            at(position).end();
    }

    FixedFields& letter(std::size_t position, char c)
    {
        start[position] = c;
        return *this;
    }
    FixedFields& flag(std::size_t position, bool set) { return letter(position, set ? 'J' : 'N'); }
    FixedFields& text(TextField field, std::string_view text)
    {
        at(field.position).text(text);
        return *this;
    }
    FixedFields& number(TextField field, std::uint32_t number)
    {
        at(field.position).number(number, field.width);
        return *this;
    }
    /// One digit for each baud rate, by the bits of a mask.
    FixedFields& baudRates(unsigned mask)
    {
        for (std::size_t i = 0; i < kBaudRates.width; ++i)
            letter(kBaudRates.position + i, (mask >> i & 1U) != 0 ? '1' : '0');
        return *this;
    }

private:
    RecordText at(std::size_t position) { return RecordText(start + position); }

    char* start;
};

/// Three numbers of two digits with a character between them.
void putTwoDigitFields(RecordText record, char separator, int first, int second, int third)
{
    const auto digits = [](int value) { return static_cast<std::uint64_t>(value % 100); };
    record.number(digits(first), 2)
        .character(separator)
        .number(digits(second), 2)
        .character(separator)
        .number(digits(third), 2);
}

void writeHeadLine(OutputImage& image, const GsdModel& model)
{
    const std::tm& time = model.started;
    char* const line = image.takeRoom(kHeadLine.size());
    RecordText(line).text(kHeadLine);
    putTwoDigitFields(RecordText(line + kDatePosition), '/', time.tm_mon + 1, time.tm_mday, time.tm_year);
    putTwoDigitFields(RecordText(line + kTimePosition), ':', time.tm_hour, time.tm_min, time.tm_sec);
    RecordText(line + kOrderNumberPosition).text(model.orderNumber);
}

void writeHeadLine(OutputImage& image, const TYPEFILE_COM_QX410& record)
{
    const std::string_view headLine = textOf(record.headLine);
    const std::string_view orderNumber = textOf(record.orderNumber);
    image.append(image.record().text(headLine));
    if (!orderNumber.empty())
        image.append(image.record().character(kOrderNumberOpen).text(orderNumber).character(kOrderNumberClose));
    if (!headLine.empty() || !orderNumber.empty())
        image.append(image.record().text(kLineEnd));
}

/// The least number of modules that hosts may plug: the one stated counts only where slots are free.
std::uint32_t moduleLimit(const GsdModel& model)
{
    const bool given = (model.modularStation && !model.multiIdentifierModuleSeen) || model.isDpAsiLink;
    return given && model.maxModule != 0 ? model.maxModule : kMaxModules;
}

/// The rates are read from the low byte of 16-bit units, the halves of the flags with the low one first, although a
/// filled record holds 32-bit flags there: the two sides differ on purpose.
unsigned baudRateMask(const TYPEFILE_COM_QX410& record)
{
    unsigned mask = 0;
    for (std::size_t i = 0; i < kBaudRates.width; ++i) {
        const auto halves = static_cast<uint32_t>(record.baudRates[i / 2]);
        const uint32_t unit = i % 2 == 0 ? halves : halves >> 16;
        mask |= (unit & 0xFF) == 1 ? 1U << i : 0;
    }
    return mask;
}

} // namespace

void writeFixedPart(OutputImage& image, const GsdModel& model)
{
    writeHeadLine(image, model);

    FixedFields(image, kHeaderLength, kHeaderTerminators)
        .text(kVersion, kCurrentVersion)
        .text(kModelName, model.modelName)
        .text(kVendorName, model.vendorName)
        .text(kFamily, model.family)
        .text(kPeriphery, model.periphery)
        .text(kStationType, model.stationType)
        .number(kIdentNumber, model.identNumber)
        .flag(kMakerDevice, model.isMakersDevice)
        .letter(kHeaderCnf, model.headerCnf);

    const char publisher = model.isPublisher ? (model.isSubscriber ? 'J' : 'P') : model.isSubscriber ? 'S' : 'N';
    const char activity = model.isMaster ? 'M' : model.isActive ? 'J' : 'N';
    const char kinds = model.onlyNormalModules ? 'E' : model.onlySpecialModules ? 'S' : 'N';
    FixedFields(image, kUserPrmLen, kTypeDataTerminators)
        .flag(kSetSlaveAddress, model.setSlaveAddress)
        .flag(kSyncMode, model.syncMode)
        .flag(kFreezeMode, model.freezeMode)
        .letter(kPublisherSubscriber, publisher)
        .flag(kDiagBufferable, model.diagBufferable)
        .letter(kActiveMaster, activity)
        .flag(kEvenSlotNumber, model.evenSlotNumber)
        .flag(kChangeable, false)
        .letter(kAsicCode, model.asicCode)
        .flag(kModular, model.modularStation)
        .flag(kFailSafe, model.failSafe)
        .letter(kModuleKinds, kinds)
        .number(kSlaveInterval, model.minSlaveInterval)
        .baudRates(model.baudRates)
        .number(kMaxInputLen, model.maxInputLen)
        .number(kMaxOutputLen, model.maxOutputLen)
        .number(kMaxModule, moduleLimit(model))
        .number(kMaxDiagLen, model.maxDiagDataLen);
}

void writeFixedPart(OutputImage& image, const TYPEFILE_COM_QX410& record)
{
    writeHeadLine(image, record);

    FixedFields(image, kHeaderLength, kHeaderTerminators)
        .text(kVersion, kHostRecordVersion)
        .text(kModelName, {record.modelName, kModelName.width})
        .text(kVendorName, textOf(record.vendorName))
        .text(kFamily, textOf(record.family))
        .text(kPeriphery, textOf(record.periphery))
        .text(kStationType, kStationDpsClass1)
        .text(kIdentNumber, {record.identNumber, kIdentNumber.width})
        .flag(kMakerDevice, false)
        .flag(kHeaderCnf, true);

    FixedFields block(image, kUserPrmLen, kTypeDataTerminators);
    for (const HostRecordFlag& flag : kHostRecordFlags) // positions 0 to 24
        block.flag(flag.position, record.*flag.member == 1);
    block.flag(kChangeable, true)
        .letter(kAsicCode, record.asicCode)
        .flag(kModular, record.modularStation != 0)
        .flag(kFailSafe, false)
        .flag(kModuleKinds, false)
        .text(kSlaveInterval, {record.minSlaveInterval, kSlaveInterval.width})
        .baudRates(baudRateMask(record));
    for (const HostRecordNumber& number : kHostRecordNumbers) // positions 69 to 93, the last one behind the block
        block.text({number.position, kNumberDigits}, {record.*number.member, kNumberDigits});
}

} // namespace typdescriptor::internal
