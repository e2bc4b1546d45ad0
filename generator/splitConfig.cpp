#include "generator/splitConfig.h"

#include "descriptor/resultCodes.h"
#include "typefile/cfgDecoder.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int32_t kStandardFormats = 1;

/// Length that the identifier at `bytes[start]` claims; 0 when its first byte is no identifier.
std::size_t claimedLength(std::span<const std::uint8_t> bytes, std::size_t start, CFG_SPECIAL_INFO& special)
{
    CFG_DECODER decoder;
    switch (decoder.interpretCfgByte(bytes[start], kStandardFormats, kRoleIdentifier)) {
    case kCfgEmpty:
    case kCfgGeneral:
        return 1;
    case kCfgSpecial:
        decodeSpecialByte(bytes[start], special);
        return std::size_t{1} + special.lengthBytes() + special.mfrBytes();
    default:
        return 0;
    }
}

} // namespace

int splitModuleConfig(Arena& arena, GSD_MODULE& module, bool& multiIdentifierModuleSeen)
{
    const std::span<std::uint8_t> bytes = module.configBytes;
    std::size_t end = 0;
    while (end < bytes.size()) {
        const std::size_t start = end;
        CFG_SPECIAL_INFO special;
        const std::size_t length = claimedLength(bytes, start, special);
        if (length == 0)
            return kErrGsdConfiguration;
        end += length;
        if (special.lengthBytes() == 2 && start + 2 < bytes.size())
            std::swap(bytes[start + 1], bytes[start + 2]);
        module.identifiers.append(arena, {bytes.subspan(start, std::min(end, bytes.size()) - start)});
    }
    if (module.identifiers.count() >= 2)
        multiIdentifierModuleSeen = true;
    return end == bytes.size() ? kOk : kErrGsdConfiguration;
}
