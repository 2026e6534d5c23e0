#pragma once

#include "client/query/QueryBackend.hpp"
#include "client/words/Trace.hpp"

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>

/// The agent's one door to the SDK: every query of groups and events, with a result cache in front. A miss makes the
/// calling thread wait for the controller, and a hit on an old cache for the refresh that is under way; where the
/// policy answers from what was published, neither waits.

namespace client::query {

using CacheMap = std::map<std::string, ResultMap>;

} // namespace client::query

/// Query text to answer. Entries are added and overwritten, never removed. Not destroyed at exit, since detached
/// threads may still ask.
extern client::query::CacheMap& cache_map;
/// The queries to refresh: only the keys matter.
extern client::query::CacheMap& refresh_map;
/// 1 while a refresh pass runs, and for good after one that failed.
extern int in_refresh;
/// Guards cache_map, refresh_map and in_refresh.
extern std::mutex ql_initialized_flag_mtx;
/// Set by the first InitQL.
extern std::atomic<bool> bQLInitialized;

/// Once per process: the SDK's start-up word, and clocks of request and refresh at zero.
void InitQL();

/// Answers `query` from the cache, or asks the SDK and keeps the answer. Throws what the SDK throws, and keeps nothing
/// then; a failure of another kind leaves `result` empty. Throws 1105 where the policy answers from what was published
/// and there is nothing yet, on all threads but the one that reads (Publication.hpp).
void CallQLInterface(const std::string& query, ResultMap& result);

/// Queries with parameters; past the cache, one at a time in the process. Throws ResultStatus, 1001 when the lock was
/// not got.
void CallQLGetMapInterface(SDK::QueryMap queries, ResultMap& result);

namespace client::query {

/// How the entries of a failure are traced, behind the complaint.
using TraceEntries = void (*)(const ResultStatus& failure);

/// The border where a thrown failure becomes "no answer": nothing after a failure, of which `complaint` and, by
/// `traceEntries` if there is one, its entries are traced.
std::optional<ResultMap> tryQuery(const std::string& path, const std::string& complaint,
                                  TraceEntries traceEntries = words::traceFailure);
/// Likewise for queries with parameters.
std::optional<ResultMap> tryMapQuery(const SDK::QueryMap& queries, const std::string& complaint);

} // namespace client::query
