// The program's operators new and delete, which count.
#include "unit/device/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

void* allocate(std::size_t size)
{
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* allocate_or_throw(std::size_t size)
{
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

}  // namespace

std::size_t test_support::allocations_of_this_thread()
{
    return allocations;
}

void* operator new(std::size_t size)
{
    return allocate_or_throw(size);
}

void* operator new[](std::size_t size)
{
    return allocate_or_throw(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
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
