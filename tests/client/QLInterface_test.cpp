#include "client/HWAGENTLock.hpp"
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
    struct Case {
        int cacheAge;
        int interval;
        bool signals;
        int intervalAfter;
    };
    const std::time_t now = currentSeconds();
    ask("/A");
    for (const Case& hit : {Case{11, 6, false, 3}, Case{12, 6, true, 6}, Case{0, 11, false, 3}, Case{0, 12, true, 12},
                            Case{static_cast<int>(now), 3, true, 3}}) {
        last_cache_ref_time = now - hit.cacheAge;
        sleep_interval = hit.interval;
        EXPECT_EQ(hitSignals(), hit.signals) << hit.cacheAge << " " << hit.interval;
        EXPECT_EQ(sleep_interval, hit.intervalAfter);
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

TEST_F(QueryClient, LockLeftByADeadProcessOfThisNumberIsRemovedAtTheFirstQuery)
{
    const std::string name = "/HWAGENT_GLOBAL_LOCK_QL_" + std::to_string(getpid());
    sem_close(sem_open(name.c_str(), O_CREAT, 0600, 1U));
    ResultMap result;
    CallQLGetMapInterface({{"/A", {}}}, result);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST(StateWords, WordsWithATextOfTheirOwnAreMapped)
{
    static constexpr std::pair<const char*, const char*> mapped[] = {
        {"FULLY_REDUNDANT", "Full Redundancy"},
        {"I/O_CARD_AREA_INTRUSION", "I//O_CARD_AREA_INTRUSION"},
        {"IERR", "IERR (Internal Error"},
        {"THERMAL_TRIP", "Thermal Trip"},
        {"FRB1/BIST_FAILURE", "FRB1: BIST Failure"},
        {"FRB2/HANG_IN_POST_FAILURE", "FRB2: Hang in POST Failure"},
        {"CPU_DIDNT_START", "FRB3:"},
        {"CONFIGURATION_ERROR", "Configuration Error"},
        {"SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR", "SMBIOS Uncorrectable CPU-Complex Error"},
        {"PROCESSOR_PRESENCE_DETECTED", "Processor Presence Detected"},
        {"PROCESSOR_DISABLED", "Processor Disabled"},
        {"THREMAL_PRESENCE_DETECTED", "Terminator Presence Detected"},
        {"PRESENCE_DETECTED", "power supply's presence has been detected"},
        {"POWER_SUPPLY_FAILURE_DETECTED", "power supply has suffered a failure"},
        {"PREDICTIVE_FAILURE", "predictive failure has been detected for the power supply"},
        {"POWER_SUPPLY_INPUT_LOST", "Power Supply Input (AC/DC) Lost"},
        {"CORRECTABLE_ECC", "correctable ECC"},
        {"UNCORRECTABLE_ECC", "uncorrectable ECC"},
        {"PARITY", "Parity Error"},
        {"MEMORY_SCRUB_FAILED", "memory scrub failed"},
        {"MEMORY_DEVICE_DISABLED", "has been disabled"},
        {"CORRECTABLE_ECC_LOGGING_LIMIT_REACHED", "correctable memory error logging has been disabled"},
        {"DRIVE_FAULT", "Drive Fault"},
        {"REDUNDANCY_LOST", "Redundancy Lost"},
        {"REDUNDANT_DEGRADED", "Redundancy Degraded"},
        {"NON_REDUNDANT_SUFFICIENT_RESOURCES", "Non-Redundancy with Sufficient Resources"},
        {"NON_REDUNDANT_INSUFFICIENT_TO_SUFFICIENT_RESOURCES",
         "State changed from Insufficient Resources to Non-Redundancy with Sufficient Resources"},
        {"NON_REDUNDANT_INSUFFICENT_RESOURCES", "Non-Redundancy with Insufficient Resources"},
        {"REDUNDANCY_DEGRADED_FROM_FULLY_REDUNDANT_UNIT", "State changed from Full Redundancy to Redundancy Degraded"},
        {"REDUNDANCY_DEGRADED_FROM_NON_REDUNDANT_UNIT", "State changed from Redundancy Lost to Redundancy Degraded"},
        {"STATE_DEASSERTED", "State Deasserted"},
        {"STATE_ASSERTED", "State Asserted"},
        {"LIMIT_NOT_EXCEEDED", "performance has been met"},
        {"LIMIT_EXCEEDED", "performance is lagging"},
        {"PERFORMANCE_MET", "performance has been met"},
        {"PERFORMANCE_LAGS", "performance is lagging"},
        {"DEVICE_REMOVED/DEVICE_ABSENT", "Device Removed/Absent"},
        {"DEVICE_REMOVED_ABSENT", "Device Removed/Absent"},
        {"DEVICE_INSERTED/DEVICE_PRESENT", "Device Inserted/Present"},
        {"DEVICE_INSERTED", "Device Inserted/Present"},
        {"DEVICE_INSERTED_PRESENT", "Device Inserted/Present"},
        {"DEVICE_PRESENT", "Device Inserted/Present"},
        {"STATE_UNAVAILABLE", "State Unavailable"},
        {"ALL_DEASSERTED", "All Deasserted"},
    };
    for (const auto& [word, text] : mapped)
        EXPECT_STREQ(MapQLStrToSNMPStr(word), text) << word;
}

TEST(StateWords, OtherWordsComeBackAsTheSamePointer)
{
    for (const char* const word : {"GENERAL_CHASSIS_INTRUSION",
                                   "DRIVE_BAY_INTRUSION",
                                   "PROCESSOR_AREA_INTRUSION",
                                   "LAN_LEASH_LOST",
                                   "UNAUTHORIZED_DOCK",
                                   "FAN_AREA_INTRUSION",
                                   "PROCESSOR_AUTOMATICALLY_THROTTLED",
                                   "POWER_SUPPLY_INPUT_LOST_OUT_OF_RANGE",
                                   "POWER_SUPPLY_INPUT_OUT_OF_RANGE_BUT_PRESENT",
                                   "POWER_OFF_POWER_DOWN",
                                   "POWER_CYCLE",
                                   "240VA_POWER_DOWN",
                                   "INTERLOCK_POWER_DOWN",
                                   "AC_LOST",
                                   "SOFT_POWER_CONTROL_FAILURE",
                                   "POWER_UNIT_FAILURE_DETECTED",
                                   "SPARE",
                                   "DRIVE_PRESENCE",
                                   "HOT_SPARE",
                                   "CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS",
                                   "IN_CRITICAL_ARRAY",
                                   "IN_FAILED_ARRAY",
                                   "REBUILD/REMAP_IN_PROGRESS",
                                   "REBUILD/REMAP_ABORTED_(WAS_NOT_COMPLETED_NORMALLY)",
                                   "POWER_BUTTON_PRESSED",
                                   "SLEEP_BUTTON_PRESSED",
                                   "RESET_BUTTON_PRESSED",
                                   "FRU_LATCH_OPEN",
                                   "FRU_SERVICE_REQUEST_BUTTON_PRESSED",
                                   "ENTITY_PRESENT",
                                   "ENTITY_ABSENT",
                                   "ENTITY_DISABLED",
                                   "LAN_HEARTBEAT_LOST",
                                   "LAN_HEARTBEAT",
                                   "IDLE",
                                   "ACTIVE",
                                   "BUSY",
                                   "PREDICTIVE_FAILURE_DEASSERTED",
                                   "PREDICTIVE_FAILURE_ASSERTED",
                                   "TRANSITION_TO_OK",
                                   "TRANSITION_TO_NON_CRITICAL_FROM_OK",
                                   "TRANSITION_TO_CRITICAL_FROM_LESS_SEVERE",
                                   "TRANSITION_TO_NON_RECOVERABLE_FROM_LESS_SEVERE",
                                   "TRANSITION_TO_NON_CRITICAL_FROM_MORE_SEVERE",
                                   "TRANSITION_TO_CRITICAL_FROM_NON_RECOVERABLE",
                                   "TRANSITION_TO_NON_RECOVERABLE",
                                   "MONITOR",
                                   "INFORMATIONAL",
                                   "DEVICE_DISABLED",
                                   "DEVICE_ENABLED",
                                   "TRANSITION_TO_RUNNING",
                                   "TRANSITION_TO_IN_TEST",
                                   "TRANSITION_TO_POWER_OFF",
                                   "TRANSITION_TO_ON_LINE",
                                   "TRANSITION_TO_OFF_LINE",
                                   "TRANSITION_TO_OFF_DUTY",
                                   "TRANSITION_TO_DEGRADED",
                                   "TRANSITION_TO_POWER_SAVE",
                                   "INSTALL_ERROR",
                                   "D0_POWER_STATE",
                                   "D1_POWER_STATE",
                                   "D2_POWER_STATE",
                                   "D3_POWER_STATE",
                                   "NO_SUCH_WORD"})
        EXPECT_EQ(MapQLStrToSNMPStr(word), word);
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
