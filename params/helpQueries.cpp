// Queries about help texts.
//
// The station's blocks were located by the check; a slot help block is parsed again on each query. The texts are copied
// from the image.

#include "descriptor/cTypDescriptor.h"
#include "typefile/scan.h"

#include <cstddef>

using namespace typefile;

namespace {

constexpr std::ptrdiff_t kLineSize = helpLine::kLength + kTerminator.size();

void readHelpLine(const char* line, PARA_HELPMESSAGE_TYPE& message)
{
    message.value = static_cast<uint16_t>(numberAt(line + helpLine::kValue.position, helpLine::kValue.width));
    copyField(message.text, line + helpLine::kText.position);
}

} // namespace

int cTypDescriptor::getPSLHelpAnz() const
{
    return pslHelpCount;
}

int cTypDescriptor::getPSLHelpRef(int i) const
{
    return i >= 0 && i < pslHelpCount ? pslHelp[i].helpNumber : 0;
}

/// The first station help block of that number; null when there is none.
const PARA_HELPM_INFO* cTypDescriptor::findStationHelp(int number) const
{
    if (pslHelpOfNumber == nullptr || number < 0 || number > kMaxHelpNumber || pslHelpOfNumber[number] == 0)
        return nullptr;
    return &pslHelp[pslHelpOfNumber[number] - 1];
}

int cTypDescriptor::getHelpMessageCnt(int block) const
{
    if (loaded == 0 || block == 0)
        return 0;
    const PARA_HELPM_INFO* help = findStationHelp(block);
    return help != nullptr ? help->lineCount : 0;
}

int cTypDescriptor::getParaHelpMessage(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    if (loaded == 0 || block > kMaxHelpNumber)
        return 0;
    *message = PARA_HELPMESSAGE_TYPE();
    const PARA_HELPM_INFO* help = findStationHelp(block);
    if (help == nullptr)
        return 0;
    // The line is not held against the block's line count: what stands behind the block is handed out as a line, but
    // nothing that does not belong to the image.
    const std::int64_t offset = help->firstLine - image + std::int64_t{line} * kLineSize;
    if (offset >= 0 && offset + kLineSize <= std::int64_t{imageCapacity})
        readHelpLine(image + offset, *message);
    return 1;
}

int cTypDescriptor::getSPHelpAnz() const
{
    return spHelpCount;
}

/// Parses a slot help block once more. Where two blocks carry one number, another number has no block.
bool cTypDescriptor::findSlotHelp(int block, PARA_HELPM_INFO* info) const
{
    if (block < 1 || block > spHelpCount || spHelpPositions[block - 1] == nullptr)
        return false;
    char* next = nullptr;
    return checkHelpBlock(info, spHelpPositions[block - 1], &next) >= 0 && info->helpNumber == block;
}

int cTypDescriptor::getSPHelpCnt(int block) const
{
    if (loaded == 0)
        return kErrSlotPrm;
    PARA_HELPM_INFO help{};
    return findSlotHelp(block, &help) ? help.lineCount : 0;
}

int cTypDescriptor::getSPHelpItem(int block, int line, PARA_HELPMESSAGE_TYPE* message) const
{
    if (loaded == 0)
        return kErrSlotPrm;
    PARA_HELPM_INFO help{};
    if (line < 0 || !findSlotHelp(block, &help) || line >= help.lineCount)
        return kErrSlotHelp;
    *message = PARA_HELPMESSAGE_TYPE();
    readHelpLine(help.firstLine + line * kLineSize, *message);
    return kOk;
}
