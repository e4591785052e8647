#include "manager/get_manager.h"

#include <boost/smart_ptr/allocate_shared_array.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/once.hpp>
#include <cstddef>
#include <new>

#include "manager/manager.h"

namespace kvs::brenvozulta {

std::atomic<const manager_owner*> global_owner{nullptr};

namespace {

// The manager with its reference count, and the global owner. They are never destroyed: a host's threads may still be
// in a call when the process ends.
alignas(std::max_align_t) unsigned char manager_storage[sizeof(brenvozulta_manager) + 128];
alignas(manager_owner) unsigned char owner_storage[sizeof(manager_owner)];

boost::once_flag created = BOOST_ONCE_INIT;

// Hands out manager_storage, once.
template <class T>
struct manager_storage_allocator {
    using value_type = T;

    manager_storage_allocator() = default;
    template <class U>
    manager_storage_allocator(const manager_storage_allocator<U>&)
    {
    }

    T* allocate(std::size_t count)
    {
        static_assert(sizeof(T) <= sizeof(manager_storage));
        static_assert(alignof(T) <= alignof(std::max_align_t));
        if (count != 1) {
            throw std::bad_alloc();
        }
        return reinterpret_cast<T*>(manager_storage);
    }
    void deallocate(T*, std::size_t) {}
};

void create_manager()
{
    auto owner = boost::allocate_shared<brenvozulta_manager>(manager_storage_allocator<brenvozulta_manager>());
    global_owner.store(new (owner_storage) manager_owner(owner), std::memory_order_release);
}

}  // namespace

const manager_owner& create_manager_once()
{
    boost::call_once(created, create_manager);
    return *global_owner.load(std::memory_order_acquire);
}

}  // namespace kvs::brenvozulta
