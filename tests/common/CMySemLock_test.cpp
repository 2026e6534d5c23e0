#include "common/CMySemLock.hpp"
#include "common/Policy.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/Threads.hpp"

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <unistd.h>

using Common::CMySemLock;
using Common::NamedLock;

namespace {

bool semaphoreExists(const char* name)
{
    sem_t* const handle = sem_open(name, 0);
    if (handle == SEM_FAILED)
        return false;
    sem_close(handle);
    return true;
}

class CMySemLockTest : public testing::Test {
protected:
    CMySemLockTest() { CMySemLock::SetThreadFlag(true); }
    ~CMySemLockTest() override { CMySemLock::SetThreadFlag(false); }
};

TEST_F(CMySemLockTest, TheSemaphoreBearsTheProcessAndLivesAsLongAsTheLock)
{
    const std::string name = std::to_string(getpid()) + "_COMMON_TEST_NAME";
    _MY_LOCK lock;
    ASSERT_TRUE(CMySemLock::AcquireMutexLock(lock, "COMMON_TEST_NAME"));
    EXPECT_EQ(lock.name, name);
    EXPECT_TRUE(semaphoreExists(name.c_str()));
    CMySemLock::ReleaseMutexLock(lock);
    EXPECT_FALSE(semaphoreExists(name.c_str()));
    std::ifstream maps("/proc/self/maps");
    const std::string mapped{std::istreambuf_iterator<char>(maps), {}};
    // Its file bears a passing name while it is made, and keeps it in the map.
    EXPECT_EQ(mapped.find("/dev/shm/sem."), std::string::npos) << "removed and still mapped";
}

TEST_F(CMySemLockTest, WhatAKilledProcessOfTheSameNumberLeftBehindDoesNotBlock)
{
    const std::string own = std::to_string(getpid()) + "_COMMON_TEST_LEFT";
    const std::string other = std::to_string(getpid()) + "0_COMMON_TEST_LEFT";
    for (const std::string& name : {own, other})
        sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    CMySemLock::SetThreadFlag(false);
    CMySemLock::SetThreadFlag(true);
    _MY_LOCK lock;
    EXPECT_TRUE(CMySemLock::AcquireSymLock(lock, "COMMON_TEST_LEFT", 1));
    CMySemLock::SetThreadFlag(true);
    EXPECT_TRUE(semaphoreExists(own.c_str())) << "a lock that is held";
    CMySemLock::ReleaseSymLock(lock);
    EXPECT_EQ(sem_unlink(other.c_str()), 0) << "another process's lock";
}

/// Threads that take the same lock in turn; the most that were inside together.
int crowd()
{
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    int turns = 0; // deliberately unguarded but for the lock
    inThreads(25, [&](int, int) {
        const NamedLock lock("COMMON_TEST_EXCLUDE");
        most = std::max(most.load(), ++inside);
        ++turns;
        --inside;
    });
    EXPECT_EQ(turns, 100);
    return most;
}

TEST_F(CMySemLockTest, ThreadsExcludeOneAnother)
{
    EXPECT_EQ(crowd(), 1);
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(crowd(), 1);
}

TEST_F(CMySemLockTest, NameThatSomebodyHoldsForEverDelaysOnlyThePlainLock)
{
    const std::string name = std::to_string(getpid()) + "_COMMON_TEST_SQUAT";
    sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    FakeClock clock;
    ScopedSeam<Clock> use(clock);
    _MY_LOCK lock;
    EXPECT_FALSE(CMySemLock::AcquireSymLock(lock, "COMMON_TEST_SQUAT", 3));
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(3, std::chrono::milliseconds(1)));
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_TRUE(CMySemLock::AcquireSymLock(lock, "COMMON_TEST_SQUAT", 3));
    CMySemLock::ReleaseSymLock(lock);
    EXPECT_TRUE(CMySemLock::AcquireSymLock(lock, "COMMON_TEST_SQUAT", 3)) << "given back";
    CMySemLock::ReleaseSymLock(lock);
    EXPECT_EQ(clock.sleeps.size(), 3U);
    EXPECT_EQ(sem_unlink(name.c_str()), 0) << "and left to its maker";
}

} // namespace
