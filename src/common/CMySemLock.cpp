#include "common/CMySemLock.hpp"

#include "common/Seams.hpp"

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Common {

namespace {

constexpr int mostTries = 300'000;
constexpr auto pauseBetweenTries = std::chrono::milliseconds(1);
constexpr mode_t ownerOnly = 0600;

std::atomic<bool> threadFlag{false};

sem_t* createExclusively(const char* name)
{
    sem_t* const handle = sem_open(name, O_CREAT | O_EXCL, ownerOnly, 1U);
    return handle == SEM_FAILED ? nullptr : handle;
}

} // namespace

void CMySemLock::SetThreadFlag(bool on)
{
    threadFlag = on;
}

void CMySemLock::SetClearSemaphore(bool) {}

bool CMySemLock::AcquireSymLock(_MY_LOCK& lock, const char* name)
{
    if (!threadFlag)
        return true;
    // The process number keeps what a crashed process left behind from blocking its successor.
    std::snprintf(lock.name, sizeof lock.name, "%d_%s", getpid(), name);
    for (int tries = 0; tries < mostTries; ++tries) {
        lock.handle = createExclusively(lock.name);
        if (lock.handle)
            return true;
        current<Clock>().sleepFor(pauseBetweenTries);
    }
    return false;
}

void CMySemLock::ReleaseSymLock(_MY_LOCK lock)
{
    if (!threadFlag)
        return;
    if (lock.handle)
        sem_close(lock.handle);
    sem_unlink(lock.name);
}

} // namespace Common
