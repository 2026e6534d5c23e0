#include "client/events/SelFollower.hpp"

#include "client/door/Functions.hpp"
#include "client/events/Classifiers.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/QLInterface.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/ErrorName.hpp"
#include "common/Facts.hpp"
#include "common/Report.hpp"
#include "common/ResultStatus.hpp"
#include "common/Stopwatch.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SelView.hpp"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace client::events {

namespace {

using namespace std::chrono_literals;

constexpr char nextField[] = "/NEXT_SEL_RECORD_ID";
constexpr char eraseTime[] = "/BMC/SEL/INFO/RECENT_ERASE_TIME_RAW";
constexpr char troubleKey[] = "event log";

constexpr char repository[] = "/BMC/SDR";
/// Turns: some minutes.
constexpr int patienceForSensors = 20;

/// So long a turn may last: the thread reads the sensors too.
constexpr auto turnBudget = 5s;
/// Records asked for at a time, and where more than a few would take long.
constexpr int mostAtATime = 32, fewAtATime = 4;
constexpr auto longForAPage = 200ms;

/// After so many turns in trouble, so many ids behind the record that does not read are tried.
constexpr int patienceInTurns = 3;
constexpr unsigned idsTried = 8;

bool isRefusal(const ResultStatus& failure)
{
    return std::ranges::any_of(failure, [](const RStatus& entry) { return entry.mErrorCode == ERROR_INVALID_DATAVAL; });
}

std::string hexId(const std::string& record)
{
    char text[8];
    std::snprintf(text, sizeof text, "%04X", idOf(record) & 0xFFFFU);
    return text;
}

unsigned hexadecimal(const std::string& text)
{
    return static_cast<unsigned>(std::stoul(text, nullptr, 16));
}

bool isEnd(unsigned next)
{
    return next == ipmi::lastSelId || next == ipmi::firstSelId;
}

} // namespace

/// Part of the log: the records with their fields, and the id behind the last.
struct SelFollower::Page {
    ResultMap answer;
    std::vector<std::string> keys;
    LogPage log;
    unsigned next = ipmi::lastSelId;
};

SelFollower::Page SelFollower::readPage(unsigned first, int most)
{
    Page page;
    try {
        page.answer = readLog(first, most);
    } catch (const ResultStatus& failure) {
        if (!isRefusal(failure))
            throw;
        return page;
    }
    const auto list = page.answer.find(translatedLog);
    if (list == page.answer.end())
        throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "no answer", translatedLog, COMMAND_GET);
    page.keys = list->second.mXNodeList;
    for (const std::string& key : page.keys)
        page.log.records.push_back(page.answer.at(key + rawField).mXNodeList.at(0));
    if (!page.keys.empty())
        page.next = hexadecimal(page.answer.at(page.keys.back() + nextField).mXNodeList.at(0));
    page.log.endsLog = isEnd(page.next);
    return page;
}

int SelFollower::turn()
{
    if (!isInitComplete())
        return 0;
    try {
        if (!hasBegun)
            begin();
        if (!mayTell())
            return 0;
        if (readOn())
            return 1;
    } catch (const ResultStatus&) {
        noteTrouble();
        throw;
    }
    if (!sensorsToCome && std::exchange(tellsOld, false))
        door::tellingOldEvents(false);
    return 0;
}

/// An event without its sensor's record is none, and would be lost. So it waits for the records, but not for good:
/// there are controllers that have none.
bool SelFollower::mayTell()
{
    if (sensorsToCome)
        return true;
    const auto answer = query::tryQuery(repository, "\nNo sensor data records for events\n");
    const auto list = answer ? answer->find(repository) : ResultMap::const_iterator();
    if (answer && list != answer->end() && !list->second.mXNodeList.empty())
        turnsWithoutSensors = 0;
    else
        ++turnsWithoutSensors;
    return turnsWithoutSensors == 0 || turnsWithoutSensors > patienceForSensors;
}

/// While the records are still being read each event waits for that of its own sensor, and those behind it with it.
/// What software told of has none.
bool SelFollower::mustWait(const std::string& record) const
{
    if (!sensorsToCome)
        return false;
    const ipmi::Bytes bytes = ipmi::parseBytes(record);
    const ipmi::SelView event(bytes);
    return event.isSystemEvent() && !event.isFromSoftware() && !hasRecordOfSensor(bytes);
}

/// By the controller's clock; one that does not tell has erased nothing as far as we know.
std::string SelFollower::lastErasure() const
{
    try {
        ResultMap answer;
        CallQLGetMapInterface({{eraseTime, {}}}, answer);
        return answer.at(eraseTime).mXNodeList.at(0);
    } catch (const ResultStatus&) {
        return trail.erased;
    }
}

/// The log's last record and, where ids are dense, some before it: one of them may be deleted next.
std::vector<std::string> SelFollower::newestRecords()
{
    constexpr unsigned wanted = 8;
    std::vector<std::string> last = readPage(ipmi::lastSelId, 1).log.records;
    if (last.empty() || idOf(last.front()) < 2)
        return last;
    const unsigned id = idOf(last.front());
    Page page = readPage(id > wanted ? id - wanted + 1 : 1, wanted);
    return page.log.endsLog && !page.log.records.empty() ? std::move(page.log.records) : last;
}

void SelFollower::begin()
{
    if (const std::optional<SelTrail> kept = mark.load()) {
        trail = *kept;
        tellsOld = true;
        door::tellingOldEvents(true);
    } else {
        for (const std::string& record : newestRecords())
            trail.add(record);
        trail.erased = lastErasure();
    }
    mark.begin(trail);
    const std::string* const last = trail.back(0);
    const std::string place = last ? "behind record " + hexId(*last) : "at the log's beginning";
    common::noteFact(common::eventFact, place);
    common::report(common::Gravity::notice, "the event log is followed from " + place);
    hasBegun = true;
}

/// Whether there is more.
bool SelFollower::readOn()
{
    const common::Stopwatch turn;
    int most = fewAtATime;
    while (turn.elapsed() < turnBudget) {
        const common::Stopwatch page;
        const Step done = step(most);
        if (done == Step::stuck)
            noteTrouble();
        else
            turnsInTrouble = 0;
        if (done != Step::goOn)
            return false;
        most = page.elapsed() < longForAPage ? mostAtATime : fewAtATime;
    }
    common::reportEnded(troubleKey);
    return true;
}

SelFollower::Step SelFollower::step(int most)
{
    if (isEmpty)
        return lookIntoEmptyLog();
    const std::string* const anchor = trail.back(back);
    const bool wasErased = anchor && !isUnique(*anchor) && lastErasure() != trail.erased;
    // what stands behind an older record of the trail may be the younger ones, and no news
    const int behindTrail = static_cast<int>(back) + 2;
    const Page page = readPage(anchor ? idOf(*anchor) : ipmi::firstSelId, std::max(most, behindTrail));
    const News news = whatIsNew(trail, back, page.log, wasErased);
    if (news.place == News::furtherBack) {
        ++back;
        return Step::goOn;
    }
    if (news.place == News::emptyLog) {
        isEmpty = true;
        return Step::atEnd;
    }
    if (!anchor)
        trail.clear();
    return takeFresh(page, news.fresh);
}

/// A controller that has just been started may say that its log is empty before it has found it again. So the trail
/// stays, and shows then whether this is the old log.
SelFollower::Step SelFollower::lookIntoEmptyLog()
{
    isEmpty = readPage(ipmi::firstSelId, 1).log.records.empty();
    back = 0;
    return isEmpty ? Step::atEnd : Step::goOn;
}

SelFollower::Step SelFollower::takeFresh(const Page& page, const std::vector<std::size_t>& fresh)
{
    const auto mayComeAgain = [&](std::size_t place) { return !isUnique(page.log.records[place]); };
    if (std::ranges::any_of(fresh, mayComeAgain))
        trail.erased = lastErasure();
    for (const std::size_t place : fresh) {
        if (mustWait(page.log.records[place]))
            return Step::atEnd;
        take(page, place);
    }
    if (page.log.endsLog)
        return Step::atEnd;
    return fresh.empty() ? Step::stuck : Step::goOn;
}

void SelFollower::take(const Page& page, std::size_t place)
{
    const std::string& record = page.log.records[place];
    traps::beginRecord(++number, idOf(record));
    handleRecord(page.answer, page.answer.at(page.keys[place]));
    common::noteFact(common::eventFact, "record " + hexId(record) + ": " + t_SelData.sEventDiscription);
    trail.add(record);
    back = 0;
    mark.handled(number, record, trail.erased);
}

/// A record that the controller never gives must not hide those behind it.
void SelFollower::noteTrouble()
{
    if (!common::stillStands(common::controllerKey))
        common::reportLimited(common::Gravity::warning, troubleKey, "the event log of the BMC cannot be read");
    if (++turnsInTrouble % patienceInTurns == 0 && hasBegun)
        passOverUnreadable();
}

void SelFollower::passOverUnreadable()
{
    const std::string* const anchor = trail.back(back);
    unsigned next = ipmi::firstSelId + 1;
    try {
        if (anchor)
            next = readPage(idOf(*anchor), 1).next;
    } catch (const ResultStatus&) {
        return;
    }
    for (unsigned id = next; id < next + idsTried && !isEnd(id); ++id)
        if (takeUnknown(id))
            return;
}

bool SelFollower::takeUnknown(unsigned id)
{
    try {
        const Page page = readPage(id, 1);
        if (page.log.records.empty() || trail.holds(page.log.records.front()))
            return false;
        takeFresh(page, {0});
        common::report(common::Gravity::warning,
                       "records of the event log before number " + std::to_string(id) + " do not read: passed over");
        return true;
    } catch (const ResultStatus&) {
        return false;
    }
}

SelFollower& logFollower()
{
    static SelFollower& follower = *std::make_unique<SelFollower>().release();
    return follower;
}

} // namespace client::events
