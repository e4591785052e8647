#include "planted_race.h"

#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

namespace {

std::atomic<int> reports{0};

// A signal from thread to thread that ThreadSanitizer does not see: it knows the functions of the C library, but not
// what a program asks of the system itself.
class Silent_signal {
public:
    Silent_signal() : counter_(eventfd(0, EFD_CLOEXEC)) {}
    ~Silent_signal() { close(counter_); }
    Silent_signal(const Silent_signal&) = delete;
    Silent_signal& operator=(const Silent_signal&) = delete;

    void give() const
    {
        const std::uint64_t one = 1;
        syscall(SYS_write, counter_, &one, sizeof one);
    }
    void await() const
    {
        std::uint64_t count = 0;
        syscall(SYS_read, counter_, &count, sizeof count);
    }

private:
    const int counter_;
};

}  // namespace

// ThreadSanitizer's runtime calls it with each report.
extern "C" __attribute__((visibility("default"))) void __tsan_on_report(void* /*report*/)
{
    reports.fetch_add(1, std::memory_order_relaxed);
}

namespace sanitizer_tests {

int races_between(const std::function<void()>& first, const std::function<void()>& second)
{
    const int before = reports.load(std::memory_order_relaxed);
    const Silent_signal first_over;
    const Silent_signal second_over;
    // Both live until both are done: what was a thread's that has ended may be taken for its successor's own.
    std::thread one([&] {
        first();
        first_over.give();
        second_over.await();
    });
    std::thread two([&] {
        first_over.await();
        second();
        second_over.give();
    });
    one.join();
    two.join();
    return reports.load(std::memory_order_relaxed) - before;
}

int races_around(const std::function<void()>& call)
{
    // Freshly allocated, so that what ThreadSanitizer remembers of the place is this test's alone.
    const auto planted = std::make_unique<volatile int>(0);
    call();  // what the first call of all sets up is no part of it
    return races_between(
        [&] {
            *planted = 1;
            call();
        },
        [&] {
            call();
            [[maybe_unused]] const int read = *planted;
        });
}

}  // namespace sanitizer_tests
