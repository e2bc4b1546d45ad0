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
    return index >= static_cast<int>(entries.size());
}

/// Null when nothing is loaded or above the lists; some list for an index below 0.
const ModuleList* findModuleList(const TypeFile& file, int index)
{
    if (!file.isLoaded || file.moduleLists.empty() || isBeyond(file.moduleLists, index))
        return nullptr;
    return &file.moduleLists[static_cast<std::size_t>(std::max(index, 0))];
}

} // namespace

int getMLFBListItem(const TypeFile& file, int index, MLFB_ITEM* item)
{
    if (!file.isLoaded || file.orderNumbers.empty() || isBeyond(file.orderNumbers, index))
        return kErrOrderList;
    *item = index >= 0 ? file.orderNumbers[static_cast<std::size_t>(index)] : MLFB_ITEM();
    return kOk;
}

int getLSKText(const TypeFile& file, int index, char* text)
{
    const ModuleList* list = findModuleList(file, index);
    text[0] = '\0';
    if (list == nullptr)
        return kErrModuleList;
    if (index >= 0)
        std::memcpy(text, list->text, sizeof list->text);
    return kOk;
}

int getSKListCnt(const TypeFile& file, int index, int* vFlag)
{
    const ModuleList* list = findModuleList(file, index);
    if (list == nullptr || index < 0)
        return 0;
    *vFlag = list->isFixed ? 1 : 0;
    return static_cast<int>(list->entries.size());
}

int getSKListItem(const TypeFile& file, int index, int item, LSK_ITEM* entry)
{
    const ModuleList* list = findModuleList(file, index);
    if (list == nullptr || (index >= 0 && isBeyond(list->entries, item)))
        return kErrModuleList;
    *entry = index >= 0 && item >= 0 ? list->entries[static_cast<std::size_t>(item)] : LSK_ITEM();
    return kOk;
}

} // namespace typdescriptor::internal
