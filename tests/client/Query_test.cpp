#include "client/query/CacheRefresher.hpp"
#include "client/query/HWAGENTLock.hpp"
#include "common/Policy.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cerrno>
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
        const auto until = (std::chrono::system_clock::now() + 200ms).time_since_epoch();
        const timespec deadline{until / 1s, until % 1s / 1ns};
        const int waited = pthread_cond_timedwait(&cache_refresh_condt, &snmp_mtx, &deadline);
        pthread_mutex_unlock(&snmp_mtx);
        asker.join();
        return waited == 0;
    }

    const std::string name = "/HWAGENT_GLOBAL_LOCK_QL_" + std::to_string(getpid());
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

TEST_F(QueryClient, MapQueryWaitsForTheLockOfAnother)
{
    ask("/A");
    HWAGENTLock other("HWAGENT_GLOBAL_LOCK_QL");
    ASSERT_EQ(other.Lock(), 1);
    clock.onSleep = [&] {
        if (clock.sleeps.size() == 3)
            other._Unlock();
    };
    ResultMap result;
    CallQLGetMapInterface({{"/A", {}}}, result);
    EXPECT_EQ(result.size(), 1U);
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(3, 2s + 1ms));
}

TEST_F(QueryClient, LockWithinTheProcessHasNoNameThatAnotherCouldTake)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
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
    sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    ResultMap result;
    CallQLGetMapInterface({{"/A", {}}}, result);
    EXPECT_TRUE(clock.sleeps.empty());
}

class Refresher : public ClientFixture {
protected:
    Refresher()
    {
        for (const char* const query : {"/A", "/B"}) {
            sdk.answer(query, "new");
            refresh_map[query];
            cache_map[query] = {{query, ScriptedBackend::leaf({"old"})}};
        }
        cache_map["/kept"];
    }

    std::string cached(const std::string& query) { return cache_map.at(query).at(query).mXNodeList.front(); }
};

TEST_F(Refresher, MapsCanBeUsedWhileThePassAsks)
{
    sdk.onGet = [](const std::string& query) {
        ASSERT_TRUE(ql_initialized_flag_mtx.try_lock()) << query;
        refresh_map["/joined meanwhile"];
        ql_initialized_flag_mtx.unlock();
    };
    refresh_cache();
    EXPECT_EQ(sdk.asked, (std::vector<std::string>{"/A", "/B"}));
}

TEST_F(Refresher, FailingQueryPassesUpAndBlocksLaterPasses)
{
    sdk.answers.erase("/B");
    EXPECT_THROW(refresh_cache(), ResultStatus);
    EXPECT_EQ(in_refresh, 1);
    EXPECT_EQ(cached("/A"), "old");
    sdk.asked.clear();
    EXPECT_EQ(refresh_cache(), 0);
    EXPECT_TRUE(sdk.asked.empty());
}

TEST_F(Refresher, TimeOutDoublesTheWaitAndRefreshes)
{
    EXPECT_TRUE(refreshIsDue(ETIMEDOUT));
    EXPECT_EQ(sleep_interval, 6);
    sleep_interval = 1 << 30;
    EXPECT_TRUE(refreshIsDue(ETIMEDOUT));
    EXPECT_EQ(sleep_interval, 1 << 30);
}

TEST_F(Refresher, SignalRefreshesUnlessTheLatestRequestIsOneToTenSecondsOld)
{
    for (const auto& [age, due] : {std::pair{-1, true}, {0, true}, {1, false}, {10, false}, {11, true}}) {
        sleep_interval = 48;
        last_req_time = steadySeconds() - age;
        clock.time -= 1h; // the time of day has no say
        EXPECT_EQ(refreshIsDue(0), due) << age;
        EXPECT_EQ(sleep_interval, 3);
    }
}

TEST_F(Refresher, TurnSurvivesAFailingPassAndLetsGoOfTheMutex)
{
    for (const bool known : {true, false}) {
        in_refresh = 0;
        sdk.onGet = [known](const std::string& query) {
            EXPECT_EQ(pthread_mutex_trylock(&snmp_mtx), EBUSY) << "those who wait for fresh answers wait here";
            if (known)
                throw ResultStatus(ERROR_INVALID_QUERY, "", query, COMMAND_GET);
            throw std::bad_alloc();
        };
        sleep_interval = 3;
        clock.steadyTime = {}; // long past: the wait times out at once
        check_sensors_cache_turn();
        EXPECT_EQ(sleep_interval, 6);
        EXPECT_EQ(in_refresh, 1);
        EXPECT_EQ(pthread_mutex_trylock(&snmp_mtx), 0);
        pthread_mutex_unlock(&snmp_mtx);
    }
}

} // namespace
