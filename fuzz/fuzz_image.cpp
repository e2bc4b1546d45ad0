// Any bytes as a type-file image.

#include "fuzz/askEverything.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    size = std::min<std::size_t>(size, 65000);
    std::vector<char> object(size + 8);
    std::copy_n(data, size, object.begin());
    cTypDescriptor device(static_cast<unsigned short>(object.size()), object.data());
    askEverything(device);
    return 0;
}
