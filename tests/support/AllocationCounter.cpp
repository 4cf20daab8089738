#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

// Where the code of the program begins and ends; the linker defines them.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace {

// Every thread of a test allocates.
std::atomic<bool> isCounting = false;
std::atomic<std::size_t> allocationCount = 0;
std::atomic<std::ptrdiff_t> bytesHeld = 0;

bool isCounted(const void* caller)
{
    return isCounting && caller >= &__executable_start && caller < &etext;
}

void* allocateOrNone(std::size_t size, const void* caller)
{
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory && isCounted(caller)) {
        ++allocationCount;
        bytesHeld += static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    }
    return memory;
}

void* allocate(std::size_t size, const void* caller)
{
    if (void* memory = allocateOrNone(size, caller))
        return memory;
    throw std::bad_alloc();
}

void release(void* memory, const void* caller)
{
    if (isCounted(caller))
        bytesHeld -= static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    std::free(memory);
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

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocateOrNone(size, __builtin_return_address(0));
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocateOrNone(size, __builtin_return_address(0));
}

void operator delete(void* memory) noexcept
{
    release(memory, __builtin_return_address(0));
}

void operator delete[](void* memory) noexcept
{
    release(memory, __builtin_return_address(0));
}

void operator delete(void* memory, std::size_t) noexcept
{
    release(memory, __builtin_return_address(0));
}

void operator delete[](void* memory, std::size_t) noexcept
{
    release(memory, __builtin_return_address(0));
}

AllocationCounter::AllocationCounter()
{
    allocationCount = 0;
    bytesHeld = 0;
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

std::ptrdiff_t AllocationCounter::heldBytes() const
{
    return bytesHeld;
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    release(memory, __builtin_return_address(0));
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    release(memory, __builtin_return_address(0));
}
