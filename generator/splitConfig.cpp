#include "generator/splitConfig.h"

#include "descriptor/resultCodes.h"
#include "typefile/identifiers.h"

#include <cstddef>
#include <span>
#include <utility>

namespace typdescriptor::internal {

int splitModuleConfig(GSD_MODULE& module, bool& multiIdentifierModuleSeen)
{
    const std::span<std::uint8_t> bytes = module.configBytes();
    std::size_t end = 0;
    while (end < bytes.size()) {
        const std::size_t start = end;
        end += identifierLength(bytes[start]);
        if (isSpecialByte(bytes[start])) {
            CFG_SPECIAL_INFO special;
            decodeSpecialByte(bytes[start], special);
            if (special.lengthBytes() == 2 && start + 2 < bytes.size())
                std::swap(bytes[start + 1], bytes[start + 2]);
        }
        ++module.identifierCount;
    }
    if (module.identifierCount >= 2)
        multiIdentifierModuleSeen = true;
    return end == bytes.size() ? kOk : kErrGsdConfiguration;
}

} // namespace typdescriptor::internal
