#include "lint/refusalReason.h"

#include "lint/deviceIndex.h"
#include "lint/phrases.h"

#include "gsdfile/keywords.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace typdescriptor::lint {

namespace {

struct ValueRange {
    std::string_view keyword;
    std::int64_t lowest;
    std::int64_t highest;
};

// What the library takes as a value, where that is not 0 to 65535.
constexpr ValueRange kValueRanges[] = {
    {"GSD_Revision", 0, 255},
    {"Revision_Number", 0, 255},
    {"Repeater_Ctrl_Sig", 0, 255},
    {"24V_Pins", 0, 255},
    {"Protocol_Ident", 0, 255},
    {"Station_Type", 0, 255},
    {"Modul_Offset", 0, 255},
    {"Max_Module", 0, 244},
    {"Max_Input_Len", 0, 244},
    {"Max_Output_Len", 0, 244},
    {"Max_Data_Len", 0, 488},
    {"Max_Diag_Data_Len", 6, 244},
    {"User_Prm_Data_Len", 0, 237},
    {"Max_User_Prm_Data_Len", 0, 237},
    {"Ext_Module_Prm_Data_Len", 0, 237},
    {"OffsetFirstMPDBlock", 0, 236},
    {"Q5HeaderCnf", 2, 3},
    {"User_Prm_Data", 0, 255},
    {"Ext_User_Prm_Data_Const", 0, 255},
    {"Module", 0, 255},
    {"KGPModule", 0, 255},
    {"KGPGui", 0, 255},
    {"Unit_Diag_Area", 0, 511},
    {"Unsigned8", 0, 255},
    {"Unsigned16", 0, 65535},
    {"Unsigned32", 0, 4294967295},
    {"Signed8", -128, 127},
    {"Signed16", -32768, 32767},
    {"Signed32", -2147483648, 2147483647},
    {"Bit", 0, 255},
    {"BitArea", 0, 255},
};

// What it takes in parentheses.
constexpr ValueRange kArgumentRanges[] = {
    {"Unit_Diag_Bit", 0, 65535},
    {"Unit_Diag_!Bit", 0, 65535},
    {"Channel_Diag", 16, 31},
    {"ChannelDiag", 16, 31},
    {"Ext_User_Prm_Data_Ref", 0, 255},
    {"Ext_User_Prm_Data_Const", 0, 255},
    {"Bit", 0, 7},
    {"BitArea", 0, 7},
    {"Value", 0, 65535},
};

std::string rangeText(const ValueRange& range)
{
    return std::to_string(range.lowest) + " to " + std::to_string(range.highest);
}

template <typename Table>
const ValueRange* findRange(const Table& table, std::string_view keyword)
{
    const auto row = std::ranges::find(table, keyword, &ValueRange::keyword);
    return row == std::end(table) ? nullptr : &*row;
}

std::optional<Reason> outside(const Number& number, const ValueRange& range)
{
    if (range.lowest <= number.value && number.value <= range.highest)
        return std::nullopt;
    return Reason{number.place, "the library takes " + rangeText(range) + " here, not " + std::to_string(number.value)};
}

// The two further rules of the library for areas of the device's diagnosis.
std::optional<Reason> areaReason(const Entry& entry)
{
    if (entry.keyword != "Unit_Diag_Area" || entry.numbers.size() < 2)
        return std::nullopt;
    const std::int64_t first = entry.numbers[0].value;
    const std::int64_t last = entry.numbers[1].value;
    const Span place = joined(entry.numbers[0].place, entry.numbers[1].place);
    if (first > last)
        return Reason{place, "the area ends before it begins"};
    if (last - first + first % 8 + 1 > 16)
        return Reason{place,
                      "the library takes areas that end in the octet behind that of their first bit at the latest"};
    return std::nullopt;
}

// Which number of the statement the library does not take.
Reason numberReason(const RefusedLine& line)
{
    if (line.entry == nullptr)
        return {line.place, "a number cannot be read, or is beyond what the library takes here"};
    const Entry& entry = *line.entry;
    if (const ValueRange* range = findRange(kArgumentRanges, entry.keyword); range != nullptr && entry.argument)
        if (std::optional<Reason> reason = outside(*entry.argument, *range))
            return *reason;
    const ValueRange* known = findRange(kValueRanges, entry.keyword);
    const ValueRange range = known != nullptr ? *known : ValueRange{entry.keyword, 0, 65535};
    for (const Number& number : entry.numbers)
        if (std::optional<Reason> reason = outside(number, range))
            return *reason;
    if (std::optional<Reason> reason = areaReason(entry))
        return *reason;
    if (entry.keyword == "Value" && entry.argument)
        return {entry.argument->place, "the value does not fit into the bits of its area"};
    if (entry.keyword == "BitArea")
        return {entry.place, "the first bit of a BitArea is below its last, and both are from 0 to 7"};
    return {entry.place, "a number is written in a way that the library does not read"};
}

// Where a character stands outside of quotes for the n-th time; npos when it does not.
std::size_t outsideQuotes(std::string_view text, char wanted, std::size_t nth)
{
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted = isQuoted != (text[i] == '"');
        if (text[i] == wanted && !isQuoted && nth-- == 0)
            return i;
    }
    return std::string_view::npos;
}

// Keywords that stand in a block for the library; every other one ends the compilation there.
struct BlockContent {
    std::string_view block;
    std::string_view keywords; // between blanks
};

constexpr BlockContent kContents[] = {
    {"ExtUserPrmData", " PrmTextRef Prm_Text_Ref EndExtUserPrmData Unsigned8 Unsigned16 Unsigned32 Signed8 Signed16 "
                       "Signed32 BitArea Bit "},
    {"Module", " Module_Reference Channel_Diag ChannelDiag Ext_User_Prm_Data_Ref Ext_User_Prm_Data_Const EndModule "
               "Ext_Module_Prm_Data_Len Preset "},
    {"KGPModule", " Module_Reference Channel_Diag ChannelDiag Ext_User_Prm_Data_Ref Ext_User_Prm_Data_Const EndModule "
                  "Ext_Module_Prm_Data_Len Preset "},
    {"PrmText", " Text EndPrmText "},
    {"Unit_Diag_Area", " Value Unit_Diag_Area_End "},
};

// The block outside of which a keyword has no place for the library; empty when it has one.
std::string_view onlyBlockOf(std::string_view keyword)
{
    if (keyword.starts_with("Channel") || keyword.starts_with("Ext_User_Prm_Data_"))
        return {}; // of the station as well
    for (const BlockContent& content : kContents)
        if (content.keywords.find(' ' + std::string(keyword) + ' ') != std::string_view::npos)
            return content.block;
    return {};
}

bool isAllowedIn(std::string_view block, std::string_view keyword)
{
    const auto row = std::ranges::find(kContents, block, &BlockContent::block);
    return row == std::end(kContents) || row->keywords.find(' ' + std::string(keyword) + ' ') != std::string_view::npos;
}

Reason syntaxReason(const RefusedLine& line)
{
    if (line.isAtEnd && line.blockPlace.end > 0)
        return {line.blockPlace, "the block is still open at the end of the file"};
    const std::string_view known = libraryKeywordAtStart(line.text);
    if (!known.empty() && known.size() < line.keyword.size())
        return {line.keywordPlace, "the library does not know " + std::string(line.keyword) + " and takes it for " +
                                       std::string(known) + ", with which it begins"};
    if (line.text.find('\\') != std::string_view::npos)
        return {line.place, "the library takes a backslash only as the last character of a line, in texts as well"};
    if (outsideQuotes(line.text, '=', 1) != std::string_view::npos)
        return {line.place, "a statement has one equals sign"};
    if (!line.block.empty() && known.empty())
        return {line.keywordPlace,
                "the line is no statement that may stand in a " + std::string(line.block) + " block",
                {{line.blockPlace, "the block begins here"}}};
    if (!line.block.empty() && !isAllowedIn(line.block, known))
        return {line.keywordPlace,
                "the library takes " + std::string(known) + " in no " + std::string(line.block) + " block",
                {{line.blockPlace, "the block begins here"}}};
    if (line.block.empty() && !onlyBlockOf(known).empty())
        return {line.keywordPlace,
                "the library takes " + std::string(known) + " only in a block of " + std::string(onlyBlockOf(known))};
    if (std::ranges::count(line.text, '"') % 2 != 0)
        return {line.place, "a text is not closed by a double quote"};
    if (line.text.find("\"\"") != std::string_view::npos)
        return {line.place, "the library takes no empty text"};
    return {
        line.place,
        "the library does not read a statement of this form: something is missing, or too much, behind the keyword"};
}

Reason repeatedReason(const RefusedLine& line, const DeviceIndex& device)
{
    const std::string keyword(line.entry != nullptr ? line.entry->keyword : libraryKeywordAtStart(line.text));
    if (keyword == "Module_Reference")
        return {
            line.keywordPlace,
            "the library takes Module_Reference once in a file; write the number alone on its line, which it skips"};
    Reason reason{line.keywordPlace, "the library takes " + keyword + " once in a file"};
    const Entry* first = device.entry(keyword);
    if (first != nullptr && first->place.begin < line.keywordPlace.begin)
        reason.notes.push_back({first->place, "the first one"});
    return reason;
}

// Too many values, or parameters beyond the block.
Reason countReason(const RefusedLine& line, const DeviceIndex& device)
{
    const std::string_view keyword = line.entry != nullptr ? line.entry->keyword : std::string_view();
    const Entry* length = device.entry("User_Prm_Data_Len");
    if (keyword == "User_Prm_Data" && (length == nullptr || length->place.begin > line.place.begin))
        return {line.keywordPlace, "the library needs User_Prm_Data_Len before User_Prm_Data"};
    if (keyword == "User_Prm_Data")
        return {line.keywordPlace,
                "the library takes exactly the " + std::to_string(length->numbers.empty() ? 0 : length->number()) +
                    " bytes that User_Prm_Data_Len says",
                {{length->valuePlace(), "the length"}}};
    if (keyword == "Ext_User_Prm_Data_Ref" || keyword == "Ext_User_Prm_Data_Const")
        return {line.place, "what is placed here ends behind the length that stands before it"};
    constexpr std::size_t kLongestList = 16;
    if (line.entry != nullptr && line.entry->numbers.size() > kLongestList + 1)
        return {line.entry->numbers[kLongestList + 1].place, "the library takes a list of at most 16 values"};
    return {line.place, "the list has more values than the library takes"};
}

Reason configurationReason(const RefusedLine& line, const DeviceIndex& device)
{
    const std::string_view keyword = line.entry != nullptr ? line.entry->keyword : std::string_view();
    if (keyword == "KGPModule")
        return {line.place, "a KGPModule has exactly 5 bytes"};
    if (keyword == "Module")
        return {line.place, "the bytes do not make up whole configuration identifiers"};
    const Entry* kgp = device.entry("IsKGPDevice");
    return {kgp != nullptr ? kgp->place : Span{},
            "KGP modules and IsKGPDevice go together, with modules that are all preset and have "
            "one identifier each"};
}

Reason textReason(const RefusedLine& line)
{
    if (line.entry != nullptr && line.entry->text)
        return {line.entry->text->place, "the text has " + std::to_string(line.entry->text->text.size()) +
                                             " characters, the library takes at most 32"};
    return {line.place, "the library takes texts of at most 32 characters"};
}

Reason emptyBlockReason(const RefusedLine& line)
{
    Reason reason{line.keywordPlace, "the library takes no block without content"};
    if (line.blockPlace.end > 0)
        reason.notes.push_back({line.blockPlace, "the block begins here"});
    return reason;
}

} // namespace

std::string_view libraryKeywordAtStart(std::string_view text)
{
    const auto same = [](unsigned char one, unsigned char other) { return std::tolower(one) == std::tolower(other); };
    const gsdfile::Keyword* first = nullptr; // the library takes the one with the lowest number
    for (const gsdfile::Keyword& row : gsdfile::keywords()) {
        const std::string_view name = row.name;
        if (row.readerId == gsdfile::kNotRead || name.size() > text.size() ||
            (first != nullptr && first->readerId < row.readerId))
            continue;
        if (std::equal(name.begin(), name.end(), text.begin(), same))
            first = &row;
    }
    return first != nullptr ? std::string_view(first->name) : std::string_view();
}

Reason reasonOf(const LibraryVerdict& verdict, const RefusedLine& line, const DeviceIndex& device)
{
    const Span value = line.entry != nullptr ? line.entry->valuePlace() : line.place;
    switch (verdict.code) {
    case kErrGsdSyntax:
        return syntaxReason(line);
    case kErrGsdProtocol:
        return {value, "the library takes Protocol_Ident 0 (PROFIBUS-DP) only"};
    case kErrGsdSlotNumberType:
        return {line.keywordPlace, "the slot-number parameter is Unsigned8, Unsigned16 or Signed16"};
    case kErrGsdNoSection:
        return {{}, "the library finds no line #Profibus_DP"};
    case kErrGsdFlag:
        return {value, "the library takes 0 or 1 here"};
    case kErrGsdNumber:
        return numberReason(line);
    case kErrGsdRepeated:
        return repeatedReason(line, device);
    case kErrGsdStationType:
        return {value, "the library takes Station_Type 0 (DP slave) only"};
    case kErrGsdTooMany:
        return countReason(line, device);
    case kErrGsdEmptyBlock:
        return emptyBlockReason(line);
    case kErrGsdImageFull:
        return {{}, "what the file describes does not fit into a type file of 65000 characters"};
    case kErrGsdNoPrmLen:
        return {line.keywordPlace, "the library needs the length of the parameter block before this line"};
    case kErrGsdReference:
        return {value, "the library needs the block with this number before this line"};
    case kErrGsdConfiguration:
        return configurationReason(line, device);
    case kErrGsdStringLen:
        return textReason(line);
    default:
        return {line.place, resultText(verdict.code)};
    }
}

} // namespace typdescriptor::lint
