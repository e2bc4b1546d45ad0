#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"

namespace {

bool hasSecondEquals(std::string_view text)
{
    const std::size_t first = findUnquoted(text, '=');
    return first != std::string_view::npos && findUnquoted(text.substr(first + 1), '=') != std::string_view::npos;
}

/// Moves behind an equals sign and the blanks around it.
std::string_view behindEquals(std::string_view text)
{
    text = withoutLeadingBlanks(text);
    return !text.empty() && text.front() == '=' ? withoutLeadingBlanks(text.substr(1)) : text;
}

} // namespace

int GsdTokenizer::tokenize(std::string_view text, GsdLine& line)
{
    line = GsdLine{};
    line.keyword = GsdKeywordTable::find(text);
    if (line.keyword == GsdKeywordTable::kNone)
        return kErrGsdKeyword;
    if (hasSecondEquals(text))
        return kErrGsdSyntax;

    const GsdKeyword& keyword = GsdKeywordTable::kRows[line.keyword];
    const std::string_view rest = withoutLeadingBlanks(text.substr(keyword.spelling.size()));
    if (!rest.empty() && rest.front() == '(')
        return takeArgument(rest, line);

    const bool hasEquals = !rest.empty() && rest.front() == '=';
    if (hasEquals != keyword.takesEquals())
        return kErrGsdSyntax;
    line.value = behindEquals(rest);
    return kOk;
}

int GsdTokenizer::takeArgument(std::string_view rest, GsdLine& line)
{
    if (rest.find(')') == std::string_view::npos)
        return kErrGsdSyntax;
    std::size_t length = 0;
    std::size_t i = 1;
    for (; length < kMaxArgument && rest[i] != ')'; ++i) {
        if (!typefile::isSpace(rest[i]))
            argument[length++] = rest[i];
    }
    line.argument = {argument.data(), length};
    // Behind an argument that is too long the value begins inside the parentheses; hardly any line survives that.
    line.value = behindEquals(rest.substr(i + 1));
    return kOk;
}
