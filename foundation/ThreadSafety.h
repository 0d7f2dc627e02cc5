#pragma once

#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define NOCTRA_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define NOCTRA_THREAD_SAFETY(attribute)
#endif

/// Of a member: touched with `mutex` locked only. Of a function: called with `mutex` locked only.
/// What does neither is an error in builds with clang (-Wthread-safety).
#define GUARDED_BY(mutex) NOCTRA_THREAD_SAFETY(guarded_by(mutex))
#define REQUIRES(mutex) NOCTRA_THREAD_SAFETY(requires_capability(mutex))

namespace noctra {

/// std::mutex as clang's analysis understands it. Lambdas are analysed by themselves, so waiting
/// takes a loop in the place of a predicate.
class NOCTRA_THREAD_SAFETY(capability("mutex")) Mutex {
public:
    void lock() NOCTRA_THREAD_SAFETY(acquire_capability()) { mutex_.lock(); }
    bool tryLock() NOCTRA_THREAD_SAFETY(try_acquire_capability(true)) { return mutex_.try_lock(); }
    void unlock() NOCTRA_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }

    /// Unlocks, waits for `changed` and locks again; it may return without a cause.
    void wait(std::condition_variable& changed) REQUIRES(this) {
        std::unique_lock lock(mutex_, std::adopt_lock);
        changed.wait(lock);
        lock.release();
    }
    /// As `wait`, but not beyond `end`; false once that has passed.
    template <typename TimePoint>
    bool waitUntil(std::condition_variable& changed, const TimePoint& end) REQUIRES(this) {
        std::unique_lock lock(mutex_, std::adopt_lock);
        const bool inTime = changed.wait_until(lock, end) == std::cv_status::no_timeout;
        lock.release();
        return inTime;
    }

private:
    std::mutex mutex_;
};

/// Locks a Mutex as long as it lives.
class NOCTRA_THREAD_SAFETY(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) NOCTRA_THREAD_SAFETY(acquire_capability(mutex))
        : mutex_(mutex) {
        mutex_.lock();
    }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;
    ~MutexLock() NOCTRA_THREAD_SAFETY(release_capability()) { mutex_.unlock(); }

private:
    Mutex& mutex_;
};

} // namespace noctra
