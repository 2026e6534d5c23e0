#include "client/traps/TrapQueue.hpp"

#include "client/traps/TestTraps.hpp"
#include "common/Bell.hpp"
#include "common/Facts.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <string>
#include <utility>

namespace client::traps {

namespace {

using namespace std::chrono_literals;

constexpr unsigned long noRecord = std::numeric_limits<unsigned long>::max();

struct Waiting {
    Trap trap;
    unsigned long record;
    unsigned id; ///< of the record in the log
    bool isPaced;
};

/// Holds as many permissions to leave as a burst has, and gets new ones at the policy's rate.
class Bucket {
public:
    bool hasOne()
    {
        fill();
        return permissions >= 1;
    }
    void takeOne() { permissions -= 1; }
    std::chrono::milliseconds untilOne()
    {
        fill();
        const std::chrono::duration<double> rest((1 - permissions) / common::policy().trapsPerSecond);
        return std::chrono::ceil<std::chrono::milliseconds>(rest);
    }

private:
    void fill()
    {
        const auto now = current<Clock>().steady();
        const double most = common::policy().trapBurst;
        if (!isFilled)
            permissions = most;
        else
            permissions += std::chrono::duration<double>(now - filled).count() * common::policy().trapsPerSecond;
        permissions = std::min(permissions, most);
        filled = now;
        isFilled = true;
    }

    double permissions = 0;
    Clock::SteadyPoint filled;
    bool isFilled = false;
};

struct Queue {
    std::deque<Waiting> waiting;
    std::deque<Waiting> onTheirWay; ///< taken, and not yet known to have arrived
    Bucket bucket;
    bool isOpen = true;
    unsigned long record = 0;     ///< that traps are queued for
    unsigned id = 0;              ///< of it in the log
    unsigned long lastQueued = 0; ///< that one was queued for
    unsigned long dropped = 0;

    bool frontMayLeave() { return !waiting.empty() && (!waiting.front().isPaced || (isOpen && bucket.hasOne())); }
    std::size_t mostWaiting() const { return static_cast<std::size_t>(common::policy().trapQueue); }

    void add(Trap trap, bool isPaced)
    {
        waiting.push_back({std::move(trap), record, id, isPaced});
        lastQueued = record;
    }

    Trap take()
    {
        if (waiting.front().isPaced)
            bucket.takeOne();
        onTheirWay.push_back(std::move(waiting.front()));
        waiting.pop_front();
        return onTheirWay.back().trap;
    }

    /// Those that wait for a session wait again.
    void takeBack()
    {
        std::erase_if(onTheirWay, [](const Waiting& one) { return !one.isPaced; });
        waiting.insert(waiting.begin(), std::move_iterator(onTheirWay.begin()), std::move_iterator(onTheirWay.end()));
        onTheirWay.clear();
    }

    unsigned long oldestRecord() const
    {
        unsigned long oldest = waiting.empty() ? noRecord : waiting.front().record;
        for (const Waiting& one : onTheirWay) // a test trap may have gone before
            oldest = std::min(oldest, one.record);
        return oldest;
    }
};

std::mutex guard;
Queue queue;

std::string textOf(const Trap& trap)
{
    constexpr std::size_t textPlace = 1;
    const auto* const text = trap.size() > textPlace ? std::get_if<std::string>(&trap[textPlace].value) : nullptr;
    return text ? *text : std::string();
}

/// "trapTUpCri of record 0012: Status is Upper Critical"
std::string lineOf(const Waiting& waiting)
{
    char record[32] = "";
    if (waiting.id != 0)
        std::snprintf(record, sizeof record, " of record %04X", waiting.id);
    return nameOf(waiting.trap) + record + ": " + textOf(waiting.trap);
}

/// Of those that begin to be dropped.
std::string overflowText()
{
    return "more than " + std::to_string(common::policy().trapQueue) +
           " traps wait for the master agent: new ones are dropped";
}

} // namespace

void queueTrap(Trap trap)
{
    const std::scoped_lock lock(guard);
    queue.add(std::move(trap), false);
    common::loopBell().ring();
}

void queuePacedTrap(Trap trap)
{
    bool isFirstDropped = false;
    {
        const std::scoped_lock lock(guard);
        if (queue.waiting.size() < queue.mostWaiting())
            queue.add(std::move(trap), true);
        else
            isFirstDropped = ++queue.dropped == 1;
    }
    if (isFirstDropped)
        common::report(common::Gravity::error, overflowText());
    callForTraps();
}

void queueTestTrap(Trap trap)
{
    const std::scoped_lock lock(guard);
    const unsigned long record = queue.waiting.empty() ? noRecord : queue.waiting.front().record;
    queue.waiting.push_front({std::move(trap), record, 0, false});
    common::loopBell().ring();
}

TrapStanding trapStanding()
{
    const std::scoped_lock lock(guard);
    return {queue.isOpen, queue.waiting.size(), queue.onTheirWay.size(), queue.dropped};
}

std::deque<Trap> takeTraps()
{
    std::deque<Trap> taken;
    std::vector<std::string> lines;
    unsigned long dropped = 0;
    {
        const std::scoped_lock lock(guard);
        while (queue.frontMayLeave()) {
            lines.push_back(lineOf(queue.waiting.front()));
            taken.push_back(queue.take());
        }
        // not at the first free place: that one is taken again at once
        if (queue.waiting.size() <= queue.mostWaiting() / 2)
            dropped = std::exchange(queue.dropped, 0);
    }
    for (const std::string& line : lines)
        common::report(common::Gravity::notice, "trap " + line);
    if (!lines.empty())
        common::noteFact(common::trapFact, lines.back());
    if (dropped > 0)
        common::report(common::Gravity::warning, std::to_string(dropped) + " traps were dropped; there is room again");
    return taken;
}

void trapsArrived(std::size_t count)
{
    const std::scoped_lock lock(guard);
    const std::size_t known = std::min(count, queue.onTheirWay.size());
    queue.onTheirWay.erase(queue.onTheirWay.begin(), queue.onTheirWay.begin() + static_cast<std::ptrdiff_t>(known));
}

void sessionIs(bool open)
{
    {
        const std::scoped_lock lock(guard);
        queue.isOpen = open;
        if (!open)
            queue.takeBack();
    }
    callForTraps();
}

std::chrono::milliseconds untilNextTrap(std::chrono::milliseconds otherwise)
{
    constexpr std::chrono::milliseconds shortest = 100ms;
    const std::scoped_lock lock(guard);
    if (queue.waiting.empty() || !queue.waiting.front().isPaced || !queue.isOpen)
        return otherwise;
    return std::clamp(queue.bucket.untilOne(), shortest, std::max(shortest, otherwise));
}

void callForTraps()
{
    const std::scoped_lock lock(guard);
    if (queue.frontMayLeave())
        common::loopBell().ring();
}

void beginRecord(unsigned long number, unsigned id)
{
    const std::scoped_lock lock(guard);
    queue.record = number;
    queue.id = id;
}

unsigned long lastQueuedRecord()
{
    const std::scoped_lock lock(guard);
    return queue.lastQueued;
}

unsigned long oldestUntoldRecord()
{
    const std::scoped_lock lock(guard);
    return queue.oldestRecord();
}

void emptyTrapQueue()
{
    const std::scoped_lock lock(guard);
    queue = {};
}

} // namespace client::traps
