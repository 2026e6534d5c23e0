#include "client/query/HWAGENTLock.hpp"
#include "client/status/StateWords.hpp"
#include "common/Policy.hpp"
#include "tests/client/ClientFixture.hpp"

#include <fcntl.h>
#include <semaphore.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

class QueryClient : public ClientFixture {
protected:
    QueryClient() { sdk.answer("/A", "1"); }

    std::string ask(const std::string& query)
    {
        ResultMap result;
        CallQLInterface(query, result);
        return result.empty() ? "" : result.begin()->second.mXNodeList.front();
    }

    /// Whether a hit at this moment signals the refresher: a listener holds snmp_mtx until it waits.
    bool hitSignals()
    {
        pthread_mutex_lock(&snmp_mtx);
        std::thread asker([this] { ask("/A"); });
        timespec deadline{};
        clock_gettime(CLOCK_REALTIME, &deadline);
        deadline.tv_nsec += 200'000'000;
        deadline.tv_sec += deadline.tv_nsec / 1'000'000'000;
        deadline.tv_nsec %= 1'000'000'000;
        const int waited = pthread_cond_timedwait(&cache_refresh_condt, &snmp_mtx, &deadline);
        pthread_mutex_unlock(&snmp_mtx);
        asker.join();
        return waited == 0;
    }
};

TEST_F(QueryClient, SecondQueryIsAnsweredFromTheCache)
{
    EXPECT_EQ(ask("/A"), "1");
    sdk.answer("/A", "2");
    EXPECT_EQ(ask("/A"), "1");
    EXPECT_EQ(sdk.timesAsked("/A"), 1);
    EXPECT_EQ(sdk.flagsSet, std::vector<int>{33});
}

TEST_F(QueryClient, FailingQueryIsNotKeptAndIsAskedAgain)
{
    ResultMap result{{"/old", {}}};
    EXPECT_THROW(CallQLInterface("/none", result), ResultStatus);
    EXPECT_TRUE(result.empty());
    EXPECT_THROW(CallQLInterface("/none", result), ResultStatus);
    EXPECT_EQ(sdk.timesAsked("/none"), 2);
    EXPECT_TRUE(cache_map.empty());
}

TEST_F(QueryClient, OtherExceptionsAreSwallowedWithAnEmptyResult)
{
    sdk.onGet = [](const std::string&) { throw std::bad_alloc(); };
    EXPECT_EQ(ask("/A"), "");
    EXPECT_TRUE(cache_map.empty());
}

TEST_F(QueryClient, OnlyQueriesOfTheLoopJoinTheRefreshSet)
{
    ask("/A");
    EXPECT_TRUE(refresh_map.empty());
    start_cache_list = 1;
    ask("/A");
    EXPECT_THROW(ask("/none"), ResultStatus);
    EXPECT_EQ(refresh_map.size(), 2U);
    EXPECT_TRUE(refresh_map.at("/A").empty());
}

TEST_F(QueryClient, HitSignalsWhenTheCacheIsOldOrTheRefresherFarBack)
{
    const int now = static_cast<int>(steadySeconds());
    ask("/A");
    for (const auto& [cacheAge, interval, signals, intervalAfter] :
         {std::tuple{11, 6, false, 3}, {12, 6, true, 6}, {0, 11, false, 3}, {0, 12, true, 12}, {now, 3, true, 3}}) {
        last_cache_ref_time = now - cacheAge;
        sleep_interval = interval;
        EXPECT_EQ(hitSignals(), signals) << cacheAge << " " << interval;
        EXPECT_EQ(sleep_interval, intervalAfter);
    }
    EXPECT_EQ(last_req_time, now);
}

TEST_F(QueryClient, MapQueryPassesTheCacheAndHoldsItsLockOnlyMeanwhile)
{
    const std::string name = "/HWAGENT_GLOBAL_LOCK_QL_" + std::to_string(getpid());
    bool held = false;
    sdk.onGet = [&](const std::string&) {
        sem_t* const lock = sem_open(name.c_str(), 0);
        held = lock != SEM_FAILED;
        if (held)
            sem_close(lock);
    };
    ResultMap result;
    CallQLGetMapInterface({{"/A", {{"RANGE", "1"}}}}, result);
    EXPECT_TRUE(held);
    EXPECT_EQ(result.size(), 1U);
    EXPECT_TRUE(cache_map.empty());
    EXPECT_THROW(CallQLGetMapInterface({{"/none", {}}}, result), ResultStatus);
    EXPECT_EQ(sem_open(name.c_str(), 0), SEM_FAILED);
}

/// A clock that lets go of a lock at the third sleep.
struct ReleasingClock : FakeClock {
    void sleepFor(std::chrono::nanoseconds duration) override
    {
        FakeClock::sleepFor(duration);
        if (sleeps.size() == 3)
            lock->_Unlock();
    }
    HWAGENTLock* lock = nullptr;
};

TEST_F(QueryClient, MapQueryWaitsForTheLockOfAnother)
{
    ask("/A");
    HWAGENTLock other("HWAGENT_GLOBAL_LOCK_QL");
    ASSERT_EQ(other.Lock(), 1);
    ReleasingClock releasing;
    releasing.lock = &other;
    const ScopedSeam<Clock> use(releasing);
    ResultMap result;
    CallQLGetMapInterface({{"/A", {}}}, result);
    EXPECT_EQ(result.size(), 1U);
    EXPECT_EQ(releasing.sleeps, std::vector<std::chrono::nanoseconds>(3, 2s + 1ms));
}

TEST_F(QueryClient, LockWithinTheProcessHasNoNameThatAnotherCouldTake)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    const std::string name = "/HWAGENT_GLOBAL_LOCK_QL_" + std::to_string(getpid());
    sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    HWAGENTLock lock("HWAGENT_GLOBAL_LOCK_QL");
    EXPECT_EQ(lock.Lock(), 1);
    lock._Unlock();
    EXPECT_EQ(lock.Lock(), 1);
    EXPECT_TRUE(clock.sleeps.empty());
    EXPECT_EQ(sem_unlink(name.c_str()), 0);
}

TEST_F(QueryClient, LockLeftByADeadProcessOfThisNumberIsRemovedAtTheFirstQuery)
{
    const std::string name = "/HWAGENT_GLOBAL_LOCK_QL_" + std::to_string(getpid());
    sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    ResultMap result;
    CallQLGetMapInterface({{"/A", {}}}, result);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST(StateWords, ListsAreMappedWordByWord)
{
    traceWanted = false;
    const std::string longList(600, 'x');
    const std::pair<std::string, std::string> lists[] = {
        {"IERR, THERMAL_TRIP", "IERR (Internal Error,Thermal Trip"},
        {"12.050000", "12.050000"},
        {",,IERR,", "IERR (Internal Error"},
        {"", ""},
        {",", ","},
        {longList, longList.substr(0, 511)},
    };
    for (const auto& [list, text] : lists) {
        std::string out;
        MapMultipleQLStrToSNMPStr(list.c_str(), &out);
        EXPECT_EQ(out, text);
    }
}

} // namespace
