// Queries about the header and the type data: copies of what the checks have decoded.

#include "access/queries.h"

#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

int getFamily(const TypeFile& file, char* text)
{
    if (!file.isLoaded)
        return kErrHeader;
    const std::string_view family =
        hasVersion5Groups(file.header.version) ? file.header.family : stationOf(file.header.stationType).oldFamily;
    std::memcpy(text, family.data(), kFamily.width);
    text[kFamily.width] = '\0';
    return kOk;
}

int getBitMapFileName(const TypeFile& file, char* name)
{
    if (!hasVersion5Groups(file.header.version))
        return kErrBitmapName;
    std::memcpy(name, file.bitmapName, sizeof file.bitmapName);
    return kOk;
}

int getDLLFileName(const TypeFile& file, char* name)
{
    if (!hasVersion5Groups(file.header.version))
        return kErrLibraryName;
    std::memcpy(name, file.libraryName, sizeof file.libraryName);
    return kOk;
}

int isKonfigFixed(const TypeFile& file, int* count)
{
    if (file.presetSlots.empty())
        return 0;
    *count = static_cast<int>(file.presetSlots.size());
    return 1;
}

int isPresetKonfigFixed(const TypeFile& file)
{
    return !file.presetSlots.empty() && file.presetCode.fixed ? 1 : 0;
}

int getFixedSlotId(const TypeFile& file, int index, CSLAVE_SLOT_PRESET_TYPE* preset)
{
    MLFB_ITEM item;
    const int result = getFixedSlotId(file, index, &item);
    if (result == kOk)
        *preset = item.preset;
    return result;
}

int getFixedSlotId(const TypeFile& file, int index, MLFB_ITEM* item)
{
    if (file.presetSlots.empty())
        return kErrIdentifier;
    copyOrClear(entryAt(file.presetSlots, index), *item);
    return kOk;
}

int getSlotNumbering(const TypeFile& file, SLOT_NUMBERING_TYPE* numbering)
{
    if (file.slotNumbering.value2 == 0)
        return kErrTypeData;
    *numbering = file.slotNumbering;
    return kOk;
}

} // namespace typdescriptor::internal
