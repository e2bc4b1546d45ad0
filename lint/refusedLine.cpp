// From a physical line of the file, as the library counts them, to the statement that stands there.

#include "lint/refusalReason.h"

#include "lint/deviceIndex.h"
#include "lint/rule.h"

#include "gsdfile/document.h"

#include <algorithm>
#include <array>
#include <span>

namespace typdescriptor::lint {

namespace {

// Where a physical line ends; the file's end for lines beyond it.
std::size_t endOfLine(const gsdfile::Document& document, long line)
{
    const auto index = static_cast<std::size_t>(line) - 1;
    return line > 0 && index < document.lines().size() ? document.lines()[index].end : document.bytes().size();
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// A line without its comment and without the blanks at its ends.
std::string_view content(std::string_view line)
{
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        isQuoted = isQuoted != (line[i] == '"');
        if (line[i] == ';' && !isQuoted) {
            line = line.substr(0, i);
            break;
        }
    }
    while (!line.empty() && isBlank(line.back()))
        line.remove_suffix(1);
    while (!line.empty() && isBlank(line.front()))
        line.remove_prefix(1);
    return line;
}

// The lines of a statement put together as the library does it.
std::string joinedLines(std::string_view lines)
{
    std::string text;
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.size(), lines.find('\n'));
        std::string_view line = content(lines.substr(0, end));
        lines.remove_prefix(std::min(lines.size(), end + 1));
        if (line.ends_with('\\'))
            line.remove_suffix(1);
        text += line;
    }
    return text;
}

constexpr std::array<std::string_view, 5> kBlocks = {"ExtUserPrmData", "Module", "KGPModule", "PrmText",
                                                     "Unit_Diag_Area"};
constexpr std::array<std::string_view, 4> kEnds = {"EndExtUserPrmData", "EndModule", "EndPrmText",
                                                   "Unit_Diag_Area_End"};

bool isOneOf(std::string_view keyword, std::span<const std::string_view> list)
{
    return std::ranges::find(list, keyword) != list.end();
}

} // namespace

const Entry* entryAt(const Context& context, long line)
{
    const DeviceIndex& device = context.device();
    const std::size_t end = endOfLine(context.document, line);
    const auto behind =
        std::ranges::partition_point(device.entries, [end](const Entry& entry) { return entry.place.begin < end; });
    return behind == device.entries.begin() ? nullptr : &*std::prev(behind);
}

RefusedLine refusedLine(const Context& context, long line)
{
    const DeviceIndex& device = context.device();
    const std::string_view bytes = context.document.bytes();
    RefusedLine refused;
    const Entry* entry = entryAt(context, line);
    if (entry == nullptr)
        return refused;
    const std::size_t start = entry->place.begin;
    const std::string_view firstLine = content(bytes.substr(start, bytes.find('\n', start) - start));
    refused.place = {entry->place.begin, entry->place.begin + static_cast<std::uint32_t>(firstLine.size())};
    refused.whole = {entry->place.begin,
                     static_cast<std::uint32_t>(std::max(start, endOfLine(context.document, line)))};
    refused.text = joinedLines(bytes.substr(start, std::max(start, endOfLine(context.document, line)) - start));
    refused.entry = entry;
    refused.keyword = entry->keyword;
    refused.keywordPlace = entry->place;

    // The block that is open before the statement; at the end of the file the one that is open behind it.
    const bool isLastRead = line > std::ranges::count(bytes, '\n');
    const std::size_t lastLine = bytes.rfind('\n') + 1;
    refused.isAtEnd = isLastRead && content(bytes.substr(std::min(bytes.size(), lastLine))).empty();
    auto before = std::ranges::find_if(device.entries, [entry](const Entry& one) { return &one == entry; });
    if (refused.isAtEnd)
        ++before;
    while (before != device.entries.begin()) {
        --before;
        if (isOneOf(before->keyword, kEnds))
            break;
        if (!isOneOf(before->keyword, kBlocks))
            continue;
        refused.block = before->keyword;
        refused.blockPlace = before->place;
        break;
    }
    return refused;
}

} // namespace typdescriptor::lint
