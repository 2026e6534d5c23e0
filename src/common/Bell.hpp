#pragma once

#include <atomic>
#include <chrono>

namespace common {

/// Wakes a thread that waits in poll or select, also from a signal handler, and also if it rings before the wait. Bells
/// are for as long as the process is: a detached thread may ring to the last, so nothing closes them.
class Bell {
public:
    /// Makes the descriptor; until then, and if that fails, ringing does nothing and waiting is plain sleeping.
    void open();
    /// Safe in a signal handler.
    void ring();
    /// Makes it silent again.
    void clear();
    /// Waits until it rings or `duration` is over. A cancellation point.
    void wait(std::chrono::milliseconds duration);
    int descriptor() const { return fd; }

private:
    std::atomic<int> fd{-1};
};

/// The one bell of the agent's loop, rung for signals and for traps alike: each descriptor more that the loop watches
/// costs every request.
Bell& loopBell();

} // namespace common
