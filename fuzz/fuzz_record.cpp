// Any bytes as a host record with its two texts. What passes the check must fill a record that builds the same device.

#include "fuzz/answers.h"
#include "fuzz/property.h"
#include "fuzz/recordInput.h"
#include "fuzz/roundTrips.h"
#include "typefile/format.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// Whether another bracket than the one before the order number can be taken for it, or that one for none: what follows
/// it then changes its place when the record is filled.
bool hasDoubtfulBracket(const TYPEFILE_COM_QX410& record)
{
    return std::memchr(&record, typdescriptor::internal::kOrderNumberOpen, RecordInput::kMembers) != nullptr ||
           std::memchr(record.orderNumber, '\0', sizeof record.orderNumber) == nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const RecordInput input(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::unique_ptr<char[]> userPrmHex = hostText(input.userPrmHex);
    const std::unique_ptr<char[]> fixedSlotText = hostText(input.fixedSlotText);
    TYPEFILE_COM_QX410 record = input.record;
    if (input.hasTexts) {
        record.userPrmHex = userPrmHex.get();
        record.fixedSlotText = fixedSlotText.get();
    }
    cTypDescriptor device(&record);
    if (check(device) != kOk)
        return 0;
    require(device.changeTypeFilePossible() == 1, "what a host record builds may be changed");

    HostRecord filled(device);
    const std::string orderNumber = orderNumberOf(device);
    const std::string answers = takeRound(device);
    if (hasDoubtfulBracket(record))
        return 0;
    // A filled record has its baud rates in another form than one to build from.
    std::memcpy(filled.record.baudRates, record.baudRates, sizeof record.baudRates);
    cTypDescriptor again(&filled.record);
    require(check(again) == kOk, "a filled record builds a device that passes the check");
    require(orderNumberOf(again) == orderNumber, "a filled record has the same order number");
    require(answersOf(again) == answers, "a filled record builds a device with the same answers");
    return 0;
}
