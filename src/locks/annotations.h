// What a compiler that can check it is told about the locks. Of the project's compilers clang can; to the others the
// words mean nothing, so this is the one place that asks which compiler it is.
#pragma once

#if defined(__clang__)
#define LOCK_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define LOCK_ATTRIBUTE(attribute)
#endif

// Classes: a lock; an object that holds one until the end of its scope.
#define CAPABILITY(kind) LOCK_ATTRIBUTE(capability(kind))
#define SCOPED_CAPABILITY LOCK_ATTRIBUTE(scoped_lockable)

// Data: the lock without which it is neither read nor written.
#define GUARDED_BY(lock) LOCK_ATTRIBUTE(guarded_by(lock))

// Locks: which others are taken inside and outside of this one, see lock_order.h.
#define ACQUIRED_BEFORE(...) LOCK_ATTRIBUTE(acquired_before(__VA_ARGS__))
#define ACQUIRED_AFTER(...) LOCK_ATTRIBUTE(acquired_after(__VA_ARGS__))

// Functions: to be called with the lock held; not with it held by this thread.
#define REQUIRES(...) LOCK_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) LOCK_ATTRIBUTE(locks_excluded(__VA_ARGS__))

// The functions of locks and of their holders alone.
#define ACQUIRE(...) LOCK_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define TRY_ACQUIRE(...) LOCK_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define RELEASE(...) LOCK_ATTRIBUTE(release_capability(__VA_ARGS__))
#define ASSERT_HELD() LOCK_ATTRIBUTE(assert_capability(this))

// Where what is true cannot be told to the compiler; a comment beside it says what that is.
#define NOT_ANALYSED LOCK_ATTRIBUTE(no_thread_safety_analysis)
