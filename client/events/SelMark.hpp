#pragma once

#include "client/events/SelTrail.hpp"

#include <deque>
#include <mutex>

namespace client::events {

/// The place in the log that outlives the process: behind the last record whose traps all have been handed to the
/// master agent. What was handled behind it is told again by the next process.
///
/// A crash between the handing over and the next keep(), a moment later, tells the traps of that moment twice; none is
/// lost.
class SelMark {
public:
    /// What a process before this one left; nothing if there is none, or nothing that can be trusted.
    std::optional<SelTrail> load();
    /// Begins with `trail`, all of it told, which goes to the disk with the next keep().
    void begin(const SelTrail& trail);
    /// A record was handled: number by number, see traps::beginRecord.
    void handled(unsigned long number, const std::string& record, const std::string& erased);
    /// Writes the mark to the disk if it has moved. Any thread; a disk that hangs holds up none but the caller.
    void keep();

private:
    struct Handled {
        unsigned long number;
        std::string record;
        std::string erased;
    };
    bool advance(std::string& text);

    std::mutex writing; ///< taken before the guard, by keep() alone
    std::mutex guard;
    std::deque<Handled> untold;
    SelTrail told;
    unsigned long lastWithTrap = 0; ///< record of the trap queued last
    bool hasMoved = false;
};

} // namespace client::events
