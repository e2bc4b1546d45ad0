// Mutations of GSD files by their lines: lines come, go and change places, a line of any keyword with a value that may
// fit is put where it may stand, values are replaced by others at the borders.

#include "fuzz/mutation.h"
#include "gsd/keywordTable.h"
#include "typefile/scan.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace typdescriptor::internal;

namespace {

constexpr std::string_view kLineFeed = "\n";

/// The keywords between which a block stands.
struct BlockLines {
    GsdBlock block;
    std::string_view first;
    std::string_view last;
};
constexpr std::array<BlockLines, 4> kBlockLines{{
    {kInModule, "Module", "EndModule"},
    {kInExtPrmDef, "ExtUserPrmData", "EndExtUserPrmData"},
    {kInPrmText, "PrmText", "EndPrmText"},
    {kInUnitDiagArea, "Unit_Diag_Area", "Unit_Diag_Area_End"},
}};

std::string_view withoutIndent(std::string_view line)
{
    while (!line.empty() && typdescriptor::internal::isSpace(line.front()))
        line.remove_prefix(1);
    return line;
}

/// The block that is open before a line.
unsigned blockAt(const Pieces& lines, std::size_t index)
{
    unsigned block = kOutside;
    for (std::size_t i = 0; i < index; ++i) {
        const std::size_t keyword = GsdKeywordTable::find(withoutIndent(lines[i]));
        if (keyword == GsdKeywordTable::kNone)
            continue;
        for (const BlockLines& row : kBlockLines) {
            if (GsdKeywordTable::kRows[keyword].spelling == row.first)
                block = row.block;
            else if (GsdKeywordTable::kRows[keyword].spelling == row.last)
                block = kOutside;
        }
    }
    return block;
}

std::string number(Random& random)
{
    constexpr std::array<const char*, 12> kHard{"0x",     "0xFF",        "0X1F",       "-1",  "-32768", "-32769",
                                                "-32513", "-2147483649", "0xFFFFFFFF", "007", "1e3",    ""};
    constexpr unsigned kSmall = 16;
    if (random.oneIn(2))
        return std::to_string(random.below(kSmall));
    return random.oneIn(4) ? random.of(kHard) : std::to_string(random.of(kBorderNumbers));
}

/// What a sign of a value stands for: "#" a number, "&" some more of them, "%" identifiers, "$" a quoted text, most often
/// of a length at which fields end.
std::string partOf(char sign, Random& random)
{
    constexpr std::array<std::size_t, 14> kLengths{0, 1, 7, 8, 9, 10, 11, 17, 18, 20, 30, 31, 32, 33};
    constexpr std::array<const char*, 12> kTexts{"[SlotNumber]", "[Slotnumber]", ";", "\"",     ">",    "<",
                                                 "VRC2",         "QMX2",         " ", "a b  c", "\xE4", ""};
    constexpr std::array<const char*, 10> kIdentifiers{
        "0x00",      "0x11", "0x21",      "0x73",      "0x41,0x03",
        "0x81,0x05", "0xD1", "0x11,0x21", "0xF1,0x73", "0xC2,0x81,0x82,1,2"};
    std::string text;
    switch (sign) {
    case '#':
        return number(random) + ' ';
    case '&':
        for (std::size_t count = 1 + random.below(random.oneIn(8) ? 240 : 6); count > 0; --count)
            text += number(random) + (count > 1 ? "," : "");
        return text + ' ';
    case '%':
        return random.of(kIdentifiers);
    case '$':
        text = random.of(kTexts);
        text.resize(std::max(text.size(), random.oneIn(2) ? random.of(kLengths) : 0), 'x');
        return '"' + text + '"';
    default:
        return "";
    }
}

std::string value(Random& random)
{
    constexpr std::array<const char*, 10> kValues{"#", "#", "#", "&", "#-#", "$", "$ %", "#$", "# #-#", "#@TdF@#"};
    return filled(random.of(kValues), random, partOf);
}

std::string lineOf(const GsdKeyword& keyword, Random& random)
{
    std::string line(keyword.spelling);
    if (keyword.takesArgument())
        line += '(' + (random.oneIn(3) ? value(random) : std::to_string(random.below(32))) + ')';
    if (keyword.takesEquals())
        return line + " = " + value(random) + '\n';
    if ((keyword.blocks & kInExtPrmDef) != 0)
        line += ' ' + filled("#&", random, partOf);
    return line + '\n';
}

/// A line of a keyword that may stand in a block.
std::string lineIn(unsigned block, Random& random)
{
    for (;;) {
        const GsdKeyword& keyword = random.of(GsdKeywordTable::kRows);
        if ((keyword.blocks & block) != 0 || random.oneIn(32))
            return lineOf(keyword, random);
    }
}

void insertLine(Pieces& lines, Random& random)
{
    const std::size_t index = random.below(lines.size() + 1);
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(index), lineIn(blockAt(lines, index), random));
}

void insertBlock(Pieces& lines, Random& random)
{
    const BlockLines& row = random.of(kBlockLines);
    Pieces block;
    block.push_back(lineOf(GsdKeywordTable::kRows[GsdKeywordTable::find(row.first)], random));
    for (std::size_t count = 1 + random.below(4); count > 0; --count)
        block.push_back(lineIn(row.block, random));
    block.push_back(lineOf(GsdKeywordTable::kRows[GsdKeywordTable::find(row.last)], random));
    const std::size_t index = random.below(lines.size() + 1);
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(index), block.begin(), block.end());
}

bool isNumberCharacter(char c)
{
    return typdescriptor::internal::isHexDigit(c) || typdescriptor::internal::toUpper(c) == 'X';
}

/// Puts another number or text in the place of one in the line, behind its keyword.
void replaceValue(std::string& line, Random& random)
{
    const std::string_view bare = withoutIndent(line);
    const std::size_t keyword = GsdKeywordTable::find(bare);
    const std::size_t indent = line.size() - bare.size();
    const std::size_t start =
        keyword == GsdKeywordTable::kNone ? indent : indent + GsdKeywordTable::kRows[keyword].spelling.size();
    std::size_t from = start + random.below(line.size() - start);
    while (from < line.size() && line[from] != '"' && !typdescriptor::internal::isDigit(line[from]))
        ++from;
    if (from >= line.size())
        return;
    std::size_t to = from;
    if (line[from] == '"') {
        to = std::min(line.find('"', from + 1), line.size() - 1) + 1;
        line.replace(from, to - from, partOf('$', random));
        return;
    }
    while (to < line.size() && isNumberCharacter(line[to]))
        ++to;
    const std::string digits = line.substr(from, to - from);
    const bool isDecimal = std::all_of(digits.begin(), digits.end(), typdescriptor::internal::isDigit);
    line.replace(from, to - from, isDecimal && random.oneIn(2) ? otherDigits(random, digits) : number(random));
}

void changeBreaks(Pieces& lines, Random& random)
{
    std::string& line = random.of(lines);
    switch (random.below(4)) {
    case 0:
        line.insert(random.below(line.size()), "\\\n");
        break;
    case 1:
        line.insert(random.below(line.size()), "; comment");
        break;
    case 2:
        line.insert(random.below(line.size()), random.oneIn(2) ? 450 + random.below(100) : 1, ' ');
        break;
    default:
        if (!line.empty())
            line.pop_back();
    }
}

void mutate(Pieces& lines, Random& random)
{
    switch (lines.empty() ? 0 : random.below(12)) {
    case 0:
    case 1:
    case 2:
        return insertLine(lines, random);
    case 3:
        return insertBlock(lines, random);
    case 4:
        return changeBreaks(lines, random);
    case 5:
    case 6:
    case 7:
        return rearrange(lines, random);
    default:
        return replaceValue(random.of(lines), random);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    return mutateInput(data, size, maxSize, seed, kLineFeed, mutate);
}
