#pragma once

#include "client/traps/TrapFunctions.hpp"

#include <deque>

namespace client::traps {

/// Finished traps on their way from the thread that decides about them to the one that may call the SNMP library: to
/// send from one thread while another serves requests loses the session to the master agent.

/// Puts the trap at the end and rings the loop's bell. Any thread.
void queueTrap(Trap trap);

/// Everything queued so far, in order.
std::deque<Trap> takeTraps();

} // namespace client::traps
