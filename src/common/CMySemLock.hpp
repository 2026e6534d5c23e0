#pragma once

#include "common/Logger.hpp"

#include <mutex>
#include <semaphore.h>

/// Handle and name of an acquired lock.
struct _MY_LOCK {
    sem_t* handle = nullptr;
    char name[260] = {};
    std::mutex* mutex = nullptr; ///< in place of the handle while locks are kept within the process
};

namespace Common {

/// Named locks between the threads of this process: the existence of the named semaphore is the lock. Kept within the
/// process (Policy::locksWithinProcess) they are mutexes, waited for without an end, and let go by the thread that took
/// them.
class CMySemLock {
public:
    /// Locks are really taken only while this is on; off, every acquire succeeds at once. Switching on removes the
    /// locks that bear this process's number: they are what a killed process of the same number left behind.
    static void SetThreadFlag(bool on);

    static constexpr int mostTries = 300'000;

    /// Tries every millisecond, for about 300 seconds at default. False when the lock was not got; callers go on
    /// regardless.
    static bool AcquireSymLock(_MY_LOCK& lock, const char* name, int tries = mostTries);
    /// Closes the handle and removes the name, whoever made it: not for a lock that was not got.
    static void ReleaseSymLock(_MY_LOCK lock);
    // The rest of the class is for other callers of the SDK: the agent does not use it.

    /// Takes the flag and does nothing with it.
    static void SetClearSemaphore(bool clear);
    static bool AcquireMutexLock(_MY_LOCK& lock, const char* name) { return AcquireSymLock(lock, name); }
    static void ReleaseMutexLock(_MY_LOCK lock) { ReleaseSymLock(lock); }
};

/// Holds one named lock for a scope. A lock that was not got is not released, so that its holder keeps it.
class NamedLock {
public:
    explicit NamedLock(const char* name, int tries = CMySemLock::mostTries)
    {
        CMySemLock::AcquireSymLock(lock, name, tries);
    }
    ~NamedLock()
    {
        if (lock.handle || lock.mutex)
            CMySemLock::ReleaseSymLock(lock);
    }
    NamedLock(const NamedLock&) = delete;
    NamedLock& operator=(const NamedLock&) = delete;

private:
    _MY_LOCK lock;
};

} // namespace Common

/// Traces on the third category and takes the named lock for the rest of the scope.
#define HW_NAMED_LOCK(variable, name)                                                                                  \
    HW_LOG(LOGGER::Category::Third, "Locking at %s: %s: %d", __FILE__, __func__, __LINE__);                            \
    const Common::NamedLock variable(name)
