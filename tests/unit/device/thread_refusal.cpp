// The program's own pthread_create, which every library in the process then calls.
#include "unit/device/thread_refusal.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>

namespace {

constexpr int never = -1;
thread_local int granted_before_refusal = never;

using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

// A sanitizer's own has to see the threads that are created.
Create real_create()
{
    void* const sanitizers = dlsym(RTLD_DEFAULT, "__interceptor_pthread_create");
    return reinterpret_cast<Create>(sanitizers != nullptr ? sanitizers : dlsym(RTLD_NEXT, "pthread_create"));
}

}  // namespace

namespace test_support {

void refuse_thread_after(int granted)
{
    granted_before_refusal = granted;
}

bool thread_was_refused()
{
    return granted_before_refusal == never;
}

}  // namespace test_support

extern "C" __attribute__((visibility("default"))) int pthread_create(pthread_t* thread,
                                                                     const pthread_attr_t* attributes,
                                                                     void* (*run)(void*), void* argument)
{
    if (granted_before_refusal >= 0 && granted_before_refusal-- == 0) {
        return EAGAIN;
    }
    static const Create create = real_create();
    return create(thread, attributes, run, argument);
}
