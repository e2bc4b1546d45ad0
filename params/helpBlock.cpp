// Help blocks: the values that a structured parameter may take, each with its text.
//
// In: the position of a block in the image. Out: its number, the number of its lines and where they begin. The texts
// stay in the image.

#include "descriptor/cTypDescriptor.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstddef>
#include <limits>

using namespace typefile;

namespace {

/// The only number of a type file that is written without leading zeros.
bool takeLineCount(char*& p, int32_t& count)
{
    if (!takeText(p, kTagHelpLines))
        return false;
    std::size_t digits = 0;
    while (digits < kMaxHelpLineDigits && isDigit(p[digits]))
        ++digits;
    count = numberAt(p, digits);
    p += digits;
    return count != 0 && takeTerminator(p);
}

bool takeHelpLine(char*& p)
{
    const int value = numberAt(p + helpLine::kValue.position, helpLine::kValue.width);
    char* end = p + helpLine::kLength;
    if (!std::all_of(helpLine::kQuotes.begin(), helpLine::kQuotes.end(),
                     [p](std::size_t quote) { return isQuote(p + quote); }) ||
        value < 0 || value > std::numeric_limits<uint16_t>::max() || !takeTerminator(end))
        return false;
    p = end;
    return true;
}

} // namespace

int cTypDescriptor::checkHelpBlock(PARA_HELPM_INFO* info, char* position, char** next)
{
    char* p = position;
    if (!takeRecordHead(p, kTagHelp, info->helpNumber) || !takeLineCount(p, info->lineCount))
        return kErrHelpBlock;
    info->firstLine = p;
    for (int i = 0; i < info->lineCount; ++i)
        if (!takeHelpLine(p))
            return kErrHelpBlock;
    *next = p;
    return kOk;
}
