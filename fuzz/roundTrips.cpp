#include "fuzz/roundTrips.h"

#include "fuzz/answers.h"
#include "fuzz/property.h"
#include "fuzz/scratchFile.h"
#include "tests/hostRecord.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kTrailerSize = 8;

void restore(std::vector<char> object, int gsdRevision, const std::string& orderNumber, const std::string& answers)
{
    cTypDescriptor restored(static_cast<unsigned short>(object.size()), object.data());
    require(check(restored) == kOk, "an object image passes the check");
    require(objectOf(restored) == object, "an object image gives the same object image");
    require(restored.getGsdRevision() == gsdRevision, "an object image has the same GSD revision");
    require(answersOf(restored) == answers, "an object image gives the same answers");
    require(orderNumberOf(restored) == orderNumber, "an object image has the same order number");
    require(check(restored) == kOk, "a second check has the same result");
    require(answersOf(restored) == answers, "a second check gives the same answers");
}

void writeAndRead(cTypDescriptor& device, const std::string& orderNumber, const std::string& answers)
{
    static const ScratchFile file(".410");
    static const std::string kOldContents = "old";
    file.write(kOldContents);
    const int result = static_cast<short>(device.writeTypeFile(file.name()));
    if (device.changeTypeFilePossible() == 0) {
        require(result == kErrNotChangeable && file.contents() == kOldContents,
                "what may not be changed is not written");
        return;
    }
    require(result == kOk, "what may be changed is written");
    cTypDescriptor read(file.name(), 0, nullptr);
    require(check(read) == kOk, "a written type file passes the check");
    require(answersOf(read) == answers, "a written type file gives the same answers");
    require(orderNumberOf(read) == orderNumber, "a written type file has the same order number");
}

} // namespace

bool isCheckCode(int result)
{
    return result <= kOk && result >= kErrCommonPrmLen && std::string(resultText(result)) != resultText(1);
}

int check(cTypDescriptor& device)
{
    const int before = device.getStatus();
    const int result = device.checkTypeFileContents();
    require(device.getStatus() == result, "the status is the result of the check");
    if (before != kOk)
        requireResult(result, {before}, "the check of a failed descriptor");
    else
        require(isCheckCode(result), "the check has a stated result");
    return result;
}

std::vector<char> objectOf(const cTypDescriptor& device)
{
    std::vector<char> object(device.getDataSize());
    const int result = device.writeObject(object.data());
    require(result == (object.empty() ? 0 : 1), "there is an object image when it has a size");
    return object;
}

std::string typeFileIn(const std::vector<char>& object)
{
    return {object.begin(), object.end() - static_cast<std::ptrdiff_t>(std::min(object.size(), kTrailerSize))};
}

std::string takeRound(cTypDescriptor& device)
{
    const std::vector<char> object = objectOf(device);
    std::string answers = answersOf(device);
    require(answersOf(device) == answers, "asking changes no answer");
    const HostRecord filled(device);
    cTypDescriptor built(&filled.fields);
    check(built);

    const std::string orderNumber = orderNumberOf(device);
    if (!object.empty())
        restore(object, device.getGsdRevision(), orderNumber, answers);
    writeAndRead(device, orderNumber, answers);
    return answers;
}
