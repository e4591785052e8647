#include "support/failing_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace failing_new {

namespace {

thread_local bool counting = false;
thread_local long counted = 0;
thread_local std::size_t all = 0;
thread_local long to_fail = 0;

bool refused()
{
    ++all;
    return counting && ++counted == to_fail;
}

void* allocate(std::size_t size)
{
    return refused() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate_or_throw(std::size_t size)
{
    void* const block = allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

void fail_allocation(long n)
{
    counted = 0;
    to_fail = n;
    counting = true;
}

bool stop()
{
    counting = false;
    return counted >= to_fail;
}

long allocations()
{
    return counted;
}

std::size_t allocations_of_this_thread()
{
    return all;
}

}  // namespace failing_new

void* operator new(std::size_t size)
{
    return failing_new::allocate_or_throw(size);
}

void* operator new[](std::size_t size)
{
    return failing_new::allocate_or_throw(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return failing_new::allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return failing_new::allocate(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete[](void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}
