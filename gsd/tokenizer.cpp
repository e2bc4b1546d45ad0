#include "gsd/tokenizer.h"

#include "descriptor/resultCodes.h"
#include "gsd/textScan.h"

#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

bool GsdTokenizer::hasTwoEquals(std::string_view text)
{
    const std::size_t first = findUnquoted(text, '=');
    return first != std::string_view::npos && findUnquoted(text.substr(first + 1), '=') != std::string_view::npos;
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
