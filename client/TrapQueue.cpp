#include "client/TrapQueue.hpp"

#include "client/Bell.hpp"

#include <mutex>
#include <utility>

namespace {

std::mutex guard;
std::deque<Trap> waiting;
Bell bell;

} // namespace

void queueTrap(Trap trap)
{
    const std::scoped_lock lock(guard);
    waiting.push_back(std::move(trap));
    bell.ring();
}

std::deque<Trap> takeTraps()
{
    const std::scoped_lock lock(guard);
    bell.clear();
    return std::exchange(waiting, {});
}

void openTrapBell()
{
    bell.open();
}

int trapBell()
{
    return bell.descriptor();
}
