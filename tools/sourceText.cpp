#include "tools/sourceText.h"

#include "tools/latin1.h"

#include <algorithm>
#include <fstream>

namespace {

/// Whether a GSD line goes on in the next one: a backslash ends it, ahead of the comment.
bool goesOn(const std::string& line)
{
    bool isQuoted = false;
    std::size_t end = 0;
    while (end < line.size() && (isQuoted || line[end] != ';')) {
        if (line[end] == '"')
            isQuoted = !isQuoted;
        ++end;
    }
    const std::size_t last = line.substr(0, end).find_last_not_of(" \t\r\v\f");
    return last != std::string::npos && line[last] == '\\';
}

/// Whether a line holds nothing: a continuation may be interrupted by such lines.
bool isBlank(const std::string& line)
{
    const std::size_t first = line.find_first_not_of(" \t\r\v\f");
    return first == std::string::npos || line[first] == ';';
}

Excerpt excerptOf(const std::string& whole, long number)
{
    constexpr std::size_t kMostCharacters = 160;
    const std::string line = whole.substr(0, kMostCharacters);
    Excerpt excerpt;
    excerpt.line = number;
    excerpt.text = fromLatin1(line.substr(0, line.find_last_not_of(" \t\r") + 1));
    excerpt.column = std::min(line.find_first_not_of(" \t"), line.size());
    const std::size_t end = std::min(line.find_first_of(" \t\r=(;\"", excerpt.column), line.size());
    excerpt.length = end - excerpt.column;
    return excerpt;
}

} // namespace

SourceText::SourceText(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    for (std::string text; std::getline(stream, text);)
        lines.push_back(text.substr(0, text.find('\0')));
}

std::string SourceText::line(long number) const
{
    return number >= 1 && number <= lineCount() ? lines[static_cast<std::size_t>(number - 1)] : std::string();
}

Excerpt SourceText::gsdExcerpt(long number) const
{
    if (number < 1 || number > lineCount())
        return {};
    long first = number;
    for (long above = number - 1; above >= 1; --above) {
        if (goesOn(line(above)))
            first = above;
        else if (!isBlank(line(above)))
            break;
    }
    return excerptOf(line(first), first);
}

Excerpt SourceText::typeFileExcerpt(long record) const
{
    const long number = record + (hasHeadLine() ? 1 : 0);
    return number <= lineCount() ? excerptOf(line(number), number) : Excerpt();
}

Excerpt SourceText::groupExcerpt(const std::string& tag) const
{
    constexpr long kHeaderRecords = 9; // texts of the device stand in them
    for (long number = kHeaderRecords + 1; number <= lineCount(); ++number) {
        if (line(number).starts_with(tag))
            return excerptOf(line(number), number);
    }
    return {};
}

bool SourceText::hasHeadLine() const
{
    return line(1).find(';') == std::string::npos;
}
