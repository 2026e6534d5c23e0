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
/// What is read piece by piece, under that mutex. It goes with the cache.
std::optional<SdrWalk> underWay;

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
    try {
        SdrWalk walk = begin();
        if (!walk.hasEnded)
            walkOn(walk);
        finish(walk);
    } catch (const ResultStatus&) {
        leaveAlone(pauseAfterFailure);
        if (!hasOne)
            throw;
    }
}

SdrWalk Sdr::begin()
{
    setCache(sdrAnewKey, Symbol(), true);
    setCache(sdrRetryKey, Symbol(), true);
    const common::Policy& policy = common::policy();
    SdrWalk walk;
    walk.most = anyNumber;
    if (exec != BMC_EXEC_LOCAL || !(policy.keepsRepositoryOnDisk || policy.followsRepository))
        return walk;
    const std::optional<SdrState> state = readSdrState();
    walk.mark = state ? state->mark : std::string();
    walk.most = mostRecords(state);
    if (policy.keepsRepositoryOnDisk && !walk.mark->empty())
        walk.identity = readControllerIdentity();
    if (const auto copy = walk.identity.empty() ? std::nullopt : loadRepository(walk.identity, *walk.mark)) {
        walk.records = *copy;
        walk.isCopy = walk.hasEnded = true;
    }
    return walk;
}

void Sdr::finish(const SdrWalk& walk)
{
    SymbolMap local;
    keep(walk, sdrListKey, local, true);
    if (walk.mark)
        setCache(sdrMarkKey, Symbol(*walk.mark), true);
    if (!walk.isCopy && walk.isWhole && !walk.records.empty() && !walk.identity.empty())
        saveRepository(walk.identity, *walk.mark, walk.records);
    if (local[sdrListKey].size() == 0)
        leaveAlone(pauseAfterFailure);
}

bool Sdr::readPiece(std::chrono::nanoseconds time)
{
    const std::lock_guard hold(reading);
    if (Cache::instance().Get(sdrWalkKey, exec).size() == 0)
        underWay.reset();
    const bool hasOne = SdrRepository::current(exec) != nullptr;
    if (!underWay && !isToBeReadAnew(hasOne))
        return false;
    try {
        readOn(hasOne, current<Clock>().steady() + time);
    } catch (const ResultStatus&) {
        if (!underWay || underWay->records.empty()) {
            underWay.reset();
            leaveAlone(pauseAfterFailure);
        }
        throw;
    }
    if (underWay->hasEnded) {
        finish(*underWay);
        underWay.reset();
    } else if (!underWay->isAside) {
        SymbolMap local;
        keepRecords(underWay->records, sdrListKey, local, true);
    }
    return underWay.has_value();
}

void Sdr::readOn(bool hasOne, Clock::SteadyPoint until)
{
    if (!underWay || !isStillThere(*underWay)) {
        underWay = begin();
        underWay->isInPieces = true;
        underWay->isAside = hasOne;
        setCache(sdrWalkKey, Symbol("1"), true);
    }
    if (!underWay->hasEnded)
        walkOn(*underWay, until);
}

/// Record ids hold as long as the repository does not change.
bool Sdr::isStillThere(const SdrWalk& walk)
{
    const std::optional<SdrState> state = walk.mark ? readSdrState() : std::nullopt;
    return mostRecords(state) == walk.most && (state ? state->mark : std::string()) == walk.mark.value_or("");
}

void Sdr::keep(const SdrWalk& walk, const std::string& query, SymbolMap& result, bool lock)
{
    if (walk.isWhole)
        return keepRecords(walk.records, query, result, lock);
    // Otherwise nothing goes to the cache, and the next query reads anew.
    result[query] = Symbol(NODE_NONLEAF, {});
    if (!common::policy().keepsPartialRepository || walk.records.empty())
        return;
    keepRecords(walk.records, query, result, lock);
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
