#pragma once

#include <semaphore.h>

/// A named lock between the threads of this process (its number is part of the name): the existence of the semaphore
/// is the lock. Held until the object's end.
class HWAGENTLock {
public:
    explicit HWAGENTLock(const char* name);
    virtual ~HWAGENTLock();
    HWAGENTLock(const HWAGENTLock&) = delete;
    HWAGENTLock& operator=(const HWAGENTLock&) = delete;

    /// 1 when the lock is held. Tries every two seconds, 600,000 times, and gives up with 0.
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
    char szMutexName[256] = {};
};
