// Queries about the header and the type data: copies of what the checks have decoded.

#include "access/familyNames.h"
#include "descriptor/cTypDescriptor.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

std::string_view oldFamilyOf(std::string_view stationType)
{
    return std::find_if(kOldFamilies.begin(), kOldFamilies.end(),
                        [stationType](const OldFamily& row) { return stationType.starts_with(row.stationType); })
        ->family;
}

} // namespace

bool cTypDescriptor::isValidated() const
{
    return image != nullptr && loaded != 0;
}

unsigned short cTypDescriptor::getSlaveTypeHeader(SLAVE_TYPE_HEADER_INFO* record) const
{
    if (!isValidated())
        return in16Bits(kErrHeader);
    *record = header;
    return kOk;
}

unsigned short cTypDescriptor::getSlaveTypeData(SLAVE_TYPEDATA_TYPE* record) const
{
    if (!isValidated())
        return in16Bits(kErrFile);
    *record = typeData;
    return qx410kStation != 0 ? 2 : in16Bits(typeCategory);
}

int cTypDescriptor::getFamily(char* text) const
{
    if (!isValidated())
        return kErrHeader;
    const std::string_view family =
        typefile::hasVersion5Groups(header.version) ? header.family : oldFamilyOf(header.stationType);
    std::memcpy(text, family.data(), typefile::kFamily.width);
    text[typefile::kFamily.width] = '\0';
    return kOk;
}

int cTypDescriptor::getBitMapFileName(char* name) const
{
    if (!isValidated() || !typefile::hasVersion5Groups(header.version))
        return kErrBitmapName;
    std::memcpy(name, bitmapName, sizeof bitmapName);
    return kOk;
}

int cTypDescriptor::getDLLFileName(char* name) const
{
    if (!isValidated() || !typefile::hasVersion5Groups(header.version))
        return kErrLibraryName;
    std::memcpy(name, libraryName, sizeof libraryName);
    return kOk;
}

int cTypDescriptor::getSlotOffset() const
{
    return isValidated() ? slotOffset : 0;
}

int cTypDescriptor::isModular() const
{
    return modular;
}

int cTypDescriptor::isKonfigFixed(int* count) const
{
    if (loaded == 0 || presetCount == 0)
        return 0;
    *count = presetCount;
    return 1;
}

int cTypDescriptor::isPresetKonfigFixed() const
{
    return loaded != 0 && presetCount != 0 ? vFlag : 0;
}

int cTypDescriptor::getFixedSlotId(int index, CSLAVE_SLOT_PRESET_TYPE* preset) const
{
    MLFB_ITEM item;
    const int result = getFixedSlotId(index, &item);
    if (result == kOk)
        *preset = item.preset;
    return result;
}

int cTypDescriptor::getFixedSlotId(int index, MLFB_ITEM* item) const
{
    if (presetCount == 0)
        return kErrIdentifier;
    *item = index >= 0 && index < presetCount ? presetSlots[index] : MLFB_ITEM();
    return kOk;
}

int cTypDescriptor::getSlotNumbering(SLOT_NUMBERING_TYPE* numbering) const
{
    if (loaded == 0 || slotNumbering.value2 == 0)
        return kErrTypeData;
    *numbering = slotNumbering;
    return kOk;
}

int cTypDescriptor::getMaxSPBlockLen() const
{
    return loaded != 0 ? maxSpBlockLen : 0;
}

int cTypDescriptor::isMLFBModeP36() const
{
    return mFlag;
}

int cTypDescriptor::isP36KY() const
{
    return yFlag;
}
