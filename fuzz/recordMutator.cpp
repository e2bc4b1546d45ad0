// Mutations of host records by their members: each gets texts and numbers that its place may hold, and a few that it
// may not.

#include "fuzz/mutation.h"
#include "tests/hostRecord.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

/// A text of any length up to the whole width, without a NUL then.
std::string text(std::size_t width, Random& random)
{
    constexpr std::array<const char*, 8> kCharacters{"", "Device", " ", "a;b", "<x>", "\r\n", "\xFF", "A>"};
    std::string characters = random.of(kCharacters);
    if (random.oneIn(2))
        characters.resize(random.oneIn(2) ? width - 1 : random.below(width + 1), ' ');
    return characters;
}

void mutate(RecordInput& input, Random& random)
{
    TYPEFILE_COM_QX410& record = input.fields;
    constexpr std::array<const char*, 10> kGroups{
        "000", "017", "115", "066003", "130005", "194129130", "196005003170187", "015", "193", "999"};
    constexpr std::string_view kAsicCodes = "01234N n5";
    const HostRecordMember& member = random.of(kHostRecordMembers);
    switch (random.below(8)) {
    case 0:
    case 1:
    case 2: {
        const auto flag = static_cast<std::int32_t>(random.oneIn(6) ? random.below(UINT32_MAX) : random.below(3));
        return setMember(record, member,
                         member.kind == HostRecordMember::kText ? text(member.size, random)
                         : member.kind == HostRecordMember::kNumber
                             ? borderDigits(random, member.size - 1)
                             : std::string(reinterpret_cast<const char*>(&flag), sizeof flag));
    }
    case 3:
        record.baudRates[random.below(5)] = static_cast<std::int32_t>(random.below(2) + random.below(2) * 0x10000);
        return;
    case 4:
        record.asicCode = random.of(kAsicCodes);
        return;
    case 5:
        input.userPrmHex.resize(random.below(random.oneIn(8) ? 2100 : 20), "0123456789ABCDEFaf g"[random.below(20)]);
        return;
    case 6:
        input.hasTexts = !random.oneIn(16);
        input.fixedSlotText.resize(random.below(input.fixedSlotText.size() + 1));
        [[fallthrough]];
    default:
        for (std::size_t count = random.below(random.oneIn(8) ? 300 : 4); count > 0; --count)
            input.fixedSlotText += random.oneIn(6) ? borderDigits(random, 3) : random.of(kGroups);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    Random random(seed);
    if (random.oneIn(2))
        return LLVMFuzzerMutate(data, size, maxSize);
    RecordInput input(std::string_view(reinterpret_cast<const char*>(data), size));
    for (std::size_t count = 1 + random.below(3); count > 0; --count)
        mutate(input, random);
    return store({input.bytes()}, data, maxSize);
}
