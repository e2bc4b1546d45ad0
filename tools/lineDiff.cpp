// Lines that stand once in each text are the fixed points: the longest run of them in one order is kept, and what lies
// between is compared again in the same way. Fast for texts of any size, also when every line of them differs.

#include "tools/lineDiff.h"

#include "tools/displayText.h"
#include "tools/terminal.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace {

using Lines = std::vector<std::string_view>;

/// The lines of a text, each with its line feed.
Lines linesOf(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

/// Lines [begin, end) of the one text stand for lines [begin, end) of the other.
struct Block {
    std::size_t oldBegin, oldEnd, newBegin, newEnd;
};

class Comparison {
public:
    Comparison(const Lines& oldLines, const Lines& newLines) : before(oldLines), after(newLines)
    {
        compare({0, before.size(), 0, after.size()});
    }

    const std::vector<Block>& changes() const { return found; }

private:
    struct Anchor {
        std::size_t oldLine, newLine;
    };

    void compare(Block block)
    {
        while (block.oldBegin < block.oldEnd && block.newBegin < block.newEnd &&
               before[block.oldBegin] == after[block.newBegin])
            ++block.oldBegin, ++block.newBegin;
        while (block.oldBegin < block.oldEnd && block.newBegin < block.newEnd &&
               before[block.oldEnd - 1] == after[block.newEnd - 1])
            --block.oldEnd, --block.newEnd;
        if (block.oldBegin == block.oldEnd && block.newBegin == block.newEnd)
            return;
        const std::vector<Anchor> anchors = longestRun(commonLines(block));
        if (anchors.empty()) {
            found.push_back(block);
            return;
        }
        for (const Anchor& anchor : anchors) {
            compare({block.oldBegin, anchor.oldLine, block.newBegin, anchor.newLine});
            block.oldBegin = anchor.oldLine + 1;
            block.newBegin = anchor.newLine + 1;
        }
        compare(block);
    }

    /// The lines that stand once in either half of a block, in the order of the old one.
    std::vector<Anchor> commonLines(const Block& block) const
    {
        struct Places {
            unsigned oldCount = 0, newCount = 0;
            std::size_t newLine = 0;
        };
        std::unordered_map<std::string_view, Places> places;
        for (std::size_t i = block.oldBegin; i < block.oldEnd; ++i)
            ++places[before[i]].oldCount;
        for (std::size_t i = block.newBegin; i < block.newEnd; ++i) {
            Places& place = places[after[i]];
            ++place.newCount;
            place.newLine = i;
        }
        std::vector<Anchor> anchors;
        for (std::size_t i = block.oldBegin; i < block.oldEnd; ++i) {
            if (const Places& place = places[before[i]]; place.oldCount == 1 && place.newCount == 1)
                anchors.push_back({i, place.newLine});
        }
        return anchors;
    }

    /// The longest part of the anchors whose lines rise in the new text as well.
    static std::vector<Anchor> longestRun(const std::vector<Anchor>& anchors)
    {
        constexpr auto kNone = static_cast<std::size_t>(-1);
        std::vector<std::size_t> ends; // by length of a run: the anchor with the lowest line that ends one
        std::vector<std::size_t> previous(anchors.size(), kNone);
        for (std::size_t i = 0; i < anchors.size(); ++i) {
            const auto place =
                std::lower_bound(ends.begin(), ends.end(), i, [&anchors](std::size_t left, std::size_t right) {
                    return anchors[left].newLine < anchors[right].newLine;
                });
            if (place != ends.begin())
                previous[i] = *(place - 1);
            if (place == ends.end())
                ends.push_back(i);
            else
                *place = i;
        }
        std::vector<Anchor> run;
        for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i])
            run.push_back(anchors[i]);
        std::reverse(run.begin(), run.end());
        return run;
    }

    const Lines& before;
    const Lines& after;
    std::vector<Block> found;
};

void addLines(std::string& diff, char sign, const Lines& lines, std::size_t begin, std::size_t end)
{
    for (std::size_t i = begin; i < end; ++i) {
        (diff += sign) += lines[i];
        if (!lines[i].ends_with('\n'))
            diff += "\n\\ No newline at end of file\n";
    }
}

std::string rangeText(std::size_t begin, std::size_t end)
{
    const std::size_t count = end - begin;
    return std::to_string(count == 0 ? begin : begin + 1) + (count == 1 ? "" : ',' + std::to_string(count));
}

constexpr std::size_t kContext = 3;

/// One hunk: the changes [first, last) with the lines around and between them.
void addHunk(std::string& diff, const Lines& before, const Lines& after, const Block* first, const Block* last)
{
    const std::size_t lead = std::min(first->oldBegin, kContext);
    const std::size_t tail = std::min(before.size() - (last - 1)->oldEnd, kContext);
    const std::size_t oldBegin = first->oldBegin - lead;
    const std::size_t oldEnd = (last - 1)->oldEnd + tail;
    diff += "@@ -" + rangeText(oldBegin, oldEnd) + " +" + rangeText(first->newBegin - lead, (last - 1)->newEnd + tail) +
            " @@\n";
    std::size_t line = oldBegin;
    for (const Block* change = first; change != last; ++change) {
        addLines(diff, ' ', before, line, change->oldBegin);
        addLines(diff, '-', before, change->oldBegin, change->oldEnd);
        addLines(diff, '+', after, change->newBegin, change->newEnd);
        line = change->oldEnd;
    }
    addLines(diff, ' ', before, line, oldEnd);
}

} // namespace

std::string unifiedDiff(const std::string& name, std::string_view before, std::string_view after)
{
    const Lines oldLines = linesOf(before);
    const Lines newLines = linesOf(after);
    const Comparison comparison(oldLines, newLines);
    const std::vector<Block>& changes = comparison.changes();
    if (changes.empty())
        return {};
    std::string diff = "--- " + name + "\n+++ " + name + '\n';
    for (const Block* first = changes.data(); first != changes.data() + changes.size();) {
        const Block* last = first + 1;
        while (last != changes.data() + changes.size() && last->oldBegin - (last - 1)->oldEnd <= 2 * kContext)
            ++last;
        addHunk(diff, oldLines, newLines, first, last);
        first = last;
    }
    return diff;
}

std::string shownDiff(const std::string& diff, bool inColour)
{
    std::string shown;
    for (std::string_view line : linesOf(diff)) {
        if (line.ends_with('\n'))
            line.remove_suffix(1);
        const bool isHead = line.starts_with("---") || line.starts_with("+++");
        const std::string text = readable(std::string(line));
        if (isHead)
            shown += coloured(text, Colour::kBold, inColour);
        else if (line.starts_with('-'))
            shown += coloured(text, Colour::kRed, inColour);
        else if (line.starts_with('+'))
            shown += coloured(text, Colour::kGreen, inColour);
        else
            shown += line.starts_with('@') ? coloured(text, Colour::kCyan, inColour) : text;
        shown += '\n';
    }
    return shown;
}
