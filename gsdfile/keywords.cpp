#include "gsdfile/keywords.h"

#include "gsdfile/keywordTable.h"

#include <algorithm>
#include <array>
#include <vector>

namespace typdescriptor::gsdfile {

namespace {

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

/// Compares two names without regard to case: below, at or above 0.
int compare(std::string_view left, std::string_view right)
{
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        const int difference = static_cast<unsigned char>(lower(left[i])) - static_cast<unsigned char>(lower(right[i]));
        if (difference != 0)
            return difference;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

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

constexpr std::size_t kLongest = 64; // letters of a name that may stand for a keyword; no keyword is nearly as long

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

/// The bare names of all rows, in their order.
const std::vector<std::string>& bareNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> bare;
        for (const Keyword& row : keywordRows())
            bare.push_back(bareName(row.name));
        return bare;
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
    const auto rows = keywordRows();
    const auto row =
        std::lower_bound(rows.begin(), rows.end(), name, [](const Keyword& keyword, std::string_view wanted) {
            return compare(keyword.name, wanted) < 0;
        });
    return row != rows.end() && compare(row->name, name) == 0 ? &*row : nullptr;
}

const Keyword* nearestKeyword(std::string_view name)
{
    constexpr std::size_t kLettersPerFault = 4;
    constexpr std::size_t kMostFaults = 3;
    if (name.empty() || name.size() > kLongest)
        return nullptr;
    const std::string wanted = bareName(name);
    const Keyword* nearest = nullptr;
    std::size_t least = std::min(wanted.size() / kLettersPerFault, kMostFaults) + 1;
    for (std::size_t i = 0; i < keywordRows().size() && least > 0; ++i) {
        const std::size_t faults = distance(wanted, bareNames()[i], least - 1);
        if (faults < least) {
            least = faults;
            nearest = &keywordRows()[i];
        }
    }
    return nearest;
}

bool isMasterKeyword(std::string_view name)
{
    const auto names = masterNames();
    return std::any_of(names.begin(), names.end(), [name](const char* known) { return compare(known, name) == 0; });
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
