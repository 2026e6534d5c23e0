#pragma once

#include "common/Seams.hpp"

namespace transport {

/// Spares a controller that does not answer (Policy::sparesSilentController): after three failed exchanges in a row it
/// is probed now and then, and everything else fails at once until a probe is answered. The start and the end of such
/// a time are told to the system's log. Used by whoever holds the exchange lock.
class SilenceWatch {
public:
    /// Whether the next exchange may be made. May make a probe.
    bool admits();
    /// Takes the outcome of an exchange.
    void note(bool answered);

private:
    void noteSilence();
    void noteReturn();

    int failures = 0;
    bool told = false;
    Clock::TimePoint firstFailure{};
    Clock::SteadyPoint nextProbe{};
};

} // namespace transport
