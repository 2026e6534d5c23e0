#include "client/reader/Reader.hpp"

#include "client/door/Filling.hpp"
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

constexpr auto pollPeriod = 10s;
constexpr auto pauseOfSilence = 1s; ///< before a silent controller is tried again
constexpr auto longestFillPause = 60s;
constexpr auto longestRest = 60s;
constexpr auto repositoryPeriod = 30s;
constexpr auto longestNap = 1s; ///< what is looked up for the first time is read soon

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
    nap();
}

void Reader::fillWhenDue()
{
    if (!firmwareRead)
        firmwareRead = door::fillGroups(Sources::firmware);
    followRepository();
    if (!repositoryRead && now() >= nextFill)
        fillFromRepository();
}

void Reader::fillFromRepository()
{
    repositoryRead = door::fillGroups(Sources::repository);
    common::noteFact(common::recordsFact, repositoryRead ? "read" : "none so far");
    if (repositoryRead)
        return;
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
    return true;
}

void Reader::readWhenDue()
{
    const Moment began = now();
    if (began < nextPass)
        return;
    query::takeNewlyWanted();
    const PassEnd end = query::readWanted([this] { return goOn(); });
    if (end == PassEnd::silent || !readFiguresFor(now() - began)) {
        nextPass = now() + pauseOfSilence;
        return;
    }
    endPass(began);
    if (repositoryRead && !inventoryRead)
        inventoryRead = door::fillGroups(Sources::inventory);
}

/// The bounds that are missing get as long as the readings took, so that those do not grow old meanwhile.
bool Reader::readFiguresFor(Duration readings)
{
    const Moment deadline = now() + std::max<Duration>(readings, common::policy().refreshPeriod);
    return door::readUnreadFigures([this, deadline] { return goOn() && now() < deadline; });
}

/// A slow controller rests, too.
void Reader::endPass(Moment began)
{
    const Duration length = now() - began;
    const Duration rest =
        std::max<Duration>(common::policy().refreshPeriod - length, std::min<Duration>(length / 4, longestRest));
    query::setRefreshPeriod(length + rest);
    common::noteFact(common::refreshFact, "in " + secondsOf(length) + ", again in " + secondsOf(rest));
    nextPass = now() + rest;
}

void Reader::nap()
{
    if (query::takeNewlyWanted() || std::exchange(eventsCame, false))
        nextPass = now();
    else if (const Duration left = std::min(nextPoll, nextPass) - now(); left > 0ns)
        common::waitInterruptibly(std::min<Duration>(left, longestNap));
}

} // namespace client::reader
