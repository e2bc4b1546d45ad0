#include "bench/heapCount.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

HeapCount heap{};

} // namespace

HeapCount heapCount()
{
    return heap;
}

void resetHeapCount()
{
    heap.allocations = 0;
    heap.peak = heap.live;
}

void* operator new(std::size_t size)
{
    void* const memory = std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++heap.allocations;
    heap.live += malloc_usable_size(memory);
    heap.peak = std::max(heap.peak, heap.live);
    return memory;
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    if (static_cast<std::size_t>(alignment) > alignof(std::max_align_t))
        throw std::bad_alloc(); // nothing here asks for more
    return operator new(size);
}

void operator delete(void* memory) noexcept
{
    heap.live -= malloc_usable_size(memory);
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    operator delete(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    operator delete(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    operator delete(memory);
}
