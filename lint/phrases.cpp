#include "lint/phrases.h"

namespace typdescriptor::lint {

std::string inHex(std::int64_t value, unsigned digits)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "0x";
    for (unsigned shift = 4 * digits; shift > 0; shift -= 4)
        text += kDigits[static_cast<std::size_t>((value >> (shift - 4)) & 0xF)];
    return text;
}

} // namespace typdescriptor::lint
