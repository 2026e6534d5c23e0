#pragma once

#include "client/traps/TrapFunctions.hpp"

#include <chrono>
#include <cstddef>
#include <deque>
#include <limits>

namespace client::traps {

/// Finished traps on their way from the thread that decides about them to the one that may call the SNMP library: to
/// send from one thread while another serves requests loses the session to the master agent.

/// Puts the trap at the end and rings the loop's bell. Any thread.
void queueTrap(Trap trap);
/// Likewise for a trap that waits for its turn: for a session to the master agent, and for the pace that the policy
/// sets. Dropped, which is reported, when too many wait.
void queuePacedTrap(Trap trap);

/// Puts a trap that tells of no event before all others: it waits for no pace, and holds up no mark.
void queueTestTrap(Trap trap);

/// Everything queued so far, in order; of the paced ones those whose turn it is. They count as on their way until they
/// are known to have arrived.
std::deque<Trap> takeTraps();
/// So many of those on their way, the oldest, have arrived.
void trapsArrived(std::size_t count);

/// Whether there is a session to the master agent; there is one until something else is said. When it is lost, paced
/// traps on their way wait again, before all others.
void sessionIs(bool open);

/// How the queue stands.
struct TrapStanding {
    bool hasSession;
    std::size_t waiting;
    std::size_t onTheirWay;
    unsigned long dropped; ///< and not yet reported as over
};
TrapStanding trapStanding();

/// How long it is until a paced trap may leave, a tenth of a second at least; `otherwise` if none waits or none may.
std::chrono::milliseconds untilNextTrap(std::chrono::milliseconds otherwise);
/// Rings the loop's bell if a paced trap may leave.
void callForTraps();

/// The traps queued from here on belong to the record of that number, which only grows. Numbers start at 1.
void beginRecord(unsigned long number, unsigned id = 0);
/// The record of the trap queued last.
unsigned long lastQueuedRecord();
/// The oldest record with a trap that waits or is on its way; the greatest number if there is none.
unsigned long oldestUntoldRecord();

/// Forgets all traps and what is known of records, session and pace. For tests.
void emptyTrapQueue();

} // namespace client::traps
