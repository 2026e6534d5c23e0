#include "client/query/CacheRefresher.hpp"

#include "client/query/CacheState.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "common/ResultStatus.hpp"
#include "common/Waits.hpp"

#include <cerrno>
#include <cxxabi.h>
#include <limits>
#include <vector>

using namespace client::query;
using namespace client::words;

namespace {

/// Requests this many seconds old at most have been answered from a cache that is fresh enough.
constexpr std::time_t oldestRecentSeconds = 10;

/// The queries to refresh, or nothing when another pass is under way. Marks the pass as begun.
bool beginPass(std::vector<std::string>& queries)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    if (in_refresh == 1)
        return false;
    in_refresh = 1;
    for (const auto& [query, unused] : refresh_map)
        queries.push_back(query);
    return true;
}

void endPass(CacheMap& answers)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    for (auto& [query, answer] : answers)
        cache_map[query] = std::move(answer);
    last_cache_ref_time = steadySeconds();
    in_refresh = 0;
}

void refreshSafely()
{
    try {
        refresh_cache();
    } catch (const ResultStatus& failure) {
        trace("\nRefresh of the cache failed\n");
        traceFailure(failure);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        trace("\nRefresh of the cache failed\n");
    }
}

/// With snmp_mtx held, as on return; also when the thread is cancelled.
int waitForSignal(const timespec& deadline)
{
    const common::Cancellable wait;
    return pthread_cond_clockwait(&cache_refresh_condt, &snmp_mtx, CLOCK_MONOTONIC, &deadline);
}

} // namespace

int refresh_cache()
{
    std::vector<std::string> queries;
    if (!beginPass(queries))
        return 0;
    CacheMap answers;
    for (const std::string& query : queries) {
        trace("Async Refresh <=====>\n:");
        current<QueryBackend>().get(query, answers[query]);
    }
    endPass(answers);
    return 0;
}

namespace client::query {

timespec refreshDeadline(Clock::SteadyPoint now)
{
    const auto sinceStart = now.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceStart);
    timespec deadline{};
    deadline.tv_sec = static_cast<std::time_t>(seconds.count()) + sleep_interval;
    deadline.tv_nsec = static_cast<long>(std::chrono::nanoseconds(sinceStart - seconds).count());
    return deadline;
}

bool refreshIsDue(int waitResult)
{
    if (waitResult == ETIMEDOUT) {
        const int waited = sleep_interval;
        if (waited <= std::numeric_limits<int>::max() / 2)
            sleep_interval = waited * 2;
        return true;
    }
    sleep_interval = shortestSleepSeconds;
    const std::time_t age = steadySeconds() - last_req_time;
    return age < 1 || age > oldestRecentSeconds;
}

void check_sensors_cache_turn()
{
    const timespec deadline = refreshDeadline(current<Clock>().steady());
    const PosixLock lock(snmp_mtx);
    if (refreshIsDue(waitForSignal(deadline)))
        refreshSafely();
}

} // namespace client::query
