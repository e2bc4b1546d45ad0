#include "tests/failingNew.h"

#include <cstdlib>
#include <new>

namespace {

constexpr long kNever = -1;
thread_local long allocationsLeft = kNever;
thread_local bool failed = false;

void* allocate(std::size_t size)
{
    if (allocationsLeft == 0) {
        allocationsLeft = kNever;
        failed = true;
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0)
        --allocationsLeft;
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

FailingNew::FailingNew(long successes)
{
    failed = false;
    allocationsLeft = successes;
}

FailingNew::~FailingNew()
{
    allocationsLeft = kNever;
}

bool FailingNew::hasFailed() const
{
    return failed;
}

void* operator new(std::size_t size)
{
    return allocate(size);
}

void* operator new[](std::size_t size)
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
