#include "generator/recordText.h"

#include <array>

namespace typdescriptor::internal {

RecordText& RecordText::longNumber(std::uint64_t value, std::size_t digits)
{
    std::array<char, 20> decimal{}; // as many digits as 64 bits may need
    std::size_t first = decimal.size();
    for (; value != 0 || decimal.size() - first < digits; value /= 10)
        decimal[--first] = static_cast<char>('0' + value % 10);
    return text({decimal.data() + first, decimal.size() - first});
}

RecordText& RecordText::signedNumber(std::int32_t value, std::size_t digits)
{
    if (value < 0)
        character('-');
    const auto magnitude = static_cast<std::int64_t>(value);
    return number(static_cast<std::uint64_t>(magnitude < 0 ? -magnitude : magnitude), digits);
}

} // namespace typdescriptor::internal
