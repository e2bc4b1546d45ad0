#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"

namespace typdescriptor::internal {

namespace {

bool hasTwoEquals(std::string_view text)
{
    const std::size_t first = findUnquoted(text, '=');
    return first != std::string_view::npos && findUnquoted(text.substr(first + 1), '=') != std::string_view::npos;
}

/// Whether a keyword ends before this rest of its line: no longer one goes on with such a character.
bool isKeywordEnd(std::string_view rest)
{
    return rest.empty() || rest.front() == ' ' || rest.front() == '=' || rest.front() == '(';
}

} // namespace

/// Keywords come in runs of the same sequence, so the one that last followed its predecessor is tried before the search.
std::size_t GsdTokenizer::findKeyword(std::string_view text)
{
    std::uint8_t& follower = followers[lastKeyword];
    const std::string_view spelling = GsdKeywordTable::kRows[follower].spelling;
    std::size_t keyword = follower;
    if (!text.starts_with(spelling) || !isKeywordEnd(text.substr(spelling.size())))
        keyword = GsdKeywordTable::find(text);
    if (keyword != GsdKeywordTable::kNone) {
        follower = static_cast<std::uint8_t>(keyword);
        lastKeyword = keyword;
    }
    return keyword;
}

int GsdTokenizer::tokenize(std::string_view text, GsdLine& line)
{
    line.keyword = findKeyword(text);
    if (line.keyword == GsdKeywordTable::kNone)
        return kErrGsdKeyword;
    const GsdKeyword& keyword = GsdKeywordTable::kRows[line.keyword];
    const std::string_view rest = withoutLeadingBlanks(text.substr(keyword.spelling.size()));
    line.argument = {};
    if (!rest.empty() && rest.front() == '=') {
        line.value = withoutLeadingBlanks(rest.substr(1));
        const bool isOnly = findUnquoted(line.value, '=') == std::string_view::npos;
        return keyword.takesEquals() && isOnly ? static_cast<int>(kOk) : kErrGsdSyntax;
    }
    if (hasTwoEquals(rest))
        return kErrGsdSyntax;
    if (!rest.empty() && rest.front() == '(')
        return takeArgument(rest, line);
    line.value = rest;
    return keyword.takesEquals() ? static_cast<int>(kErrGsdSyntax) : kOk;
}

int GsdTokenizer::takeArgument(std::string_view rest, GsdLine& line)
{
    if (rest.find(')') == std::string_view::npos)
        return kErrGsdSyntax;
    std::size_t length = 0;
    std::size_t i = 1;
    for (; length < kMaxArgument && rest[i] != ')'; ++i) {
        if (!isSpace(rest[i]))
            argument[length++] = rest[i];
    }
    line.argument = {argument.data(), length};
    // Behind an argument that is too long the value begins inside the parentheses; hardly any line survives that.
    line.value = withoutLeadingBlanks(rest.substr(i + 1));
    if (!line.value.empty() && line.value.front() == '=')
        line.value = withoutLeadingBlanks(line.value.substr(1));
    return kOk;
}

} // namespace typdescriptor::internal
