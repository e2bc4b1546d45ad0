// The check of a help block: the values that a structured parameter may take, each with its text.

#include "typefile/typeFile.h"

#include <algorithm>
#include <limits>

namespace typdescriptor::internal {

namespace {

/// The only number of a type file that is written without leading zeros.
bool takeLineCount(Cursor& p, int32_t& count)
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

bool takeHelpLine(Cursor& p)
{
    return std::all_of(helpLine::kQuotes.begin(), helpLine::kQuotes.end(),
                       [p](std::size_t quote) { return isQuote(p + quote); }) &&
           isWithin(numberAt(p, helpLine::kValue), 0, std::numeric_limits<uint16_t>::max()) &&
           takeRecord(p, helpLine::kLength);
}

} // namespace

int checkHelpBlock(Cursor& p, HelpBlock& block)
{
    if (!takeRecordHead(p, kTagHelp, block.number) || !takeLineCount(p, block.lineCount))
        return kErrHelpBlock;
    block.firstLine = p;
    for (int i = 0; i < block.lineCount; ++i)
        if (!takeHelpLine(p))
            return kErrHelpBlock;
    return kOk;
}

} // namespace typdescriptor::internal
