#include "typefile/slotPrmBlock.h"

#include "descriptor/resultCodes.h"
#include "typefile/scan.h"
#include "typefile/structuredPrm.h"

#include <cstddef>

namespace typdescriptor::internal {

unsigned char atohex(const char* text)
{
    return static_cast<unsigned char>(hexDigitValue(text[0]) << 4 | hexDigitValue(text[1]));
}

SlotPrmBlock checkSlotParaBlock(int blockCount, Cursor position)
{
    SlotPrmBlock block{kErrSlotPrm};
    Cursor p = position;
    int length = 0;
    int presetBytes = 0;
    if (!takeRecordHead(p, kTagSlotPrmBlock, block.number) ||
        !isWithin(block.number, 1, static_cast<std::size_t>(blockCount)))
        return block;
    if (!takeNumberRecord(p, length) || !isWithin(length, 1, kMaxUserPrmBytes))
        return block;
    if (!takeRecordHead(p, kTagUserPrmBytes, presetBytes) || presetBytes > length)
        return block;
    // Cleared, so that a host never sees what the memory held before in bytes that are not preset.
    block.bytes.assign(static_cast<std::size_t>(length), 0);
    for (std::size_t i = 0; i < static_cast<std::size_t>(presetBytes); ++i) {
        if (!isHexByte(p) || !isTerminator(p + kHexByteDigits))
            return block;
        block.bytes[i] = atohex(p);
        p += kHexByteDigits + kTerminator.size();
    }

    block.list = p;
    int count = 0;
    if (!takeRecordHead(p, kTagPrmList, count))
        return block;
    PrmArea area{block.bytes, 0};
    block.result = checkStructuredParameters(p, count, area, block.entries);
    block.end = p;
    return block;
}

} // namespace typdescriptor::internal
