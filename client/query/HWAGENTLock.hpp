#pragma once

#include <mutex>
#include <semaphore.h>

/// A named lock between the threads of this process (its number is part of the name): the existence of the semaphore
/// is the lock, or a mutex of that name is (Policy::locksWithinProcess). Held until the object's end, which is on the
/// thread that took it.
class HWAGENTLock {
public:
    explicit HWAGENTLock(const char* name);
    virtual ~HWAGENTLock();
    HWAGENTLock(const HWAGENTLock&) = delete;
    HWAGENTLock& operator=(const HWAGENTLock&) = delete;

    /// 1 when the lock is held. Tries every two seconds, 600,000 times, and gives up with 0; a mutex is waited for.
    int Lock();
    /// Frees the name, if it is ours.
    void _Unlock();
    /// Nothing: only the object's end lets go of the lock.
    void Unlock() {}
    void SetThreadFlag(bool) {}

    /// Frees a name that a dead process of our number has left. Only before the first lock of that name.
    static void removeLeftover(const char* name);

private:
    sem_t* pMSRObject = nullptr;
    std::unique_lock<std::mutex> withinProcess;
    char szMutexName[256] = {};
};
