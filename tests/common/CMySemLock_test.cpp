#include "common/CMySemLock.hpp"
#include "tests/support/FakeClock.hpp"

#include <atomic>
#include <fcntl.h>
#include <numeric>
#include <string>
#include <thread>
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
}

TEST_F(CMySemLockTest, LongNameIsCutToItsField)
{
    const std::string longName(1000, 'n');
    FakeClock clock; // a name beyond the system's limit is never got
    ScopedSeam<Clock> use(clock);
    _MY_LOCK lock;
    EXPECT_FALSE(CMySemLock::AcquireSymLock(lock, longName.c_str()));
    EXPECT_EQ(std::string(lock.name).size(), sizeof lock.name - 1);
}

TEST_F(CMySemLockTest, ThreadsExcludeOneAnother)
{
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    int turns = 0; // deliberately unguarded but for the lock
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int turn = 0; turn < 25; ++turn) {
                const NamedLock lock("COMMON_TEST_EXCLUDE");
                most = std::max(most.load(), ++inside);
                ++turns;
                --inside;
            }
        });
    threads.clear();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(turns, 100);
}

TEST_F(CMySemLockTest, AHeldLockIsGivenUpAfterThreeHundredSecondsAndStaysWithItsHolder)
{
    const NamedLock holder("COMMON_TEST_HELD");
    FakeClock clock;
    ScopedSeam<Clock> use(clock);
    {
        const NamedLock loser("COMMON_TEST_HELD");
    }
    const auto waited = std::accumulate(clock.sleeps.begin(), clock.sleeps.end(), std::chrono::nanoseconds{0});
    EXPECT_EQ(waited, std::chrono::seconds(300));
    EXPECT_EQ(clock.sleeps.front(), std::chrono::milliseconds(1));
    const std::string name = std::to_string(getpid()) + "_COMMON_TEST_HELD";
    EXPECT_TRUE(semaphoreExists(name.c_str()));
}

} // namespace
