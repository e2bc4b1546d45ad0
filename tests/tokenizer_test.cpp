// Keyword search and tokenizer: which keyword a line begins with, and how the rest of the line is taken apart.

#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"

#include "tests/caseTable.h"

#include <gtest/gtest.h>

#include <cctype>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <string>

using namespace typdescriptor::internal;

namespace {

using Table = GsdKeywordTable;

// The stated search: the table from its first row on, the first keyword with which the line begins.
std::size_t searchRowByRow(const std::string& line)
{
    for (std::size_t id = 0; id < Table::kCount; ++id) {
        const std::string_view spelling = Table::kRows[id].spelling;
        std::size_t i = 0;
        while (i < spelling.size() && i < line.size() && std::tolower(line[i] & 0xFF) == std::tolower(spelling[i]))
            ++i;
        if (i == spelling.size())
            return id;
    }
    return Table::kNone;
}

std::string withFlippedCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::isupper(c & 0xFF) != 0 ? std::tolower(c) : std::toupper(c));
    return text;
}

TEST(KeywordSearch, FindsWhatTheRowByRowSearchFinds)
{
    std::mt19937 random(41);
    const std::string tails = "_ =(Xx019.!E\xC4\n\"";
    std::size_t found = 0;
    const auto expectSame = [&](const std::string& line) {
        const std::size_t id = searchRowByRow(line);
        EXPECT_EQ(Table::find(line), id) << line;
        found += id != Table::kNone ? 1U : 0U;
    };
    expectSame("");
    for (std::size_t id = 0; id < Table::kCount; ++id) {
        const std::string spelling(Table::kRows[id].spelling);
        EXPECT_EQ(Table::find(spelling), id); // no keyword hides another
        EXPECT_EQ(Table::find(withFlippedCase(spelling)), id);
        expectSame(spelling.substr(1));
        for (const char tail : tails)
            expectSame(spelling + tail);
        for (std::size_t length = 1; length < spelling.size(); ++length) {
            expectSame(spelling.substr(0, length));
            expectSame(spelling.substr(0, length) + tails[random() % tails.size()] + spelling.substr(length));
            // The start of one keyword and the end of another.
            expectSame(spelling.substr(0, length) + std::string(Table::kRows[random() % Table::kCount].spelling));
        }
    }
    EXPECT_GT(found, Table::kCount * tails.size()); // the lines above do hold keywords
}

template <class Test>
std::set<std::string> keywordsWith(Test test)
{
    std::set<std::string> spellings;
    for (const GsdKeyword& keyword : Table::kRows) {
        if (test(keyword))
            spellings.insert(std::string(keyword.spelling));
    }
    return spellings;
}

std::set<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(KeywordTable, FormsOccurrenceAndBlocks)
{
    const auto standIn = [](GsdBlock block) {
        return keywordsWith([block](const GsdKeyword& keyword) { return (keyword.blocks & block) != 0; });
    };
    const std::string dataTypes = "Unsigned8 Unsigned16 Unsigned32 Signed8 Signed16 Signed32 BitArea Bit ";
    const std::string inExtPrmDef = "PrmTextRef EndExtUserPrmData Prm_Text_Ref " + dataTypes;
    const std::string inModuleOnly = "Module_Reference EndModule Ext_Module_Prm_Data_Len Preset ";
    const std::string alsoInModule = "Channel_Diag ChannelDiag Ext_User_Prm_Data_Ref Ext_User_Prm_Data_Const ";
    const std::string inTexts = "EndPrmText Text Unit_Diag_Area_End Value ";

    EXPECT_EQ(keywordsWith([](const GsdKeyword& keyword) { return !keyword.takesEquals(); }),
              words("#Profibus_DP Unit_Diag_Area_End EndPrmText EndModule EndExtUserPrmData " + dataTypes));
    EXPECT_EQ(keywordsWith([](const GsdKeyword& keyword) { return keyword.takesArgument(); }),
              words("Unit_Diag_Bit BitArea Bit Text Value Unit_Diag_!Bit " + alsoInModule));
    EXPECT_EQ(keywordsWith([](const GsdKeyword& keyword) { return keyword.occurrence == GsdOccurrence::repeated; }),
              words("Unit_Diag_Bit Unit_Diag_Area Module ExtUserPrmData PrmText KGPModule Unit_Diag_!Bit EndModule "
                    "Ext_Module_Prm_Data_Len Preset " +
                    inExtPrmDef + alsoInModule + inTexts));
    EXPECT_EQ(keywordsWith([](const GsdKeyword& keyword) { return (keyword.blocks & kOutside) == 0; }),
              words(inModuleOnly + inExtPrmDef + inTexts));
    EXPECT_EQ(standIn(kInModule), words(inModuleOnly + alsoInModule));
    EXPECT_EQ(standIn(kInExtPrmDef), words(inExtPrmDef));
    EXPECT_EQ(standIn(kInPrmText), words("EndPrmText Text"));
    EXPECT_EQ(standIn(kInUnitDiagArea), words("Unit_Diag_Area_End Value"));
}

TEST(Tokenizer, Lines)
{
    GsdTokenizer tokenizer;
    GsdLine line;
    forEachCaseIn("keywordLines.txt", [&](const std::string&, const std::string& text, const std::string& expected) {
        std::string outcome = std::to_string(tokenizer.tokenize(text, line));
        if (outcome == "0")
            outcome = std::to_string(line.keyword) + '(' + std::string(line.argument) + ')' + std::string(line.value);
        EXPECT_EQ(outcome, expected) << text;
    });

    // Behind an argument of more than 18 characters the value begins inside the parentheses.
    ASSERT_EQ(tokenizer.tokenize("Text(123456789012345678abcd) = \"x\"", line), kOk);
    EXPECT_EQ(line.argument, "123456789012345678");
    EXPECT_NE(line.value.find(") = \"x\""), std::string_view::npos);
}

} // namespace
