#include "client/query/CacheRefresher.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cerrno>

namespace {

using namespace std::chrono_literals;

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
