// What the program takes from the heap by operator new.

#pragma once

#include <cstddef>

struct HeapCount {
    std::size_t allocations; // since the last reset
    std::size_t live;        // bytes
    std::size_t peak;        // bytes, since the last reset
};

HeapCount heapCount();

/// Begins again with no allocation and the bytes that are live as the peak.
void resetHeapCount();
