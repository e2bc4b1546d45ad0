#include "lint/libraryLosses.h"

#include "lint/deviceIndex.h"
#include "lint/phrases.h"

#include <algorithm>

namespace typdescriptor::lint {

namespace {

// Room for the texts of a keyword: blanks are taken out of longer ones, the last one first, and what is still too long is cut.
struct TextRoom {
    std::string_view keyword;
    std::size_t squeezed;
    std::size_t kept;
};

constexpr TextRoom kTextRooms[] = {
    {"Vendor_Name", 17, 10},
    {"Model_Name", 17, 17},
    {"Bitmap_Device", 17, 7},
    {"Periphery", 10, 10},
};

constexpr TextRoom kUsualRoom = {{}, 30, 30};

std::string keptText(std::string_view text, const TextRoom& room)
{
    std::string kept(text);
    for (std::size_t i = kept.size(); i > 0 && kept.size() > room.squeezed; --i)
        if (kept[i - 1] == ' ')
            kept.erase(i - 1, 1);
    return kept.substr(0, room.kept);
}

std::string changed(std::int64_t from, std::int64_t to)
{
    return std::to_string(from) + " becomes " + std::to_string(to);
}

} // namespace

std::optional<Reason> cutText(const Entry& entry)
{
    if (!entry.text)
        return std::nullopt;
    const auto row = std::ranges::find(kTextRooms, entry.keyword, &TextRoom::keyword);
    const std::string_view text = entry.text->text;
    const std::string kept = keptText(text, row == std::end(kTextRooms) ? kUsualRoom : *row);
    if (kept == text)
        return std::nullopt;
    return Reason{entry.text->place, "the library keeps " + inQuotes(kept) + ", " + std::to_string(kept.size()) +
                                         " of " + std::to_string(text.size()) + " characters"};
}

std::optional<Reason> cutArea(const Entry& entry)
{
    if (entry.numbers.size() != 2)
        return std::nullopt;
    const std::int64_t first = entry.numbers[0].value;
    const std::int64_t last = entry.numbers[1].value;
    const std::int64_t kept = last - (last % 8 + 1);
    return Reason{joined(entry.numbers[0].place, entry.numbers[1].place),
                  "the library keeps the bits of one octet: " + std::to_string(first) + " to " + std::to_string(kept) +
                      " of " + std::to_string(first) + " to " + std::to_string(last) +
                      ", and of the values what fits into them"};
}

std::optional<Reason> narrowedNumbers(const Entry& entry)
{
    constexpr std::int64_t kBytes = 0xFF;
    constexpr std::int64_t kWords = 0xFFFF;
    const bool isByte = entry.keyword == "Signed8";
    const std::int64_t mask = isByte ? kBytes : kWords;
    std::string why =
        "the library keeps " + std::string(entry.keyword) + (isByte ? " as one byte" : " in 16 of its 32 bits");
    if (entry.keyword != "Unsigned32")
        why += " without a sign";
    constexpr const char* kNames[] = {"default", "minimum", "maximum"};
    const bool isList = entry.numbers.size() > std::size(kNames);
    bool hasLoss = false;
    for (std::size_t i = 0; i < entry.numbers.size() && (i == 0 || !isList); ++i) {
        const std::int64_t value = entry.numbers[i].value;
        if ((value & mask) == value)
            continue;
        why.append(hasLoss ? ", " : ": ")
            .append("the ")
            .append(kNames[i])
            .append(" ")
            .append(changed(value, value & mask));
        hasLoss = true;
    }
    if (entry.numbers.size() == 1)
        why += isByte ? "; the range becomes 0 to 255" : "; the range becomes 0 to 65535";
    return Reason{entry.place, why};
}

} // namespace typdescriptor::lint
