// Queries about help texts.
//
// The station's blocks were located by the check; a slot help block is parsed again on each query. The texts are copied
// from the image.

#include "params/paramQueries.h"

#include <array>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kLineSize = helpLine::kLength + kTerminator.size();

void readHelpLine(const char* line, PARA_HELPMESSAGE_TYPE& message)
{
    message.value = static_cast<uint16_t>(numberAt(line, helpLine::kValue));
    copyField(message.text, line + helpLine::kText.position);
}

/// The first station help block of that number; null when there is none.
const HelpBlock* findStationHelp(const TypeFile& file, int number)
{
    const std::uint16_t* const first = entryAt(file.helpOfNumber, number);
    return first != nullptr && *first != 0 ? &file.help[*first - 1U] : nullptr;
}

/// Where two blocks carry one number, another number has no block.
bool findSlotHelp(const TypeFile& file, int number, HelpBlock& block)
{
    const Cursor* const begin = number > 0 ? entryAt(file.slotHelp, number - 1) : nullptr;
    if (begin == nullptr || *begin == nullptr)
        return false;
    Cursor p = *begin;
    return checkHelpBlock(p, block) >= 0 && block.number == number;
}

} // namespace

int getPSLHelpRef(const TypeFile& file, int i)
{
    const HelpBlock* const help = entryAt(file.help, i);
    return help != nullptr ? help->number : 0;
}

int getHelpMessageCnt(const TypeFile& file, int block)
{
    const HelpBlock* help = block != 0 ? findStationHelp(file, block) : nullptr;
    return help != nullptr ? help->lineCount : 0;
}

int getParaHelpMessage(const TypeFile& file, int block, int line, PARA_HELPMESSAGE_TYPE* message)
{
    if (!file.isLoaded || block > kMaxHelpNumber)
        return 0;
    *message = PARA_HELPMESSAGE_TYPE();
    const HelpBlock* help = findStationHelp(file, block);
    if (help == nullptr)
        return 0;
    // The line is not held against the block's line count: what stands behind the block is handed out as a line, but
    // nothing that does not belong to the image.
    constexpr std::int64_t kSize = kLineSize;
    const std::int64_t offset = help->firstLine - file.image + line * kSize;
    if (offset >= 0 && offset + kSize <= static_cast<std::int64_t>(file.capacity)) {
        std::array<char, kLineSize> text{};
        copyCharacters(file, static_cast<std::size_t>(offset), text.data(), text.size());
        readHelpLine(text.data(), *message);
    }
    return 1;
}

int getSPHelpCnt(const TypeFile& file, int block)
{
    if (!file.isLoaded)
        return kErrSlotPrm;
    HelpBlock help;
    return findSlotHelp(file, block, help) ? help.lineCount : 0;
}

int getSPHelpItem(const TypeFile& file, int block, int line, PARA_HELPMESSAGE_TYPE* message)
{
    if (!file.isLoaded)
        return kErrSlotPrm;
    HelpBlock help;
    if (line < 0 || !findSlotHelp(file, block, help) || line >= help.lineCount)
        return kErrSlotHelp;
    *message = PARA_HELPMESSAGE_TYPE();
    readHelpLine(help.firstLine + static_cast<std::size_t>(line) * kLineSize, *message);
    return kOk;
}

} // namespace typdescriptor::internal
