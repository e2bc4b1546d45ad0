// A module list as the checks keep it: its text, its module-structure code and its slot entries.

#pragma once

#include "descriptor/records.h"

#include <cstdint>

struct ModuleList {
    char text[31]; // 30 characters
    std::int32_t slotCount;
    std::int32_t vFlag; // second letter of the module-structure code is 'V'
    LSK_ITEM* entries;  // slotCount of them, owned by the descriptor that owns the list
};
