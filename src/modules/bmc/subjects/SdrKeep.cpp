#include "common/Logger.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "modules/bmc/subjects/Sdr.hpp"
#include "modules/bmc/subjects/SdrState.hpp"

#include <chrono>
#include <mutex>

// When the repository is read, and what is kept of it.

namespace Module::BMCConfig {

namespace {

using namespace std::chrono_literals;

/// Records that may come while the repository is read.
constexpr std::size_t spareRecords = 64;
constexpr std::size_t anyNumber = 0x10000;
constexpr auto pauseAfterFailure = 10s, pauseBeforeRest = 30s;

/// The reservation, and the symbols that say what to read, serve one reading at a time.
std::mutex reading;

/// Without a count that can be right the record ids end the walk.
std::size_t mostRecords(const std::optional<SdrState>& state)
{
    const bool isCounted = common::policy().limitsSdrRepeats && state && state->count > 0;
    return isCounted ? state->count + spareRecords : anyNumber;
}

} // namespace

std::shared_ptr<const SdrRepository> Sdr::fill()
{
    auto repository = SdrRepository::current(exec);
    if (repository && !isToBeReadAnew(true))
        return repository;
    const std::lock_guard hold(reading);
    repository = SdrRepository::current(exec); // another thread may have read it meanwhile
    if (!isToBeReadAnew(repository != nullptr))
        return repository;
    readAnew(repository != nullptr);
    return SdrRepository::current(exec);
}

bool Sdr::isToBeReadAnew(bool hasOne) const
{
    if (hasOne)
        return common::policy().followsRepository && Cache::instance().Get(sdrAnewKey, exec).size() > 0;
    const std::string due =
        common::policy().remembersUnreadRepository ? Cache::instance().Get(sdrRetryKey, exec).text() : "";
    return due.empty() || hasCome(due);
}

void Sdr::readAnew(bool hasOne)
{
    setCache(sdrAnewKey, Symbol(), true);
    setCache(sdrRetryKey, Symbol(), true);
    try {
        SymbolMap local;
        readOrLoad(sdrListKey, local);
        if (local[sdrListKey].size() == 0)
            leaveAlone(pauseAfterFailure);
    } catch (const ResultStatus&) {
        leaveAlone(pauseAfterFailure);
        if (!hasOne)
            throw;
    }
}

void Sdr::readOrLoad(const std::string& query, SymbolMap& result)
{
    const common::Policy& policy = common::policy();
    if (exec != BMC_EXEC_LOCAL || !(policy.keepsRepositoryOnDisk || policy.followsRepository))
        return read_with_lock(query, result);
    const std::optional<SdrState> state = readSdrState();
    const std::string mark = state ? state->mark : std::string();
    const std::string identity =
        policy.keepsRepositoryOnDisk && !mark.empty() ? readControllerIdentity() : std::string();
    Reading got;
    const std::optional<SdrTexts> copy = identity.empty() ? std::nullopt : loadRepository(identity, mark);
    if (copy)
        got.records = *copy;
    else
        got = walk(mostRecords(state));
    keep(got, query, result, true);
    setCache(sdrMarkKey, Symbol(mark), true);
    if (!copy && got.isWhole && !got.records.empty() && !identity.empty())
        saveRepository(identity, mark, got.records);
}

void Sdr::keep(const Reading& got, const std::string& query, SymbolMap& result, bool lock)
{
    if (got.isWhole)
        return keepRecords(got.records, query, result, lock);
    // Otherwise nothing goes to the cache, and the next query reads anew.
    result[query] = Symbol(NODE_NONLEAF, {});
    if (!common::policy().keepsPartialRepository || got.records.empty())
        return;
    keepRecords(got.records, query, result, lock);
    leaveAlone(pauseBeforeRest);
}

void Sdr::keepRecords(const SdrTexts& records, const std::string& query, SymbolMap& result, bool lock)
{
    std::vector<std::string> names;
    for (const std::string& record : records) {
        names.push_back(sdrPath(names.size() + 1));
        setCache("GET:/" + names.back(), Symbol(record), lock);
    }
    const Symbol list(NODE_NONLEAF, std::move(names));
    const Symbol count(std::to_string(list.size()));
    setCache(sdrStampKey, Symbol(), lock);
    setCache(sdrCountKey, count, lock);
    setCache(query, list, lock); // last: whoever finds the list may rely on all else
    result[sdrCountKey] = count;
    result[query] = list;
}

void Sdr::leaveAlone(std::chrono::nanoseconds duration)
{
    const std::chrono::nanoseconds until = current<Clock>().steady().time_since_epoch() + duration;
    setCache(sdrRetryKey, Symbol(std::to_string(until.count())), true);
}

void Sdr::setCache(const std::string& key, const Symbol& value, bool lock)
{
    HW_LOG(LOGGER::Category::Third, "Calling cHSet from %s @%d", __func__, __LINE__);
    Cache::instance().Set(key, value, exec, lock);
}

} // namespace Module::BMCConfig
