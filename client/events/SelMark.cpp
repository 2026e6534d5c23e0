#include "client/events/SelMark.hpp"

#include "client/traps/TrapQueue.hpp"
#include "common/Report.hpp"
#include "common/StateFile.hpp"

#include <utility>

namespace client::events {

namespace {

constexpr char fileName[] = "sel-mark";
constexpr char unwritten[] = "sel-mark unwritten";

} // namespace

std::optional<SelTrail> SelMark::load()
{
    const std::optional<std::string> text = common::readStateFile(fileName);
    return text ? SelTrail::parse(*text) : std::nullopt;
}

void SelMark::begin(const SelTrail& trail)
{
    const std::scoped_lock lock(guard);
    told = trail;
    untold.clear();
    hasMoved = true;
}

void SelMark::handled(unsigned long number, const std::string& record, const std::string& erased)
{
    const std::scoped_lock lock(guard);
    // a record without a trap stands for those without one before it, so that there are no more of them than of traps
    if (!untold.empty() && untold.back().number > lastWithTrap)
        untold.pop_back();
    untold.push_back({number, record, erased});
    lastWithTrap = traps::lastQueuedRecord();
}

bool SelMark::advance(std::string& text)
{
    const std::scoped_lock lock(guard);
    const unsigned long oldest = traps::oldestUntoldRecord();
    for (; !untold.empty() && untold.front().number < oldest; untold.pop_front()) {
        told.add(untold.front().record);
        told.erased = untold.front().erased;
        hasMoved = true;
    }
    text = told.text();
    return std::exchange(hasMoved, false);
}

void SelMark::keep()
{
    const std::scoped_lock lock(writing);
    std::string text;
    if (!advance(text))
        return;
    if (common::writeStateFile(fileName, text)) {
        common::reportEnded(unwritten);
        return;
    }
    common::reportLimited(common::Gravity::warning, unwritten,
                          "the place in the event log cannot be kept on disk: a restart may tell events again");
    const std::scoped_lock again(guard);
    hasMoved = true;
}

} // namespace client::events
