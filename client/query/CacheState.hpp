#pragma once

#include "common/Seams.hpp"

#include <atomic>
#include <ctime>
#include <pthread.h>

/// What the three threads share about the query cache and its refresh. The mutex and the condition are POSIX ones
/// because they have no destructor: the detached threads may still wait on them while the process ends.

namespace client::query {

/// Seconds that the refresher waits when there is traffic.
inline constexpr int shortestSleepSeconds = 3;

} // namespace client::query

/// 0 during start-up, 1 from the moment the AgentX loop is entered: only then do queries join the refresh set.
inline std::atomic<int> start_cache_list{0};
/// The refresher's present wait in seconds.
inline std::atomic<int> sleep_interval{client::query::shortestSleepSeconds};
/// Time of the latest query, in whole seconds of the clock that nobody sets back.
inline std::atomic<std::time_t> last_req_time{0};
/// End of the latest complete refresh pass, likewise; 0 before the first.
inline std::atomic<std::time_t> last_cache_ref_time{0};

/// Held by the refresher from before its wait until after a refresh. Never taken while ql_initialized_flag_mtx is held.
inline pthread_mutex_t snmp_mtx = PTHREAD_MUTEX_INITIALIZER;
/// Wakes the refresher.
inline pthread_cond_t cache_refresh_condt = PTHREAD_COND_INITIALIZER;

namespace client::query {

/// Now, as the two times above count.
inline std::time_t steadySeconds()
{
    const auto sinceStart = current<Clock>().steady().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(sinceStart).count();
}

/// Holds a POSIX mutex for a scope; let go of on every way out, also when the thread is cancelled.
class PosixLock {
public:
    explicit PosixLock(pthread_mutex_t& mutex) : held(mutex) { pthread_mutex_lock(&held); }
    ~PosixLock() { pthread_mutex_unlock(&held); }
    PosixLock(const PosixLock&) = delete;
    PosixLock& operator=(const PosixLock&) = delete;

private:
    pthread_mutex_t& held;
};

} // namespace client::query
