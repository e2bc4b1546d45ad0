// Pieces that several parts of the format share: flags, module-structure codes, quoted texts and references to slot parameter
// blocks. Same rules as in scan.h: take... moves the cursor only when it has seen the whole piece.

#pragma once

#include "typefile/format.h"
#include "typefile/scan.h"

#include <cstddef>

namespace typdescriptor::internal {

/// The two letters that say how the slots counted behind them are given.
struct StructureCode {
    bool byOrderNumber = false; // 'M': each slot is the number of an order-number entry
    bool fixed = false;         // 'V'
    bool closed = false;        // 'Y'

    /// What the slots of the list say in xSlot.
    int xSlot() const { return fixed || closed ? 0 : 1; }
};

inline constexpr std::size_t kStructureCodeLength = 2;

/// Reads a module-structure code. One good letter is enough: hosts rely on files that have no more.
inline bool readStructureCode(const char* p, StructureCode& code)
{
    code.byOrderNumber = p[0] == kPresetByOrderNumber;
    code.fixed = p[1] == kFixedStructure;
    code.closed = p[1] == kClosedStructure;
    return p[0] == kPresetByIdentifier || p[1] == kOpenStructure || code.byOrderNumber || code.fixed || code.closed;
}

/// A J/N flag: 'J' gives 1, 'N' 0, anything else -1.
constexpr int checkJNChar(char c)
{
    return toUpper(c) == 'J' ? 1 : toUpper(c) == 'N' ? 0 : -1;
}

/// A text and the quote that ends it.
template <std::size_t Size>
bool takeTextToQuote(Cursor& p, char (&text)[Size])
{
    if (!isQuote(p + Size - 1))
        return false;
    copyField(text, p);
    p += Size;
    return true;
}

/// A text between two quotes.
template <std::size_t Size>
bool takeQuotedText(Cursor& p, char (&text)[Size])
{
    Cursor behindQuote = p;
    if (!takeQuote(behindQuote) || !takeTextToQuote(behindQuote, text))
        return false;
    p = behindQuote;
    return true;
}

/// A number and a quote.
inline bool takeNumberToQuote(Cursor& p, int& number, std::size_t digits = kNumberDigits)
{
    if (!isQuote(p + digits))
        return false;
    number = numberAt(p, digits);
    p += digits + 1;
    return true;
}

/// A reference to a slot parameter block, counted from 1, with the terminator. 0 stands for no block; a negative
/// number becomes one that no file has.
inline bool takeBlockReference(Cursor& p, int& block)
{
    constexpr int kNoSuchBlock = 1000;
    Cursor behind = p;
    if (!takeText(behind, kTagSlotPrmBlock) || !takeNumberToQuote(behind, block) || !takeTerminator(behind))
        return false;
    if (block < 0)
        block = kNoSuchBlock;
    p = behind;
    return true;
}

} // namespace typdescriptor::internal
