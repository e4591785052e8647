// What ThreadSanitizer sees of the test bench.
//
// A driver and an operating system order nothing for those who call them: two threads that each make a call are as
// unordered behind it as before. The simulator and the Win32 double have locks, though, and ThreadSanitizer would take
// every one of them for an order between the threads of the library that meet there, and miss their races. So what
// happens under such a lock is unseen: neither the lock nor the accesses count. What does pass from one thread to
// another (a message, an event that is set, a call of the host) is said where it does, by hand_over and take_over.
//
// With TEST_BENCH_SEEN in the environment nothing is hidden: so the bench's own tests find the bench's own races. In a
// build without ThreadSanitizer all of this is nothing.
#pragma once

#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TEST_BENCH_THREAD_SANITIZER
#endif
#endif

#ifdef TEST_BENCH_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>

#include <cstdlib>

extern "C" {
void AnnotateIgnoreSyncBegin(const char* file, int line);
void AnnotateIgnoreSyncEnd(const char* file, int line);
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

namespace test_bench {

#ifdef TEST_BENCH_THREAD_SANITIZER

inline bool is_hidden()
{
    static const bool hidden = std::getenv("TEST_BENCH_SEEN") == nullptr;
    return hidden;
}

// A scope in which the calling thread's synchronisation orders nothing; its accesses count. For system calls, which
// ThreadSanitizer takes for an order between all who write and read files.
class Unordered {
public:
    Unordered()
    {
        if (is_hidden()) {
            AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
        }
    }
    ~Unordered()
    {
        if (is_hidden()) {
            AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
        }
    }
    Unordered(const Unordered&) = delete;
    Unordered& operator=(const Unordered&) = delete;
};

namespace detail {

// How many unseen scopes the calling thread is in.
inline thread_local int depth = 0;

inline void hide()
{
    if (!is_hidden()) {
        return;
    }
    AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
    AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
    AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
}

inline void show()
{
    if (!is_hidden()) {
        return;
    }
    AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
    AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
}

inline void enter()
{
    if (depth++ == 0) {
        hide();
    }
}

inline void leave()
{
    if (--depth == 0) {
        show();
    }
}

}  // namespace detail

// A scope inside an unseen one in which all is seen again.
class Seen {
public:
    Seen() : depth_(std::exchange(detail::depth, 0))
    {
        if (depth_ > 0) {
            detail::show();
        }
    }
    ~Seen()
    {
        detail::depth = depth_;
        if (depth_ > 0) {
            detail::hide();
        }
    }
    Seen(const Seen&) = delete;
    Seen& operator=(const Seen&) = delete;

private:
    const int depth_;
};

// All that the calling thread did before a hand-over stands before all that another one does after it takes over at the
// same address.
inline void hand_over(const void* what)
{
    const Seen seen;
    __tsan_release(const_cast<void*>(what));
}

inline void take_over(const void* what)
{
    const Seen seen;
    __tsan_acquire(const_cast<void*>(what));
}

#else

class Unordered {
public:
    Unordered() {}   // NOLINT(modernize-use-equals-default): a scope is no unused variable
    ~Unordered() {}  // NOLINT(modernize-use-equals-default)
    Unordered(const Unordered&) = delete;
    Unordered& operator=(const Unordered&) = delete;
};

using Seen = Unordered;

namespace detail {

inline void enter() {}
inline void leave() {}

}  // namespace detail

inline void hand_over(const void* /*what*/) {}
inline void take_over(const void* /*what*/) {}

#endif

// A scope that is unseen.
class Unseen {
public:
    Unseen() { detail::enter(); }
    ~Unseen() { detail::leave(); }
    Unseen(const Unseen&) = delete;
    Unseen& operator=(const Unseen&) = delete;
};

// A lock, and an unseen scope for as long as it is held: whoever gives it up to call out is seen meanwhile. A wait at a
// condition variable stays unseen.
class Unseen_lock : public std::unique_lock<std::mutex> {
public:
    explicit Unseen_lock(std::mutex& mutex) : unique_lock(mutex, std::defer_lock) { lock(); }
    ~Unseen_lock()
    {
        if (owns_lock()) {
            unlock();
        }
    }
    Unseen_lock(const Unseen_lock&) = delete;
    Unseen_lock& operator=(const Unseen_lock&) = delete;

    void lock()
    {
        detail::enter();
        unique_lock::lock();
    }
    void unlock()
    {
        unique_lock::unlock();
        detail::leave();
    }
};

// Starts a thread that does the work and ends by itself. Its start is an order that is seen, under whatever lock it
// happens; the end of what the work kept alive is not.
template <class Work>
void start_detached(Work work)
{
    const Seen seen;
    std::thread([kept = std::optional<Work>(std::move(work))]() mutable {
        (*kept)();
        const Unseen unseen;
        kept.reset();
    }).detach();
}

}  // namespace test_bench
