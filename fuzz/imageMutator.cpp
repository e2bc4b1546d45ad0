// Mutations of type files by their records: records come and go together with the count of their group, digits and
// letters change in their places, and records of every kind are put into the groups.

#include "fuzz/mutation.h"
#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace typdescriptor::internal;

namespace {

// The fuzzer asks for a crossing of two inputs as often as for a mutation; one in so many is enough.

constexpr std::size_t kHeaderRecords = 9;
constexpr std::array<const char*, 8> kVersions{"V5.2", "V5.1", "V5.0", "V5.x", "V4.9", "V3.0", "V2.1", "V9.9"};
constexpr std::string_view kFlagLetters = "JNPSMEjn01234VKXY";

std::string_view contentOf(std::string_view record)
{
    return record.ends_with(kTerminator) ? record.substr(0, record.size() - kTerminator.size()) : record;
}

/// Where the count of a group begins in its head, which is a tag and nothing else; npos when the record is none.
std::size_t countIn(std::string_view record)
{
    constexpr std::size_t kLongestTag = 4;
    const std::string_view content = contentOf(record);
    const std::size_t tag = std::min(content.find_first_of("0123456789"), content.size());
    const std::size_t width = content.size() - tag;
    const bool isHead = tag >= 1 && tag <= kLongestTag && width >= 1 && width <= kNumberDigits &&
                        std::all_of(content.begin() + static_cast<std::ptrdiff_t>(tag), content.end(), isDigit);
    return isHead ? tag : std::string_view::npos;
}

void setCount(std::string& head, unsigned long count)
{
    const std::size_t from = countIn(head);
    const std::size_t width = contentOf(head).size() - from;
    std::string digits = std::to_string(count);
    if (digits.size() < width)
        digits.insert(0, width - digits.size(), '0');
    head.replace(from, width, digits);
}

/// Adds to the count of the nearest group head before a record.
void addToGroup(Pieces& records, std::size_t index, int difference)
{
    for (std::size_t i = std::min(index, records.size()); i-- > 0;) {
        const std::size_t from = countIn(records[i]);
        if (from == std::string::npos)
            continue;
        const long count = std::stol(records[i].substr(from)) + difference;
        if (count >= 0)
            setCount(records[i], static_cast<unsigned long>(count));
        return;
    }
}

void repeatRecord(Pieces& records, Random& random)
{
    const std::size_t index = random.below(records.size());
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index), std::string(records[index]));
    addToGroup(records, index, 1);
}

void dropRecord(Pieces& records, Random& random)
{
    const std::size_t index = random.below(records.size());
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(index));
    addToGroup(records, index, -1);
}

void changeCount(Pieces& records, Random& random)
{
    const std::size_t start = random.below(records.size());
    const auto head = std::find_if(records.begin() + static_cast<std::ptrdiff_t>(start), records.end(),
                                   [](const std::string& record) { return countIn(record) != std::string::npos; });
    if (head == records.end())
        return;
    const unsigned long count = std::stoul(head->substr(countIn(*head)));
    const std::array<unsigned long, 4> counts{count + 1, count - (count > 0 ? 1 : 0), random.of(kBorderNumbers), 0};
    setCount(*head, random.of(counts));
}

/// Changes a run of digits in its place.
void changeDigits(std::string& record, Random& random)
{
    const std::size_t from = record.find_first_of("0123456789", random.below(record.size()));
    if (from == std::string::npos)
        return;
    std::size_t to = from;
    while (to < record.size() && isDigit(record[to]))
        ++to;
    constexpr std::array<const char*, 6> kLoose{"-01", " 12", "+7 ", "1 2", "abc", "12\""};
    const std::string digits =
        random.oneIn(10) ? std::string(random.of(kLoose)) : otherDigits(random, record.substr(from, to - from));
    record.replace(from, std::min(digits.size(), to - from), digits, 0, to - from);
}

void changeLetter(Pieces& records, Random& random)
{
    std::vector<std::string*> flags;
    for (std::string& record : records)
        if (contentOf(record).size() == 1)
            flags.push_back(&record);
    if (!flags.empty() && !random.oneIn(4)) {
        (*random.of(flags))[0] = random.of(kFlagLetters);
        return;
    }
    constexpr std::string_view kAnywhere = "\" ;0J\r\n<>[B";
    std::string& record = random.of(records);
    record[random.below(record.size())] = random.of(kAnywhere);
}

/// Another version or station type in the header.
void changeHeader(Pieces& records, Random& random)
{
    std::string& record = records[random.below(std::min(records.size(), kHeaderRecords))];
    const std::size_t length = contentOf(record).size();
    if (length == kStationType.width) {
        const bool isCategoryII = random.oneIn(3);
        const Station* station = &kStations.front();
        do
            station = &kStations[random.below(kStations.size())];
        while (station->category != (isCategoryII ? kCategoryII : kCategoryI));
        record.replace(0, length, station->name);
    } else if (length >= kVersion.width && record[length - kVersion.width] == 'V') {
        record.replace(length - kVersion.width, kVersion.width, random.of(kVersions));
    }
}

std::string text(std::size_t width, Random& random)
{
    return std::string(width, static_cast<char>('A' + random.below(26)));
}

std::string blockReference(Random& random)
{
    return '"' + std::string(kTagSlotPrmBlock) + "00" + std::to_string(random.below(4)) + '"';
}

std::string identifier(Random& random)
{
    constexpr std::array<const char*, 9> kIdentifiers{
        "000", "017", "115", "208", "015", "065\"003", "129\"005", "193\"129\"130", "194\"005\"003\"170\"187"};
    return random.of(kIdentifiers);
}

std::string prm(Random& random)
{
    constexpr std::array<std::array<const char*, 4>, 8> kValues{{{"BIT0 ", "1", "0", "1"},
                                                                 {"BIN  ", "00001111", "0", "1"},
                                                                 {"BYTE ", "10", "0", "200"},
                                                                 {"INT  ", "-1", "-100", "100"},
                                                                 {"UINT ", "00500", "00010", "60000"},
                                                                 {"BGR24", "1010", "0", "15"},
                                                                 {"BGR01", "1", "", "1"},
                                                                 {"BIT7 ", "0", "0", "1"}}};
    const std::string tag = std::string(kTagPrm) + borderDigits(random, kNumberDigits);
    if (random.oneIn(4))
        return tag + std::string(kKeywordSlotNumber) + '[' + random.of(kValues)[0] + ']' + std::string(kKeywordTail);
    const auto& row = random.of(kValues);
    return tag + '"' + text(kNameWidth, random) + '"' + row[0] + '"' + row[1] + '"' + row[2] + '"' + row[3] + '"' +
           std::string(kTagHelp) + "00" + std::to_string(random.below(3)) + '"';
}

/// The one slot of a module list: an identifier, or an entry of the order-number list.
std::string slotsOfList(Random& random)
{
    const std::string end(kTerminator);
    const std::string slotText = '"' + text(kSlotTextWidth, random);
    if (random.oneIn(2))
        return "KX001" + end + identifier(random) + slotText + blockReference(random) + end;
    return "MV001" + end + "00" + std::to_string(random.below(10)) + slotText + '"' + end;
}

/// A record, and the tag of the group it belongs to.
struct NewRecord {
    std::string_view group;
    std::string text;
};

NewRecord newRecord(Random& random)
{
    const auto digits = [&random](std::size_t width) { return borderDigits(random, width); };
    const std::string byte = std::string(kTagDiagByte) + "0" + digits(2) + '"';
    const std::string end(kTerminator);
    const std::string aByte = std::to_string(random.below(10)) + std::to_string(random.below(10));
    switch (random.below(12)) {
    case 0:
        return {kTagDeviceDiag, byte + std::to_string(random.below(8)) + '"' + text(kNameWidth, random) + '"' +
                                    std::to_string(random.below(2)) + '"' + end};
    case 1:
        return {kTagDeviceDiag, byte + std::string(kTagBitGroup) + digits(2) + '"' + text(kNameWidth, random) + '"' +
                                    digits(3) + '"' + end};
    case 2:
        return {kTagChannelDiag,
                std::string(kTagChannelError) + digits(2) + '"' + text(kNameWidth, random) + '"' + end};
    case 3:
        return {kTagHelpLines, '"' + text(kNameWidth, random) + '"' + digits(kHelpValueDigits) + '"' + end};
    case 4:
        return {kTagHelpList, std::string(kTagHelp) + "00" + std::to_string(random.below(4)) + end + "L1" + end + '"' +
                                  text(kNameWidth, random) + '"' + digits(kHelpValueDigits) + '"' + end};
    case 5:
        return {kTagPresetByIdentifier, identifier(random) + (random.oneIn(2) ? blockReference(random) : "") + end};
    case 6:
        return {kTagOrderNumbers,
                '"' + text(kNameWidth, random) + '"' + identifier(random) + blockReference(random) + end};
    case 7:
        return {kTagOrderNumbers, '"' + text(kNameWidth, random) + '"' + digits(kKgpIdDigits) + '"' + digits(3) + '"' +
                                      digits(3) + '"' + digits(3) + blockReference(random) + end};
    case 8:
        return {kTagModuleLists, std::string(kTagModuleList) + "00" + std::to_string(random.below(4)) + '"' +
                                     text(kNameWidth, random) + '"' + end + slotsOfList(random)};
    case 9:
        return {kTagSlotPrmBlocks, std::string(kTagSlotPrmBlock) + "00" + std::to_string(random.below(4)) + end +
                                       digits(3) + end + "PV001" + end + aByte + end + "PSL001" + end + prm(random) +
                                       end};
    case 10:
        return {kTagUserPrmBytes, aByte + end};
    default:
        return {kTagPrmList, prm(random) + end};
    }
}

/// A place behind the head of a group; anywhere when there is none of that tag, and now and then.
std::size_t placeIn(const Pieces& records, std::string_view group, Random& random)
{
    constexpr std::size_t kNearby = 4;
    const std::size_t start = random.oneIn(2) ? 0 : random.below(records.size() + 1);
    for (std::size_t i = start; i < records.size() && !random.oneIn(200); ++i) {
        const std::size_t tag = countIn(records[i]);
        if (tag != std::string::npos && std::string_view(records[i]).substr(0, tag) == group)
            return std::min(i + 1 + (random.oneIn(2) ? 0 : random.below(kNearby)), records.size());
    }
    return random.below(records.size() + 1);
}

void insertRecord(Pieces& records, Random& random)
{
    const NewRecord record = newRecord(random);
    const std::size_t index = placeIn(records, record.group, random);
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index), record.text);
    if (!random.oneIn(4))
        addToGroup(records, index, 1);
}

/// Puts a field between two quotes of one record in the place of one of another.
void exchangeField(Pieces& records, Random& random)
{
    const std::string& source = random.of(records);
    std::string& target = random.of(records);
    const std::size_t from = source.find(kQuote);
    const std::size_t to = target.find(kQuote, random.below(target.size()));
    if (from == std::string::npos || to == std::string::npos)
        return;
    const std::string field = source.substr(from + 1, source.find(kQuote, from + 1) - from - 1);
    const std::size_t end = std::min(target.find(kQuote, to + 1), target.size());
    target.replace(to + 1, end - to - 1, field);
}

void mutate(Pieces& records, Random& random)
{
    switch (records.empty() ? 0 : random.below(14)) {
    case 0:
    case 1:
    case 2:
        return insertRecord(records, random);
    case 3:
        return repeatRecord(records, random);
    case 4:
        return dropRecord(records, random);
    case 5:
        return changeCount(records, random);
    case 6:
    case 7:
        return changeLetter(records, random);
    case 8:
        return changeHeader(records, random);
    case 9:
        return exchangeField(records, random);
    case 10:
        return rearrange(records, random);
    default:
        return changeDigits(random.of(records), random);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    return mutateInput(data, size, maxSize, seed, kTerminator, mutate);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2, std::uint8_t* out,
                                                 std::size_t maxOutSize, unsigned seed)
{
    return crossInputs({data1, size1}, {data2, size2}, out, maxOutSize, seed, kTerminator);
}
