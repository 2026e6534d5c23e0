#include "common/CMySemLock.hpp"

#include "common/NamedMutex.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace Common {

namespace {

constexpr auto pauseBetweenTries = std::chrono::milliseconds(1);
constexpr mode_t ownerOnly = 0600;

std::atomic<bool> threadFlag{false};

sem_t* createExclusively(const char* name)
{
    sem_t* const handle = sem_open(name, O_CREAT | O_EXCL, ownerOnly, 1U);
    return handle == SEM_FAILED ? nullptr : handle;
}

/// What precedes the name of each lock of this process.
std::string ownPrefix()
{
    return std::to_string(getpid()) + '_';
}

void removeLeftovers()
{
    // Where the C library keeps named semaphores, and how it calls their files.
    constexpr const char* folder = "/dev/shm";
    constexpr std::string_view filePrefix = "sem.";
    const std::string ours = std::string(filePrefix) + ownPrefix();
    std::error_code failure;
    for (const auto& file : std::filesystem::directory_iterator(folder, failure))
        if (const std::string name = file.path().filename(); name.starts_with(ours))
            sem_unlink(name.substr(filePrefix.size()).c_str());
}

} // namespace

void CMySemLock::SetThreadFlag(bool on)
{
    if (on && !threadFlag)
        removeLeftovers();
    threadFlag = on;
}

void CMySemLock::SetClearSemaphore(bool) {}

bool CMySemLock::AcquireSymLock(_MY_LOCK& lock, const char* name, int tries)
{
    if (!threadFlag)
        return true;
    if (common::policy().locksWithinProcess) {
        lock.mutex = &common::namedMutex(name);
        lock.mutex->lock();
        return true;
    }
    std::snprintf(lock.name, sizeof lock.name, "%s%s", ownPrefix().c_str(), name);
    for (; tries > 0; --tries) {
        lock.handle = createExclusively(lock.name);
        if (lock.handle)
            return true;
        current<Clock>().sleepFor(pauseBetweenTries);
    }
    return false;
}

void CMySemLock::ReleaseSymLock(_MY_LOCK lock)
{
    if (lock.mutex)
        return lock.mutex->unlock();
    if (!threadFlag)
        return;
    if (lock.handle)
        sem_close(lock.handle);
    sem_unlink(lock.name);
}

} // namespace Common
