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

struct Member {
    std::size_t position;
    std::size_t size; // with its NUL
};

#define MEMBER(name)                                                                                                   \
    {                                                                                                                  \
        offsetof(TYPEFILE_COM_QX410, name), sizeof TYPEFILE_COM_QX410::name                                            \
    }
constexpr std::array<Member, 6> kTexts{
    {MEMBER(headLine), MEMBER(orderNumber), MEMBER(modelName), MEMBER(vendorName), MEMBER(family), MEMBER(periphery)}};
constexpr std::array<Member, 7> kNumbers{{MEMBER(identNumber), MEMBER(minSlaveInterval), MEMBER(maxInputLen),
                                          MEMBER(maxOutputLen), MEMBER(maxModule), MEMBER(maxDiagDataLen),
                                          MEMBER(userPrmDataLen)}};
constexpr std::array<Member, 8> kFlags{{MEMBER(setSlaveAddSupp), MEMBER(syncModeSupp), MEMBER(freezeModeSupp),
                                        MEMBER(publisherSubscriber), MEMBER(diagBufferable), MEMBER(activeOrMaster),
                                        MEMBER(evenSlotNumberRequired), MEMBER(modularStation)}};
#undef MEMBER

void put(TYPEFILE_COM_QX410& record, Member member, std::string_view text)
{
    char* const place = reinterpret_cast<char*>(&record) + member.position;
    std::memset(place, '\0', member.size);
    text.copy(place, member.size);
}

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
    switch (random.below(8)) {
    case 0: {
        const Member member = random.of(kTexts);
        return put(record, member, text(member.size, random));
    }
    case 1: {
        const Member member = random.of(kNumbers);
        return put(record, member, borderDigits(random, member.size - 1));
    }
    case 2: {
        const auto value = static_cast<std::int32_t>(random.oneIn(6) ? random.below(UINT32_MAX) : random.below(3));
        return put(record, random.of(kFlags), {reinterpret_cast<const char*>(&value), sizeof value});
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
