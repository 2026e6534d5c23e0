#include "client/traps/TrapQueue.hpp"

#include "common/Bell.hpp"

#include <mutex>
#include <utility>

namespace client::traps {

namespace {

std::mutex guard;
std::deque<Trap> waiting;

} // namespace

void queueTrap(Trap trap)
{
    const std::scoped_lock lock(guard);
    waiting.push_back(std::move(trap));
    common::loopBell().ring();
}

std::deque<Trap> takeTraps()
{
    const std::scoped_lock lock(guard);
    return std::exchange(waiting, {});
}

} // namespace client::traps
