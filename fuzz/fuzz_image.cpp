// Any bytes as a type file: taken as an object image and read from disk, which must come to the same.

#include "fuzz/answers.h"
#include "fuzz/property.h"
#include "fuzz/roundTrips.h"
#include "fuzz/scratchFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kMaxImageSize = 65000; // so that the size of an object image is its whole size
constexpr std::size_t kTrailerSize = 8;

/// Of an object image that is gone as soon as it has been taken.
cTypDescriptor fromObject(std::string_view typeFile)
{
    std::vector<char> object(typeFile.begin(), typeFile.end());
    object.resize(object.size() + kTrailerSize);
    return cTypDescriptor(static_cast<unsigned short>(object.size()), object.data());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ScratchFile file("in.410");
    const std::string_view typeFile(reinterpret_cast<const char*>(data), std::min(size, kMaxImageSize));
    if (typeFile.empty())
        return 0;
    cTypDescriptor device = fromObject(typeFile);
    const int result = check(device);
    file.write(typeFile);
    cTypDescriptor read(file.name(), 0, nullptr);
    require(check(read) == result, "an object image and a file of the same bytes have the same result");
    if (result == kOk)
        require(takeRound(device) == answersOf(read), "an object image and a file give the same answers");
    return 0;
}
