#include "entry_point.h"

#include <cerrno>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>

#include "beeps.h"
#include "test_bench/unseen.h"
#include "win32_double/control.h"

namespace win32_double {
namespace {

// Constant-initialised, so that it stands before the first entry point is constructed in whatever file.
Entry_point* first_entry_point = nullptr;

// Guards the orders of all entry points. A leaf: nothing is taken or called while it is held.
std::mutex& orders_lock()
{
    static auto& lock = *new std::mutex;
    return lock;
}

Entry_point& find(const char* function)
{
    for (Entry_point* entry = first_entry_point; entry != nullptr; entry = entry->next) {
        if (std::strcmp(entry->name, function) == 0) {
            return *entry;
        }
    }
    throw std::invalid_argument(std::string("the Win32 double has no function ") + function);
}

}  // namespace

Entry_point::Entry_point(const char* function) : name(function), next(first_entry_point)
{
    first_entry_point = this;
}

std::optional<uint32_t> Entry_point::enter()
{
    const test_bench::Unseen unseen;
    calls_.fetch_add(1, std::memory_order_relaxed);
    if (!armed_.load(std::memory_order_acquire)) {
        return std::nullopt;
    }
    const test_bench::Unseen_lock guard(orders_lock());
    if (after_ > 0) {
        --after_;
        return std::nullopt;
    }
    if (times_ == 0) {
        return std::nullopt;
    }
    if (times_ != always && --times_ == 0) {
        armed_.store(false, std::memory_order_release);
    }
    return error_;
}

bool Entry_point::refused()
{
    const auto error = enter();
    if (error) {
        SetLastError(*error);
    }
    return error.has_value();
}

bool Entry_point::refused_by_errno()
{
    const auto error = enter();
    if (error) {
        errno = static_cast<int>(*error);
    }
    return error.has_value();
}

void Entry_point::order_failure(int times, uint32_t error, int after)
{
    const test_bench::Unseen_lock guard(orders_lock());
    times_ = times;
    after_ = after;
    error_ = error;
    armed_.store(times != 0, std::memory_order_release);
}

void Entry_point::clear()
{
    order_failure(0, 0, 0);
    calls_.store(0, std::memory_order_relaxed);
}

void fail(const char* function, int times, uint32_t error, int after)
{
    find(function).order_failure(times, error, after);
}

uint64_t calls(const char* function)
{
    return find(function).calls();
}

void clear()
{
    for (Entry_point* entry = first_entry_point; entry != nullptr; entry = entry->next) {
        entry->clear();
    }
    forget_beeps();
}

}  // namespace win32_double
