#include "tests/testHeap.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <sys/mman.h>

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

/// Places for arrays, each with an unreadable page behind it.
class Guarded {
public:
    Guarded()
    {
        void* const memory = mmap(nullptr, kPlaces * kDistance, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (memory == MAP_FAILED)
            std::abort();
        start = static_cast<char*>(memory);
        for (std::size_t i = 0; i < kPlaces; ++i) {
            free[i] = i;
            if (mprotect(start + i * kDistance + kRoom, kDistance - kRoom, PROT_NONE) != 0)
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
    const auto unit = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
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
    release(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    release(memory);
}

void operator delete[](void* memory) noexcept
{
    release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    release(memory);
}
