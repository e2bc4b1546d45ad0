// Slot parameter blocks: the parameter bytes of one kind of module, and the structured parameters that name fields
// inside them.
//
// In: the position of a block in the image. Out: where the block and its list of structured parameters begin, its
// length, and its decoded bytes and entries, which the descriptor keeps until they are released or the next block is
// parsed. Blocks are not kept decoded: a device may have hundreds, and a host asks for one at a time.

#include "descriptor/cTypDescriptor.h"
#include "params/occupancyMap.h"
#include "typefile/scan.h"

#include <cstddef>
#include <memory>
#include <new>

using namespace typefile;

namespace {

unsigned hexDigitValue(char digit)
{
    const char c = toUpper(digit);
    return static_cast<unsigned>(c > '9' ? c - 'A' + 10 : c - '0');
}

} // namespace

unsigned char cTypDescriptor::atohex(char* text)
{
    return static_cast<unsigned char>(hexDigitValue(text[0]) * 16 + hexDigitValue(text[1]));
}

int cTypDescriptor::checkSlotParaBlock(int blockCount, char* position, char** next, int* length, char** listPosition)
{
    char* p = position;
    int number = 0;
    if (!takeRecordHead(p, kTagSlotPrmBlock, number) || number == 0 || number > blockCount)
        return kErrSlotPrm;
    int blockLength = 0;
    if (!takeNumberRecord(p, blockLength) || blockLength < 1 || blockLength > static_cast<int>(kMaxUserPrmBytes))
        return kErrSlotPrm;
    // Cleared, so that a host never sees what the memory held before in bytes that are not preset.
    auto bytes = std::make_unique<uint8_t[]>(static_cast<std::size_t>(blockLength));

    int presetBytes = 0;
    if (!takeRecordHead(p, kTagUserPrmBytes, presetBytes) || presetBytes > blockLength)
        return kErrSlotPrm;
    for (int i = 0; i < presetBytes; ++i) {
        if (!isHexByte(p) || !isTerminator(p + kHexByteDigits))
            return kErrSlotPrm;
        bytes[static_cast<std::size_t>(i)] = atohex(p);
        p += kHexByteDigits + kTerminator.size();
    }

    *listPosition = p;
    int count = 0;
    if (!takeRecordHead(p, kTagPrmList, count))
        return kErrSlotPrm;
    auto entries = std::make_unique<_parastruct[]>(static_cast<std::size_t>(count));
    OccupancyMap occupancy = freeOccupancyMap();
    int fields = 0;
    const int result =
        checkStructuredParameters(entries.get(), count, &fields, bytes.get(), occupancy.data(), blockLength, 0, p, &p);
    releaseParsedBlock();
    parsedBytes = bytes.release();
    parsedEntries = entries.release();
    *next = p;
    *length = blockLength;
    if (result < 0)
        return result;
    spBlockPositions[number - 1] = position;
    spStructCounts[number - 1] = fields;
    return result;
}

bool cTypDescriptor::isSlotParaBlock(int index) const
{
    return loaded != 0 && index >= 0 && index <= lastSpBlock && spBlockPositions != nullptr &&
           spStructCounts != nullptr;
}

/// Parses a block once more for a query. Where two blocks carry one number, another number has no block.
bool cTypDescriptor::parseSlotParaBlock(int index, char** next, int* length, char** listPosition)
{
    char* position = spBlockPositions[index];
    if (position == nullptr)
        return false;
    try {
        return checkSlotParaBlock(spBlockCount, position, next, length, listPosition) >= 0;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void cTypDescriptor::releaseParsedBlock()
{
    delete[] parsedBytes;
    delete[] parsedEntries;
    parsedBytes = nullptr;
    parsedEntries = nullptr;
}
