// Keyword search and tokenizer: which keyword a line begins with, and how the rest of the line is taken apart.

#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"

#include "tests/caseTable.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <iterator>
#include <random>
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

TEST(Tokenizer, Lines)
{
    GsdTokenizer tokenizer;
    GsdLine line;
    std::string padded;
    const auto tokenize = [&](const std::string& text) {
        padded = text + std::string(kReadableBehindText, '\0');
        return tokenizer.tokenize(padded.c_str(), line);
    };
    forEachCaseIn("keywordLines.txt", [&](const std::string&, const std::string& text, const std::string& expected) {
        std::string outcome = std::to_string(tokenize(text));
        if (outcome == "0")
            outcome = std::to_string(line.keyword) + '(' + line.argument + ')' + line.value;
        EXPECT_EQ(outcome, expected) << text;
    });

    // Behind an argument of more than 18 characters the value begins inside the parentheses.
    ASSERT_EQ(tokenize("Text(123456789012345678abcd) = \"x\""), kOk);
    EXPECT_STREQ(line.argument, "123456789012345678");
    EXPECT_NE(std::strstr(line.value, ") = \"x\""), nullptr);
}

} // namespace
