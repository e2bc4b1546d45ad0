// Queries about the order-number list and the module lists: copies of the entries that the checks have decoded.
//
// An index is held against the upper bound only, so that one below 0 is answered as found; its entry is then a cleared
// one.

#include "access/queries.h"

#include <algorithm>
#include <cstring>

namespace typdescriptor::internal {

namespace {

template <class Entry>
bool isBeyond(const std::vector<Entry>& entries, int index)
{
    return std::max(index, 0) >= static_cast<int>(entries.size());
}

} // namespace

int getMLFBListItem(const TypeFile& file, int index, MLFB_ITEM* item)
{
    if (isBeyond(file.orderNumbers, index))
        return kErrOrderList;
    copyOrClear(entryAt(file.orderNumbers, index), *item);
    return kOk;
}

int getLSKText(const TypeFile& file, int index, char* text)
{
    text[0] = '\0';
    if (const ModuleList* list = entryAt(file.moduleLists, index); list != nullptr)
        std::memcpy(text, list->text, sizeof list->text);
    return isBeyond(file.moduleLists, index) ? kErrModuleList : kOk;
}

int getSKListCnt(const TypeFile& file, int index, int* vFlag)
{
    const ModuleList* list = entryAt(file.moduleLists, index);
    if (list == nullptr)
        return 0;
    *vFlag = list->isFixed ? 1 : 0;
    return static_cast<int>(list->entries.size());
}

int getSKListItem(const TypeFile& file, int index, int item, LSK_ITEM* entry)
{
    const ModuleList* list = entryAt(file.moduleLists, index);
    if (list != nullptr ? isBeyond(list->entries, item) : isBeyond(file.moduleLists, index))
        return kErrModuleList;
    copyOrClear(list != nullptr ? entryAt(list->entries, item) : nullptr, *entry);
    return kOk;
}

} // namespace typdescriptor::internal
