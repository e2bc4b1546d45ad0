// Splits a logical line into keyword, argument and value.

#pragma once

#include "descriptor/resultCodes.h"
#include "gsd/keywordTable.h"
#include "gsd/textScan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

class GsdTokenizer {
public:
    /// Takes a line apart. What `line` refers to stays valid until the next call, as long as `text` does.
    /// @param text  without leading blanks; kReadableBehindText applies
    /// @param line  its limit tells what the text is
    /// @return 0, kErrGsdKeyword for an unknown keyword, kErrGsdSyntax
    int tokenize(const char* text, GsdLine& line)
    {
        line.keyword = findKeyword(text);
        if (line.keyword == GsdKeywordTable::kNone)
            return kErrGsdKeyword;
        const GsdKeyword& keyword = GsdKeywordTable::kRows[line.keyword];
        const char* const rest = skipBlanks(text + keyword.spelling.size());
        line.argument = "";
        // Of a line in its file no value is read that has an equals sign outside quotes.
        if (line.isWhole() && hasTwoEquals(rest))
            return kErrGsdSyntax;
        if (*rest == '(')
            return takeArgument(rest, line);
        const bool hasEquals = *rest == '=';
        line.value = hasEquals ? skipBlanks(rest + 1) : rest;
        return keyword.takesEquals() == hasEquals ? static_cast<int>(kOk) : kErrGsdSyntax;
    }

private:
    /// Whether a line begins with just this keyword.
    static bool isKeywordAt(std::size_t keyword, const char* text)
    {
        const GsdSpelling& spelling = GsdKeywordTable::kRows[keyword].spelling;
        return spelling.begins(text) && isOf(kBlank | kEndOfLine | kBehindKeyword, text[spelling.size()]);
    }

    /// Keywords come in runs of the same sequence, so the one that last followed its predecessors is tried before the search,
    /// and so is the next of the table, which is in the order of most files. No longer keyword goes on with what has to follow.
    std::size_t findKeyword(const char* text)
    {
        std::uint8_t& follower = followers[(lastKeyword ^ keywordBefore << 3) % followers.size()];
        std::size_t keyword = follower;
        if (!isKeywordAt(keyword, text)) {
            keyword = (lastKeyword + 1) % GsdKeywordTable::kCount;
            if (!isKeywordAt(keyword, text))
                keyword = GsdKeywordTable::find({text, kReadableBehindText});
        }
        if (keyword != GsdKeywordTable::kNone) {
            follower = static_cast<std::uint8_t>(keyword);
            keywordBefore = lastKeyword;
            lastKeyword = keyword;
        }
        return keyword;
    }

    static bool hasTwoEquals(std::string_view text);
    int takeArgument(const char* rest, GsdLine& line);

    static constexpr std::size_t kMaxArgument = 18;
    std::array<char, kMaxArgument + 1> argument{};
    std::size_t lastKeyword = 0;
    std::size_t keywordBefore = 0;
    std::array<std::uint8_t, 256> followers{}; // what last came after two keywords, or after others with their place
};

} // namespace typdescriptor::internal
