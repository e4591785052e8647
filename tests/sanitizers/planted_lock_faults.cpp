// Misuse of locks that clang must see, each beside what it must say. Read, never compiled into a program.
#include "locks/locks.h"
#include "manager/manager.h"

namespace kvs::brenvozulta {

// The manager's own members and locks, as it declares them.
struct manager_test_access {
    static bool guarded_data(brenvozulta_manager& manager)
    {
        return manager.closing_ != nullptr;  // expected-warning {{reading variable 'closing_' requires holding lock}}
    }

    static bool guarded_data_behind_the_wrong_lock(brenvozulta_manager& manager)
    {
        const scoped_lock<plain_mutex> wrong(manager.close_mutex_);
        return manager.closing_ != nullptr;  // expected-warning {{reading variable 'closing_' requires holding lock}}
    }

    static bool guarded_data_when_a_try_failed(brenvozulta_manager& manager)
    {
        tried_lock<recursive_timed_mutex> tried(manager.manager_lock_);
        if (tried.try_lock()) {
            return manager.closing_ != nullptr;
        }
        return manager.closing_ != nullptr;  // expected-warning {{reading variable 'closing_' requires holding lock}}
    }

    static std::int32_t function_that_requires_a_lock(brenvozulta_manager& manager)
    {
        return manager.shut_down();  // expected-warning {{calling function 'shut_down' requires holding lock}}
    }

    static std::int32_t function_that_excludes_a_lock(brenvozulta_manager& manager)
    {
        const scoped_lock<recursive_timed_mutex> outer(manager.manager_lock_);
        const scoped_lock<plain_mutex> inner(manager.close_mutex_);
        return manager.close_open_device(0);  // expected-warning {{cannot call function 'close_open_device' while}}
    }

    static bool wrong_order(brenvozulta_manager& manager)
    {
        const scoped_lock<plain_mutex> inner(manager.close_mutex_);
        const scoped_lock<recursive_timed_mutex> outer(
            manager.manager_lock_);  // expected-warning@-1 {{'manager_lock_' must be acquired before 'close_mutex_'}}
        return manager.closing_ != nullptr;
    }

    static std::int32_t nothing_wrong(brenvozulta_manager& manager)
    {
        const scoped_lock<recursive_timed_mutex> outer(manager.manager_lock_);
        const scoped_lock<plain_mutex> inner(manager.close_mutex_);
        return manager.closing_ != nullptr ? VYRA_INTERNAL : manager.bring_up();
    }
};

// Locks of two rooms that do not know each other: between them stand all the lines of the order.
struct Outermost {
    plain_mutex first ACQUIRED_BEFORE(lock_order::inside_manager);
};
struct Innermost {
    plain_mutex last ACQUIRED_AFTER(lock_order::inside_close);
};

void wrong_order_of_rooms(Outermost& above, Innermost& below)
{
    const scoped_lock<plain_mutex> inner(below.last);
    const scoped_lock<plain_mutex> outer(above.first);  // expected-warning {{'first' must be acquired before 'last'}}
}

void right_order_of_rooms(Outermost& above, Innermost& below)
{
    const scoped_lock<plain_mutex> outer(above.first);
    const scoped_lock<plain_mutex> inner(below.last);
}

}  // namespace kvs::brenvozulta
