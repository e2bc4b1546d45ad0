// Mutations of type files by their records: records come and go together with the count of their group, digits and
// letters change in their places, and records of every kind are put into the groups.

#include "fuzz/mutation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kTerminator = ";\r\n";
constexpr std::size_t kNumberDigits = 3;
constexpr std::size_t kNameWidth = 30;
constexpr std::size_t kSlotTextWidth = 20;
constexpr std::size_t kVersionWidth = 4;
constexpr std::size_t kHeaderRecords = 9;
constexpr std::array<std::string_view, 10> kStations{
    "DPS/CLASS1     ", "DPS/CLASS3     ", "QX410U/VRC     ", "DPASI/GATE     ", "KGP/QX410L     ",
    "PPROCDPS       ", "QX410B/24V/QMX ", "QX410C/24V/QMX ", "QX410K         ", "QMX            "};
constexpr std::array<const char*, 8> kVersions{"V5.2", "V5.1", "V5.0", "V5.x", "V4.9", "V3.0", "V2.1", "V9.9"};
constexpr std::string_view kFlagLetters = "JNPSMEjn01234VKXY";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

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
    if (length == kStations[0].size())
        record.replace(0, length, random.of(kStations));
    else if (length >= kVersionWidth && record[length - kVersionWidth] == 'V')
        record.replace(length - kVersionWidth, kVersionWidth, random.of(kVersions));
}

/// Records of every kind with the tag of their group; see partOf() for the signs.
struct RecordForm {
    const char* group;
    const char* form;
};
constexpr std::array<RecordForm, 19> kRecordForms{{
    {"DKM", "DBO0#\"?\"*\"1\"^"},
    {"DKM", "DBO0#\"?\"*\"0\"^"},
    {"DKM", "DBO0#\"BGR#\"*\"@\"^"},
    {"DKK", "KFC#\"*\"^"},
    {"L", "\"*\"~\"^"},
    {"HTT", "HI00?^L1^\"*\"~\"^"},
    {"KX", "%^"},
    {"KX", "%\"SP00?\"^"},
    {"MLFB", "\"*\"%\"SP00?\"^"},
    {"MLFB", "\"*\"~\"@\"@\"@\"SP00?\"^"},
    {"LSK", "SK00?\"*\"^KX001^%\"=\"SP00?\"^"},
    {"LSK", "SK00?\"*\"^MV001^00?\"=\"^"},
    {"SPT", "SP00?^@^PV001^??^PSL001^PS00?[SlotNumber][UINT ][000]^"},
    {"SPT", "SP00?^@^PV001^??^PSL001^PS@\"*\"BYTE \"10\"0\"200\"HI00?\"^"},
    {"PV", "??^"},
    {"PSL", "PS@\"*\"BIT? \"1\"0\"1\"HI00?\"^"},
    {"PSL", "PS@\"*\"BIN  \"00001111\"0\"1\"HI00?\"^"},
    {"PSL", "PS@\"*\"INT  \"-1\"-100\"100\"HI00?\"^"},
    {"PSL", "PS@\"*\"BGR24\"1010\"0\"15\"HI00?\"^"},
}};

/// "#", "@", "~": two, three and five digits; "?" one; "*", "=": texts of the two widths; "%" an identifier; "^" the
/// terminator.
std::string partOf(char sign, Random& random)
{
    constexpr std::array<const char*, 9> kIdentifiers{
        "000", "017", "115", "208", "015", "065\"003", "129\"005", "193\"129\"130", "194\"005\"003\"170\"187"};
    constexpr std::string_view kWidths = "#2@3~5";
    switch (sign) {
    case '#':
    case '@':
    case '~':
        return borderDigits(random, static_cast<std::size_t>(kWidths[kWidths.find(sign) + 1] - '0'));
    case '?':
        return std::to_string(random.below(random.oneIn(2) ? 4 : 10));
    case '*':
    case '=':
        return std::string(sign == '*' ? kNameWidth : kSlotTextWidth, static_cast<char>('A' + random.below(26)));
    case '%':
        return random.of(kIdentifiers);
    case '^':
        return std::string(kTerminator);
    default:
        return "";
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
    const RecordForm& record = random.of(kRecordForms);
    const std::size_t index = placeIn(records, record.group, random);
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index), filled(record.form, random, partOf));
    if (!random.oneIn(4))
        addToGroup(records, index, 1);
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
