#include "tests/testHeap.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(_WIN32)
#include <malloc.h>
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace {

constexpr long kNever = -1;
thread_local long live = 0;
thread_local long successesLeft = kNever;
thread_local bool failsForGood = false;
thread_local bool failed = false;
thread_local long guardedCount = kNever;

void* counted(void* memory)
{
    if (memory == nullptr)
        throw std::bad_alloc();
    ++live;
    return memory;
}

void failWhenDue()
{
    if (successesLeft == kNever || successesLeft-- > 0)
        return;
    successesLeft = failsForGood ? 0 : kNever;
    failed = true;
    throw std::bad_alloc();
}

/// Zeroed memory, whole pages; null when there is none.
char* newPages(std::size_t size)
{
#if defined(_WIN32)
    return static_cast<char*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
#else
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
#endif
}

bool makeUnreadable(char* pages, std::size_t size)
{
#if defined(_WIN32)
    DWORD before = 0;
    return VirtualProtect(pages, size, PAGE_NOACCESS, &before) != 0;
#else
    return mprotect(pages, size, PROT_NONE) == 0;
#endif
}

void* newAligned(std::size_t unit, std::size_t size)
{
#if defined(_WIN32)
    return _aligned_malloc(size, unit);
#else
    return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
#endif
}

/// Places for arrays, each with an unreadable page behind it.
class Guarded {
public:
    Guarded()
    {
        start = newPages(kPlaces * kDistance);
        if (start == nullptr)
            std::abort();
        for (std::size_t i = 0; i < kPlaces; ++i) {
            free[i] = i;
            if (!makeUnreadable(start + i * kDistance + kRoom, kDistance - kRoom))
                std::abort();
        }
    }

    /// An array that ends at its unreadable page; null when it is too large or there is no place.
    void* take(std::size_t size)
    {
        if (size > kRoom || freeCount == 0)
            return nullptr;
        return start + free[--freeCount] * kDistance + kRoom - size;
    }

    bool giveBack(void* array)
    {
        const auto offset = reinterpret_cast<std::size_t>(array) - reinterpret_cast<std::size_t>(start);
        if (offset >= kPlaces * kDistance)
            return false;
        free[freeCount++] = offset / kDistance;
        return true;
    }

private:
    static constexpr std::size_t kPlaces = 128;
    static constexpr std::size_t kRoom = std::size_t{1} << 18;
    static constexpr std::size_t kDistance = kRoom + 65536; // whole pages, whatever their size

    char* start = nullptr;
    std::array<std::size_t, kPlaces> free{};
    std::size_t freeCount = kPlaces;
};

// Made by the first thread that guards arrays, and used by that thread alone.
Guarded* guarded = nullptr;

void release(void* memory)
{
    if (memory == nullptr)
        return;
    --live;
    if (guarded == nullptr || !guarded->giveBack(memory))
        std::free(memory);
}

void releaseAligned(void* memory)
{
#if defined(_WIN32)
    if (memory != nullptr)
        --live;
    _aligned_free(memory);
#else
    release(memory);
#endif
}

} // namespace

long liveAllocations()
{
    return live;
}

FailingNew::FailingNew(long successes, bool forGood)
{
    failed = false;
    failsForGood = forGood;
    successesLeft = successes;
}

FailingNew::~FailingNew()
{
    successesLeft = kNever;
}

bool FailingNew::hasFailed() const
{
    return failed;
}

GuardedArrays::GuardedArrays()
{
    static Guarded places;
    guarded = &places;
    guardedCount = 0;
}

GuardedArrays::~GuardedArrays()
{
    guardedCount = kNever;
}

long GuardedArrays::count() const
{
    return guardedCount;
}

void* operator new(std::size_t size)
{
    failWhenDue();
    return counted(std::malloc(size == 0 ? 1 : size));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    failWhenDue();
    return counted(newAligned(static_cast<std::size_t>(alignment), size));
}

void* operator new[](std::size_t size)
{
    failWhenDue();
    void* const array = guardedCount == kNever ? nullptr : guarded->take(size);
    if (array == nullptr)
        return counted(std::malloc(size == 0 ? 1 : size));
    ++guardedCount;
    return counted(array);
}

void operator delete(void* memory) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    releaseAligned(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    releaseAligned(memory);
}

void operator delete[](void* memory) noexcept
{
    release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    release(memory);
}
