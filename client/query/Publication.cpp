#include "client/query/Publication.hpp"

#include "client/query/QLInterface.hpp"
#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <atomic>
#include <cxxabi.h>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace client::query {

namespace {

using Moment = Clock::SteadyPoint;
using namespace std::chrono_literals;

constexpr int periodsThatAReadingHolds = 3;
constexpr int failuresOfASilentController = 3;
constexpr int mostWaitedPeriods = 64;

/// What is known of one query, under ql_initialized_flag_mtx.
struct Note {
    const ResultMap* answer = nullptr; ///< in cache_map, whose entries stay where they are
    Moment published{};
    Moment lookedUp{};
    Moment tried{};
    int failures = 0; ///< in a row
    bool wanted = false;
    bool isReading = false;
};

using Notes = std::unordered_map<std::string, Note>;

/// Not destroyed at exit: detached threads may still look something up.
Notes& notes = *std::make_unique<Notes>().release();
/// The pass under way was interrupted.
bool goesOn = false;
/// How long the last pass, or the present one, takes; at least the configured period.
std::chrono::nanoseconds period{0};
Moment passBegan{};
std::atomic<bool> newlyWanted{false};
thread_local int readingScopes = 0;
thread_local unsigned long interfaceFailed = 0;

std::chrono::nanoseconds presentPeriod()
{
    return std::max<std::chrono::nanoseconds>(period, common::policy().refreshPeriod);
}

/// A sensor's reading changes by itself; everything else stands until the repository or the machine changes.
bool isReadingQuery(std::string_view query)
{
    return query.starts_with("/BMC/SENSOR[") &&
           (query.ends_with("/INTERPRET_SENSOR_VALUE") || query.ends_with("/VALUE"));
}

Note& noteOf(const std::string& query)
{
    const auto [entry, isNew] = notes.try_emplace(query);
    if (isNew)
        entry->second.isReading = isReadingQuery(query);
    return entry->second;
}

void noteWanted(const std::string& query, Note& note)
{
    if (note.wanted)
        return;
    note.wanted = newlyWanted = true;
    refresh_map.try_emplace(query);
}

bool holds(const Note& note, Moment now)
{
    if (!note.answer)
        return false;
    const bool expires = note.isReading && common::policy().expiresReadings;
    return !expires || now - note.published <= periodsThatAReadingHolds * presentPeriod();
}

/// Readings in each pass; what stands only until it is known, and less often the more often it failed.
bool isDue(const Note& note, Moment now)
{
    if (!note.wanted)
        return false;
    if (note.isReading)
        return std::max(note.published, note.tried) <= passBegan;
    if (note.failures == 0)
        return !note.answer;
    const int periods = note.failures < 6 ? 1 << note.failures : mostWaitedPeriods;
    return !note.answer && now - note.tried >= periods * presentPeriod();
}

bool isNewReading(const Note& note)
{
    return note.isReading && !note.answer && note.tried == Moment();
}

struct Due {
    Moment lookedUp; ///< for a reading that was never asked, later than all
    std::string query;
};

/// Sensors of new rows first; then the latest looked up, so that what managers ask is the freshest; then in the order
/// of the texts.
std::vector<Due> listDue()
{
    std::vector<Due> due;
    const Moment now = current<Clock>().steady();
    {
        const std::scoped_lock lock(ql_initialized_flag_mtx);
        if (!std::exchange(goesOn, false))
            passBegan = now;
        for (const auto& [query, unused] : refresh_map)
            if (const auto note = notes.find(query); note != notes.end() && isDue(note->second, now))
                due.push_back({isNewReading(note->second) ? Moment::max() : note->second.lookedUp, query});
    }
    std::ranges::stable_sort(due, std::greater(), &Due::lookedUp);
    return due;
}

void noteTried(const std::string& query)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    noteOf(query).tried = current<Clock>().steady();
}

void noteFailure(const std::string& query, const std::string& why)
{
    {
        const std::scoped_lock lock(ql_initialized_flag_mtx);
        Note& note = noteOf(query);
        note.tried = current<Clock>().steady();
        ++note.failures;
    }
    common::reportLimited(common::Gravity::warning, query, "no answer to " + query + ": " + why);
}

std::string reasonOf(const ResultStatus& failure)
{
    const auto first = failure.begin();
    return first == failure.end() ? "no reason" : std::to_string(first->mErrorCode) + ", " + first->mErrorString;
}

bool isOfInterface(const ResultStatus& failure)
{
    return std::ranges::any_of(failure,
                               [](const RStatus& entry) { return entry.mErrorCode == ERROR_BMC_INTERFACE_ERROR; });
}

/// False when the interface to the controller failed.
bool ask(const std::string& query)
{
    try {
        ResultMap answer;
        askController(query, answer);
    } catch (const ResultStatus& failure) {
        if (isOfInterface(failure)) {
            noteTried(query);
            return false;
        }
        noteFailure(query, reasonOf(failure));
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (const std::exception& failure) {
        noteFailure(query, failure.what());
    }
    return true;
}

} // namespace

ReadingScope::ReadingScope()
{
    ++readingScopes;
}

ReadingScope::~ReadingScope()
{
    --readingScopes;
}

LookUpScope::LookUpScope() : before(std::exchange(readingScopes, 0)) {}

LookUpScope::~LookUpScope()
{
    readingScopes = before;
}

bool mayAsk()
{
    return readingScopes > 0;
}

void want(const std::string& query)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    noteWanted(query, noteOf(query));
}

bool lookUp(const std::string& query, ResultMap& result)
{
    const Moment now = current<Clock>().steady();
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    Note& note = noteOf(query);
    if (!mayAsk()) {
        note.lookedUp = now;
        noteWanted(query, note);
    }
    if (!holds(note, now))
        return false;
    result = *note.answer;
    return true;
}

void askController(const std::string& query, ResultMap& result)
{
    try {
        current<QueryBackend>().get(query, result);
    } catch (const ResultStatus& failure) {
        interfaceFailed += isOfInterface(failure);
        throw;
    }
    publish(query, result);
}

void readNow(const std::string& query)
{
    if (mayAsk())
        ask(query);
}

void publish(const std::string& query, const ResultMap& answer)
{
    const Moment now = current<Clock>().steady();
    bool failedBefore = false;
    {
        const std::scoped_lock lock(ql_initialized_flag_mtx);
        ResultMap& kept = cache_map[query];
        kept = answer;
        Note& note = noteOf(query);
        failedBefore = note.failures > 0;
        note.answer = &kept;
        note.published = now;
        note.failures = 0;
        if (passBegan != Moment())
            period = std::max(period, now - passBegan);
    }
    if (failedBefore)
        common::reportEnded(query);
}

void forgetStanding(const std::string& prefix)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    for (auto& [query, note] : notes)
        if (!note.isReading && query.starts_with(prefix)) {
            note.answer = nullptr;
            note.failures = 0;
        }
}

PassEnd readWanted(const std::function<bool()>& goOn)
{
    int silent = 0;
    for (const Due& due : listDue()) {
        if (!goOn()) {
            const std::scoped_lock lock(ql_initialized_flag_mtx);
            goesOn = true;
            return PassEnd::interrupted;
        }
        silent = ask(due.query) ? 0 : silent + 1;
        if (silent == failuresOfASilentController)
            return PassEnd::silent;
    }
    return PassEnd::whole;
}

void setRefreshPeriod(std::chrono::nanoseconds length)
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    passBegan = {};
    period = length;
}

bool takeNewlyWanted()
{
    return newlyWanted.exchange(false);
}

bool repositoryChanged()
try {
    return current<QueryBackend>().repositoryChanged();
} catch (const ResultStatus& failure) {
    interfaceFailed += isOfInterface(failure);
    return false;
}

Progress readRepository(std::chrono::nanoseconds time)
try {
    return current<QueryBackend>().readRepository(time) ? Progress::more : Progress::ended;
} catch (const ResultStatus& failure) {
    interfaceFailed += isOfInterface(failure);
    return Progress::failed;
}

unsigned long interfaceFailures()
{
    return interfaceFailed;
}

std::chrono::nanoseconds refreshPeriod()
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    return presentPeriod();
}

void forgetAll()
{
    const std::scoped_lock lock(ql_initialized_flag_mtx);
    notes.clear();
    cache_map.clear();
    refresh_map.clear();
    period = {};
    passBegan = {};
    goesOn = false;
}

} // namespace client::query
