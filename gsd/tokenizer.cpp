#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"

#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

namespace {

bool hasTwoEquals(std::string_view text)
{
    const std::size_t first = findUnquoted(text, '=');
    return first != std::string_view::npos && findUnquoted(text.substr(first + 1), '=') != std::string_view::npos;
}

/// Whether a line begins with just this keyword.
bool isKeywordAt(std::size_t keyword, const char* text)
{
    const GsdSpelling& spelling = GsdKeywordTable::kRows[keyword].spelling;
    return spelling.begins(text) && isOf(kBlank | kEndOfLine | kBehindKeyword, text[spelling.size()]);
}

} // namespace

/// Keywords come in runs of the same sequence, so the one that last followed its predecessors is tried before the search,
/// and so is the next of the table, which is in the order of most files. No longer keyword goes on with what has to follow.
std::size_t GsdTokenizer::findKeyword(const char* text)
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

int GsdTokenizer::tokenize(const char* text, GsdLine& line)
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

int GsdTokenizer::takeArgument(const char* rest, GsdLine& line)
{
    std::size_t length = 0;
    const char* at = rest + 1;
    for (; length < kMaxArgument && *at != ')'; ++at) {
        if (isOf(kEndOfLine, *at))
            return kErrGsdSyntax;
        if (!isOf(kBlank, *at))
            argument[length++] = *at;
    }
    argument[length] = '\0';
    line.argument = argument.data();
    // Behind an argument that is too long the value begins inside the parentheses; hardly any line survives that.
    if (*at != ')' && (!line.isWhole() || std::strchr(at, ')') == nullptr))
        return kErrGsdSyntax;
    line.value = skipBlanks(at + 1);
    if (*line.value == '=')
        line.value = skipBlanks(line.value + 1);
    return kOk;
}

} // namespace typdescriptor::internal
