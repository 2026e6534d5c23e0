#pragma once

#include "client/TrapFunctions.hpp"

#include <deque>

/// Finished traps on their way from the thread that decides about them to the one that may call the SNMP library: to
/// send from one thread while another serves requests loses the session to the master agent.

/// Puts the trap at the end and rings the bell. Any thread.
void queueTrap(Trap trap);

/// Everything queued so far, in order; the bell is silent then.
std::deque<Trap> takeTraps();

/// Makes the bell. Traps that were queued before are kept.
void openTrapBell();

/// Readable while there is a trap; -1 without a bell.
int trapBell();
