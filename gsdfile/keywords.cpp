#include "gsdfile/keywords.h"

#include "gsdfile/keywordTable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <unordered_set>
#include <vector>

namespace typdescriptor::gsdfile {

namespace {

constexpr std::size_t kLongest = 64; // letters of a name that may stand for a keyword; no keyword is nearly as long

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string inSmallLetters(std::string_view name)
{
    std::string text(name);
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

bool isSame(std::string_view left, std::string_view right)
{
    const auto isSameLetter = [](char one, char other) { return lower(one) == lower(other); };
    return left.size() == right.size() &&
           (left == right || std::equal(left.begin(), left.end(), right.begin(), isSameLetter));
}

/// The rows by hashes of their names; the place of a row that is taken already is the next free one.
class RowsByName {
public:
    RowsByName()
    {
        for (const Keyword& row : keywordRows()) {
            std::size_t place = placeOf(row.name);
            while (_entries[place].row != nullptr)
                place = (place + 1) % kPlaces;
            _entries[place] = {row.name, &row};
        }
    }

    const Keyword* find(std::string_view name) const
    {
        for (std::size_t place = placeOf(name); _entries[place].row != nullptr; place = (place + 1) % kPlaces) {
            if (isSame(_entries[place].name, name))
                return _entries[place].row;
        }
        return nullptr;
    }

private:
    struct Entry {
        std::string_view name;
        const Keyword* row = nullptr;
    };
    static constexpr std::size_t kPlaces = 1024; // about four for each row

    static std::size_t placeOf(std::string_view name)
    {
        constexpr std::uint32_t kSpread = 0x01000193;
        constexpr unsigned kSmall = 0x20; // makes a capital letter a small one
        std::uint32_t hash = 0;
        for (const char c : name.substr(0, kLongest))
            hash = (hash ^ (static_cast<unsigned char>(c) | kSmall)) * kSpread;
        return (hash >> 16U ^ hash) % kPlaces;
    }

    std::array<Entry, kPlaces> _entries;
};

/// The few values of keywords whose values are no range.
struct ValueSet {
    const char* name;
    std::vector<std::int64_t> values; // single ones, below the range
    Range range;                      // empty where lowest is above highest
};

const std::array<ValueSet, 5>& valueSets()
{
    static const std::array<ValueSet, 5> sets = {{
        {"Alarm_Sequence_Mode_Count", {0}, {2, 32}},
        {"C2_Max_Data_Len", {0}, {48, 240}},
        {"Max_Initiate_PDU_Length", {0}, {52, 244}},
        {"TBASE_DP", {375, 750, 1500, 3000, 6000, 12000}, {1, 0}},
        {"TBASE_IO", {375, 750, 1500, 3000, 6000, 12000}, {1, 0}},
    }};
    return sets;
}

const ValueSet* valueSetOf(const Keyword& keyword)
{
    if (keyword.type != ValueType::numberSet)
        return nullptr;
    const auto& sets = valueSets();
    const auto set = std::find_if(sets.begin(), sets.end(), [&keyword](const ValueSet& known) {
        return std::string_view(known.name) == keyword.name;
    });
    return set == sets.end() ? nullptr : &*set;
}

std::string words(Range range)
{
    const std::string lowest = std::to_string(range.lowest);
    return range.lowest == range.highest ? lowest : lowest + " to " + std::to_string(range.highest);
}

/// A name without what people leave out or mix up: case, "_", "-", ".", blanks.
std::string bareName(std::string_view name)
{
    std::string bare = inSmallLetters(name);
    bare.erase(
        std::remove_if(bare.begin(), bare.end(), [](char c) { return c == '_' || c == '-' || c == '.' || c == ' '; }),
        bare.end());
    return bare;
}

/// How many letters to change, insert, drop or swap with their neighbour; above `most` where it is more.
std::size_t distance(std::string_view left, std::string_view right, std::size_t most)
{
    const std::size_t gap = left.size() > right.size() ? left.size() - right.size() : right.size() - left.size();
    if (gap > most)
        return most + 1;
    using Row = std::array<std::size_t, kLongest + 1>;
    std::array<Row, 3> rows; // of the letters of `left`: this one, and the two before
    for (std::size_t j = 0; j <= right.size(); ++j)
        rows[0][j] = j;
    for (std::size_t i = 1; i <= left.size(); ++i) {
        Row& row = rows[i % 3];
        const Row& before = rows[(i + 2) % 3];
        const Row& beforeThat = rows[(i + 1) % 3];
        row[0] = i;
        std::size_t least = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t changed = before[j - 1] + (left[i - 1] == right[j - 1] ? 0U : 1U);
            row[j] = std::min({changed, before[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                row[j] = std::min(row[j], beforeThat[j - 2] + 1);
            least = std::min(least, row[j]);
        }
        if (least > most)
            return most + 1;
    }
    return rows[left.size() % 3][right.size()];
}

/// The letters and digits that stand in a bare name, as bits: a letter that one name has in place of
/// another changes two of them at most.
std::uint64_t lettersOf(std::string_view bare)
{
    std::uint64_t letters = 0;
    for (const char c : bare)
        letters |= std::uint64_t{1} << (static_cast<unsigned char>(c) & 0x3FU);
    return letters;
}

/// A row's bare name.
struct BareName {
    std::string name;
    std::uint64_t letters = 0;
};

/// Those of all rows, in their order.
const std::vector<BareName>& bareNames()
{
    static const std::vector<BareName> names = [] {
        std::vector<BareName> all;
        for (const Keyword& row : keywordRows()) {
            const std::string bare = bareName(row.name);
            all.push_back({bare, lettersOf(bare)});
        }
        return all;
    }();
    return names;
}

} // namespace

std::span<const Keyword> keywords()
{
    return keywordRows();
}

bool allowsValue(const Keyword& keyword, std::int64_t value)
{
    const ValueSet* set = valueSetOf(keyword);
    if (set == nullptr)
        return keyword.values.holds(value);
    return set->range.holds(value) || std::find(set->values.begin(), set->values.end(), value) != set->values.end();
}

std::string allowedValues(const Keyword& keyword)
{
    const ValueSet* set = valueSetOf(keyword);
    if (set == nullptr)
        return words(keyword.values);
    std::vector<std::string> items;
    for (const std::int64_t value : set->values)
        items.push_back(std::to_string(value));
    if (set->range.lowest <= set->range.highest)
        items.push_back(words(set->range));
    std::string text = items.front();
    for (std::size_t i = 1; i < items.size(); ++i)
        text += (i + 1 == items.size() ? " or " : ", ") + items[i];
    return text;
}

const Keyword* findKeyword(std::string_view name)
{
    static const RowsByName rows;
    return rows.find(name);
}

Nearest nearestKeyword(std::string_view name)
{
    constexpr std::size_t kLettersPerFault = 4;
    constexpr std::size_t kMostFaults = 3;
    if (name.empty() || name.size() > kLongest)
        return {};
    const std::string wanted = bareName(name);
    const std::uint64_t letters = lettersOf(wanted);
    Nearest nearest;
    std::size_t least = std::min(wanted.size() / kLettersPerFault, kMostFaults);
    for (std::size_t i = 0; i < keywordRows().size(); ++i) {
        const BareName& bare = bareNames()[i];
        if (keywordRows()[i].origin == Origin::fieldVariant ||
            static_cast<std::size_t>(std::popcount(letters ^ bare.letters)) > 2 * least)
            continue;
        const std::size_t faults = distance(wanted, bare.name, least);
        if (faults > least)
            continue;
        nearest.other = faults == least && nearest.keyword != nullptr ? &keywordRows()[i] : nullptr;
        if (nearest.other == nullptr)
            nearest.keyword = &keywordRows()[i];
        least = faults;
    }
    nearest.faults = least;
    return nearest;
}

bool isMasterKeyword(std::string_view name)
{
    static const std::unordered_set<std::string> names = [] {
        std::unordered_set<std::string> all;
        for (const char* known : masterNames())
            all.insert(inSmallLetters(known));
        return all;
    }();
    return name.size() <= kLongest && names.contains(inSmallLetters(name));
}

const char* openingName(BlockKind kind)
{
    for (const Keyword& row : keywordRows()) {
        if (kind != BlockKind::none && row.opens == kind)
            return row.name;
    }
    return "";
}

const char* closingName(BlockKind kind)
{
    const BlockKind wanted = kind == BlockKind::kgpModule ? BlockKind::module : kind;
    for (const Keyword& row : keywordRows()) {
        if (wanted != BlockKind::none && row.closes == wanted)
            return row.name;
    }
    return "";
}

} // namespace typdescriptor::gsdfile
