#include "client/reader/Reader.hpp"

#include "client/door/Filling.hpp"
#include "client/door/Standing.hpp"
#include "client/events/SelFollower.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/Publication.hpp"
#include "common/Facts.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Waits.hpp"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace client::reader {

namespace {

using namespace std::chrono_literals;
using door::Sources;
using query::PassEnd;
using query::Progress;

constexpr auto pollPeriod = 10s;
constexpr auto pauseOfSilence = 1s; ///< before a silent controller is tried again
constexpr auto longestPiece = 16s;
constexpr auto longestFillPause = 60s;
constexpr auto longestRest = 60s;
constexpr auto repositoryPeriod = 30s;
constexpr auto longestNap = 1s; ///< what is looked up for the first time is read soon

/// "temperatureProbe 7, ..." of the groups that have some.
std::string listOfRows()
{
    std::string list;
    for (const door::GroupStanding& group : door::standingOfGroups())
        if (group.rows > 0)
            list += (list.empty() ? "" : ", ") + group.name + " " + std::to_string(group.rows);
    return list;
}

auto now()
{
    return current<Clock>().steady();
}

std::string secondsOf(std::chrono::nanoseconds length)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", std::chrono::duration<double>(length).count());
    return text;
}

} // namespace

void Reader::turn()
{
    const query::ReadingScope reads;
    fillWhenDue();
    pollWhenDue();
    readWhenDue();
    tellTransport();
    nap();
}

void Reader::tellTransport()
{
    for (const common::Fact& fact : common::facts())
        if (fact.name == common::transportFact && fact.text != toldTransport) {
            toldTransport = fact.text;
            common::report(common::Gravity::notice, "the way to the BMC: " + fact.text);
        }
}

void Reader::fillWhenDue()
{
    if (!firmwareRead)
        firmwareRead = door::fillGroups(Sources::firmware);
    followRepository();
    if (!repositoryRead && now() >= nextFill)
        fillFromRepository();
}

/// Rows come with each piece; rows that replace others, at the end.
void Reader::fillFromRepository()
{
    const bool isRest = repositoryGoesOn && !readsAnew;
    const Moment began = now();
    const Progress progress = query::readRepository(piece);
    if (progress == Progress::failed && repositoryGoesOn) {
        nextFill = now() + pauseOfSilence;
        return;
    }
    repositoryGoesOn = progress == Progress::more;
    events::logFollower().waitForSensors(repositoryGoesOn && !readsAnew);
    const bool fills = !repositoryGoesOn || !readsAnew;
    if (fills && !door::fillGroups(isRest ? Sources::rest : Sources::repository))
        return haveNoRecords();
    repositoryRead = !repositoryGoesOn;
    common::noteFact(common::recordsFact, repositoryRead ? "read" : "read in part so far");
    if (repositoryRead)
        common::report(common::Gravity::notice, "rows: " + listOfRows());
    readsAnew = readsAnew && repositoryGoesOn;
    // meanwhile the sensors that are known are read
    nextFill = now() + (now() - began) / 2;
    piece = repositoryGoesOn ? std::min<Duration>(2 * piece, longestPiece) : shortestPiece;
}

void Reader::haveNoRecords()
{
    common::noteFact(common::recordsFact, "none so far");
    if (!common::stillStands(common::controllerKey))
        common::reportLimited(common::Gravity::warning, "repository", "the BMC gives no sensor data records so far");
    if (!std::exchange(machineRead, true))
        door::fillGroups(Sources::machine);
    nextFill = now() + fillPause;
    fillPause = std::min<Duration>(2 * fillPause, longestFillPause);
}

/// Whatever it told of by then is read anew.
void Reader::followRepository()
{
    if (!repositoryRead || now() < nextRepositoryLook)
        return;
    nextRepositoryLook = now() + repositoryPeriod;
    if (!query::repositoryChanged())
        return;
    common::report(common::Gravity::notice, "the BMC's sensor data records have changed: read anew");
    repositoryRead = inventoryRead = false;
    readsAnew = true;
    nextFill = now();
}

/// What the log tells of is read soon, so that rows do not contradict it for long.
void Reader::pollWhenDue()
{
    if (now() < nextPoll)
        return;
    const std::string last = sLastSelEntry;
    const bool moreWaits = CheckForNewSELEntry() != 0;
    nextPoll = moreWaits ? now() : now() + pollPeriod;
    eventsCame = eventsCame || sLastSelEntry != last;
}

/// Between two queries.
bool Reader::goOn()
{
    common::cancelHere();
    pollWhenDue();
    return !repositoryGoesOn || now() < nextFill;
}

void Reader::readWhenDue()
{
    if (now() < nextPass)
        return;
    if (!std::exchange(passGoesOn, false))
        passBegan = now();
    query::takeNewlyWanted();
    const PassEnd end = query::readWanted([this] { return goOn(); });
    passGoesOn = end == PassEnd::interrupted;
    if (passGoesOn)
        return;
    if (end == PassEnd::silent || !readFiguresFor(now() - passBegan)) {
        door::noteAllRead(false);
        nextPass = now() + pauseOfSilence;
        return;
    }
    endPass();
    if (repositoryRead && !inventoryRead)
        inventoryRead = door::fillGroups(Sources::inventory);
}

/// The bounds that are missing get as long as the readings took, so that those do not grow old meanwhile.
bool Reader::readFiguresFor(Duration readings)
{
    const Moment deadline = now() + std::max<Duration>(readings, common::policy().refreshPeriod);
    bool isCut = false;
    const bool answered = door::readUnreadFigures([&] {
        isCut = isCut || !goOn() || now() >= deadline;
        return !isCut;
    });
    if (answered && !isCut && repositoryRead)
        door::noteAllRead(true);
    return answered;
}

/// A slow controller rests, too, unless there is more of its repository to read.
void Reader::endPass()
{
    const Duration length = now() - passBegan;
    const Duration usualRest =
        std::max<Duration>(common::policy().refreshPeriod - length, std::min<Duration>(length / 4, longestRest));
    const Duration rest = repositoryGoesOn ? piece : usualRest;
    query::setRefreshPeriod(length + rest);
    common::noteFact(common::refreshFact, "in " + secondsOf(length) + ", again in " + secondsOf(rest));
    nextPass = now() + rest;
}

void Reader::nap()
{
    if (query::takeNewlyWanted() || std::exchange(eventsCame, false))
        nextPass = now();
    else if (const Duration left = std::min(nextPoll, nextPass) - now(); left > 0ns) {
        common::waitInterruptibly(std::min<Duration>(left, longestNap));
        nextFill = repositoryGoesOn ? std::min(nextFill, now()) : nextFill;
    }
}

} // namespace client::reader
