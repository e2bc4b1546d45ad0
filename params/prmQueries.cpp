// Queries about structured parameters and slot parameter blocks.
//
// The station's parameters are answered from what the check has decoded; a slot parameter block is parsed again on each
// query and released when the answer has been copied.

#include "descriptor/cTypDescriptor.h"
#include "typefile/scan.h"

#include <cstddef>
#include <cstring>
#include <string_view>

using namespace typefile;

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

} // namespace

int cTypDescriptor::getParaStructCnt() const
{
    return loaded != 0 ? prmEntryCount : 0;
}

int cTypDescriptor::getParaStruct(int index, _parastruct* entry) const
{
    if (loaded == 0 || index > prmEntryCount)
        return 0;
    *entry = index >= 0 && index < prmEntryCount ? prmEntries[index] : _parastruct();
    return 1;
}

int cTypDescriptor::getSPBlockAnz() const
{
    return spBlockCount;
}

int cTypDescriptor::getStructuredSlotParameterCnt(int block) const
{
    return isSlotParaBlock(block) ? spStructCounts[block] : 0;
}

int cTypDescriptor::getStructuredSlotParameter(int block, int index, _parastruct* entry)
{
    if (!isSlotParaBlock(block) || index >= spStructCounts[block])
        return kErrSlotPrm;
    char* next = nullptr;
    char* listPosition = nullptr;
    int length = 0;
    const bool isParsed = parseSlotParaBlock(block, &next, &length, &listPosition);
    if (isParsed)
        *entry = index >= 0 ? parsedEntries[index] : _parastruct();
    releaseParsedBlock();
    return isParsed ? kOk : kErrSlotPrm;
}

int cTypDescriptor::getSlotParameters(int index, unsigned char* bytes, int* length)
{
    *length = 0;
    if (!isSlotParaBlock(index))
        return kErrSlotPrm;
    char* next = nullptr;
    char* listPosition = nullptr;
    int blockLength = 0;
    const bool isParsed = parseSlotParaBlock(index, &next, &blockLength, &listPosition);
    if (isParsed) {
        std::memcpy(bytes, parsedBytes, static_cast<std::size_t>(blockLength));
        *length = blockLength;
    }
    releaseParsedBlock();
    return isParsed ? kOk : kErrSlotPrm;
}

int cTypDescriptor::hasSPBlockThisKeyWord(KEYWORD_TYPE* keyword, int index, int which)
{
    if (which != 0 || !isSlotParaBlock(index))
        return 0;
    char* next = nullptr;
    char* record = nullptr;
    int length = 0;
    int count = 0;
    if (parseSlotParaBlock(index, &next, &length, &record))
        takeRecordHead(record, kTagPrmList, count);
    releaseParsedBlock();
    for (int i = 0; i < count; ++i) {
        const std::string_view text = recordText(record, next);
        if (i >= keywordPosition && readKeyword(text, *keyword)) {
            keywordPosition = i + 1;
            return 1;
        }
        record += text.size() + kTerminator.size();
    }
    keywordPosition = 0;
    return 0;
}
