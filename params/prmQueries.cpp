// Queries about structured parameters and slot parameter blocks.
//
// The station's parameters are answered from what the check has decoded; a slot parameter block is parsed again on each
// query.

#include "params/paramQueries.h"
#include "typefile/parameters.h"

#include <cstring>
#include <new>
#include <string_view>

namespace typdescriptor::internal {

namespace {

/// The record at p, up to its first semicolon. That may stand in the record's name; a record has one at its end in any
/// case, so that a walk by semicolons falls behind the records but never runs ahead of them.
std::string_view recordText(const char* p, const char* end)
{
    const std::string_view rest(p, static_cast<std::size_t>(end - p));
    return rest.substr(0, rest.find(kTerminator.front()));
}

bool readKeyword(std::string_view record, KEYWORD_TYPE& keyword)
{
    const std::size_t bracket = record.find('[');
    if (bracket == std::string_view::npos || record.substr(bracket, kKeywordSlotNumber.size()) != kKeywordSlotNumber)
        return false;
    // One character late, so that the hundreds of the offset are missing: hosts expect it.
    keyword.byteOffset = numberAt(record.data() + prmRecord::kByteIndex.position + 1, prmRecord::kByteIndex.width);
    copyField(keyword.dataType, record.data() + bracket + kKeywordSlotNumber.size() + 1);
    return true;
}

/// Where two blocks carry one number, another number has no block.
SlotPrmBlock parseSlotBlock(const TypeFile& file, const SlotBlockPlace* place)
{
    try {
        if (place != nullptr && place->begin != nullptr)
            return checkSlotParaBlock(static_cast<int>(file.slotBlocks.size()), place->begin);
    } catch (const std::bad_alloc&) {
    }
    return {kErrSlotPrm};
}

} // namespace

int getParaStruct(const TypeFile& file, int index, _parastruct* entry)
{
    if (!file.isLoaded || index > static_cast<int>(file.prmEntries.size()))
        return 0;
    copyOrClear(entryAt(file.prmEntries, index), *entry);
    return 1;
}

int getStructuredSlotParameterCnt(const TypeFile& file, int block)
{
    const SlotBlockPlace* place = entryAt(file.slotBlocks, block);
    return place != nullptr ? place->fieldCount : 0;
}

int getStructuredSlotParameter(const TypeFile& file, int block, int index, _parastruct* entry)
{
    const SlotBlockPlace* place = entryAt(file.slotBlocks, block);
    if (place == nullptr || index >= place->fieldCount)
        return kErrSlotPrm;
    const SlotPrmBlock parsed = parseSlotBlock(file, place);
    if (parsed.result != kOk)
        return kErrSlotPrm;
    copyOrClear(entryAt(parsed.entries, index), *entry);
    return kOk;
}

int getSlotParameters(const TypeFile& file, int index, unsigned char* bytes, int* length)
{
    *length = 0;
    const SlotPrmBlock parsed = parseSlotBlock(file, entryAt(file.slotBlocks, index));
    if (parsed.result != kOk)
        return kErrSlotPrm;
    std::memcpy(bytes, parsed.bytes.data(), parsed.bytes.size());
    *length = static_cast<int>(parsed.bytes.size());
    return kOk;
}

int hasSPBlockThisKeyWord(TypeFile& file, KEYWORD_TYPE* keyword, int index, int which)
{
    const SlotBlockPlace* place = entryAt(file.slotBlocks, index);
    if (which != 0 || place == nullptr)
        return 0;
    const SlotPrmBlock parsed = parseSlotBlock(file, place);
    Cursor record = parsed.list;
    int count = 0;
    if (parsed.result == kOk)
        takeRecordHead(record, kTagPrmList, count);
    for (int i = 0; i < count; ++i) {
        const std::string_view text = recordText(record, parsed.end);
        if (i >= file.keywordRecord && readKeyword(text, *keyword)) {
            file.keywordRecord = i + 1;
            return 1;
        }
        record += text.size() + kTerminator.size();
    }
    file.keywordRecord = 0;
    return 0;
}

} // namespace typdescriptor::internal
