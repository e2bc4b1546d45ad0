#include "typefile/helpBlock.h"

#include "typefile/scan.h"
#include "typefile/typeFile.h"

#include <algorithm>
#include <cstddef>
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
    const int value = numberAt(p + helpLine::kValue.position, helpLine::kValue.width);
    Cursor end = p + helpLine::kLength;
    if (!std::all_of(helpLine::kQuotes.begin(), helpLine::kQuotes.end(),
                     [p](std::size_t quote) { return isQuote(p + quote); }) ||
        !isWithin(value, 0, std::numeric_limits<uint16_t>::max()) || !takeTerminator(end))
        return false;
    p = end;
    return true;
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
