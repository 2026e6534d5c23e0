#include "client/query/QLInterface.hpp"

#include "client/query/CacheState.hpp"
#include "client/query/HWAGENTLock.hpp"
#include "client/query/Publication.hpp"
#include "client/words/Trace.hpp"
#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"

#include <cxxabi.h>
#include <memory>

using namespace client::query;
using namespace client::words;

CacheMap& cache_map = *std::make_unique<CacheMap>().release();
CacheMap& refresh_map = *std::make_unique<CacheMap>().release();
int in_refresh = 0;
std::mutex ql_initialized_flag_mtx;
std::atomic<bool> bQLInitialized{false};

namespace {

/// The SDK's locks work between threads (bit 0), and its log is off (bit 5).
constexpr unsigned char startUpFlags = 33;
constexpr char mapQueryLock[] = "HWAGENT_GLOBAL_LOCK_QL";
/// Age of the cache, and wait of the refresher, above which a request wakes the refresher.
constexpr int oldAfterSeconds = 11;

/// Joins the query to the refresh set if it is to be refreshed, and finds its answer. Entries of the cache stay where
/// they are, so the pointer holds; what it points at may only be read under the mutex.
const ResultMap* noteAndFind(const std::string& query)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    if (start_cache_list == 1)
        refresh_map.try_emplace(query);
    const auto entry = cache_map.find(query);
    return entry == cache_map.end() ? nullptr : &entry->second;
}

void tendRefresher(std::time_t now)
{
    if (now - last_cache_ref_time > oldAfterSeconds || sleep_interval > oldAfterSeconds) {
        const PosixLock lock(snmp_mtx);
        pthread_cond_signal(&cache_refresh_condt);
    } else {
        sleep_interval = shortestSleepSeconds;
    }
}

void askAndKeep(const std::string& query, ResultMap& result)
{
    try {
        askController(query, result);
    } catch (const ResultStatus& failure) {
        result.clear();
        trace("\nQuery %s failed.\n", query.c_str());
        traceFailure(failure);
        throw;
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        result.clear();
        trace("\n unknown error in Call QL function\n");
    }
}

/// A thread that must not wait has what was published, or a failure.
void askIfAllowed(const std::string& query, ResultMap& result)
{
    if (lookUp(query, result))
        return;
    if (!mayAsk())
        throw ResultStatus(ERROR_INDEX_DATA_NOT_AVAILABLE, "not read yet", query, COMMAND_GET);
    askAndKeep(query, result);
}

void askMap(SDK::QueryMap& queries, ResultMap& result)
{
    trace("\n After the lock, before the map query\n");
    current<QueryBackend>().get(queries, result);
    trace("\nAfter calling the map query\n");
}

} // namespace

void InitQL()
{
    if (bQLInitialized)
        return;
    static std::mutex once;
    const std::scoped_lock lock(once);
    if (bQLInitialized)
        return;
    last_cache_ref_time = 0;
    last_req_time = 0;
    HWAGENTLock::removeLeftover(mapQueryLock);
    current<QueryBackend>().setFlags(startUpFlags);
    bQLInitialized = true;
}

void CallQLInterface(const std::string& query, ResultMap& result)
{
    InitQL();
    result.clear();
    if (common::policy().answersFromPublished) {
        askIfAllowed(query, result);
        return;
    }
    const std::time_t now = steadySeconds();
    last_req_time = now;
    if (const ResultMap* const kept = noteAndFind(query)) {
        tendRefresher(now);
        const std::scoped_lock lock(ql_initialized_flag_mtx);
        result = *kept;
    } else {
        askAndKeep(query, result);
    }
    trace("Exiting the CallQL function\n");
}

void CallQLGetMapInterface(SDK::QueryMap queries, ResultMap& result)
{
    trace("\n Entering CallQLGetMapInterface::Before Lock\n");
    result.clear();
    InitQL();
    try {
        HWAGENTLock lock(mapQueryLock);
        if (lock.Lock() == 0)
            throw ResultStatus(ERROR_INVALID_QUERY, "Lock couldn't be acquired.", "", COMMAND_GET);
        askMap(queries, result);
    } catch (const ResultStatus& failure) {
        trace("Error in executing map querry\n");
        traceFailure(failure);
        throw;
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        trace(" \n Error in map query\n");
    }
    trace("\n Exiting GetMapquery\n");
}

namespace client::query {

namespace {

template<class Ask>
std::optional<ResultMap> answersOf(Ask ask, const std::string& complaint, TraceEntries traceEntries)
{
    try {
        ResultMap answers;
        ask(answers);
        return answers;
    } catch (const ResultStatus& failure) {
        trace("%s", complaint.c_str());
        if (traceEntries)
            traceEntries(failure);
    }
    return std::nullopt;
}

} // namespace

std::optional<ResultMap> tryQuery(const std::string& path, const std::string& complaint, TraceEntries traceEntries)
{
    return answersOf([&](ResultMap& answers) { CallQLInterface(path, answers); }, complaint, traceEntries);
}

std::optional<ResultMap> tryMapQuery(const SDK::QueryMap& queries, const std::string& complaint)
{
    return answersOf([&](ResultMap& answers) { CallQLGetMapInterface(queries, answers); }, complaint,
                     words::traceFailure);
}

} // namespace client::query
