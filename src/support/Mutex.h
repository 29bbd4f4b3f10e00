// A mutex whose use clang checks at compile time (-Wthread-safety): only code that holds the mutex can use data marked
// KOVA_GUARDED_BY and call functions marked KOVA_REQUIRES. Other compilers ignore these marks.
#pragma once

#include <mutex>

#if defined(__clang__)
#define KOVA_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define KOVA_THREAD_SAFETY(attribute)
#endif

#define KOVA_GUARDED_BY(mutex) KOVA_THREAD_SAFETY(guarded_by(mutex))
#define KOVA_POINTEE_GUARDED_BY(mutex) KOVA_THREAD_SAFETY(pt_guarded_by(mutex))
#define KOVA_REQUIRES(mutex) KOVA_THREAD_SAFETY(requires_capability(mutex))
#define KOVA_EXCLUDES(mutex) KOVA_THREAD_SAFETY(locks_excluded(mutex))
#define KOVA_RETURN_CAPABILITY(mutex) KOVA_THREAD_SAFETY(lock_returned(mutex))
#define KOVA_ASSERT_CAPABILITY(mutex) KOVA_THREAD_SAFETY(assert_capability(mutex))

namespace kova {

class KOVA_THREAD_SAFETY(capability("mutex")) Mutex {
  public:
    void lock() KOVA_THREAD_SAFETY(acquire_capability()) { mutex_.lock(); }
    void unlock() KOVA_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }
    /// Tells the analysis that the mutex is held, as in a lambda whose caller holds it. Does nothing.
    void assertHeld() const KOVA_THREAD_SAFETY(assert_capability(this)) {}

  private:
    std::mutex mutex_;
};

/// Holds the mutex as long as this object exists.
class KOVA_THREAD_SAFETY(scoped_lockable) MutexLock {
  public:
    explicit MutexLock(Mutex& mutex) KOVA_THREAD_SAFETY(acquire_capability(mutex)) : mutex_(mutex) { mutex_.lock(); }
    ~MutexLock() KOVA_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

  private:
    Mutex& mutex_;
};

} // namespace kova
