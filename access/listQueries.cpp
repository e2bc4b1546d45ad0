// Queries about the order-number list and the module lists: copies of the entries that the checks have decoded.
//
// An index is held against the upper bound only, so that one below 0 is answered as found; its entry is then a cleared
// one.

#include "descriptor/cTypDescriptor.h"
#include "typefile/moduleList.h"

#include <cstring>

int cTypDescriptor::getMLFBListCnt() const
{
    return loaded != 0 ? mlfbCount : 0;
}

int cTypDescriptor::getMLFBListItem(int index, MLFB_ITEM* item) const
{
    if (loaded == 0 || index >= mlfbCount || mlfbItems == nullptr)
        return kErrOrderList;
    *item = index >= 0 ? mlfbItems[index] : MLFB_ITEM();
    return kOk;
}

bool cTypDescriptor::hasModuleList(int index) const
{
    return loaded != 0 && index < moduleListCount && moduleLists != nullptr;
}

int cTypDescriptor::getLSKCnt() const
{
    return loaded != 0 ? moduleListCount : 0;
}

int cTypDescriptor::getLSKText(int index, char* text) const
{
    text[0] = '\0';
    if (!hasModuleList(index))
        return kErrModuleList;
    if (index >= 0)
        std::memcpy(text, moduleLists[index].text, sizeof moduleLists[index].text);
    return kOk;
}

int cTypDescriptor::getSKListCnt(int index, int* vFlagOfList) const
{
    if (!hasModuleList(index) || index < 0)
        return 0;
    *vFlagOfList = moduleLists[index].vFlag;
    return moduleLists[index].slotCount;
}

int cTypDescriptor::getSKListItem(int index, int item, LSK_ITEM* entry) const
{
    if (!hasModuleList(index))
        return kErrModuleList;
    if (index >= 0 && item >= moduleLists[index].slotCount)
        return kErrModuleList;
    *entry = index >= 0 && item >= 0 ? moduleLists[index].entries[item] : LSK_ITEM();
    return kOk;
}
