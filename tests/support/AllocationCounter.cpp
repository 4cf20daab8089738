#include "tests/support/AllocationCounter.h"

#include <cstdlib>
#include <new>

// Where the code of the program begins and ends; the linker defines them.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace {

bool isCounting = false;
std::size_t allocationCount = 0;
std::size_t allocatedBytes = 0;

void* allocate(std::size_t size, const void* caller)
{
    if (isCounting && caller >= &__executable_start && caller < &etext) {
        ++allocationCount;
        allocatedBytes += size;
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size, __builtin_return_address(0));
}

void* operator new[](std::size_t size)
{
    return allocate(size, __builtin_return_address(0));
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

AllocationCounter::AllocationCounter()
{
    allocationCount = 0;
    allocatedBytes = 0;
    isCounting = true;
}

AllocationCounter::~AllocationCounter()
{
    isCounting = false;
}

std::size_t AllocationCounter::count() const
{
    return allocationCount;
}

std::size_t AllocationCounter::bytes() const
{
    return allocatedBytes;
}
