#pragma once

#include "common/Seams.hpp"

#include <array>
#include <cstdint>

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

/// The same for the controllers behind the BMC, which have no log line and no probe: after two failed requests in a row
/// one is made every half a minute.
class SatelliteWatch {
public:
    bool admits(std::uint8_t target);
    void note(std::uint8_t target, bool answered);

private:
    struct Satellite {
        std::uint8_t target = 0;
        int failures = 0;
        Clock::SteadyPoint nextTry{};
    };
    Satellite& find(std::uint8_t target);

    std::array<Satellite, 16> known{};
};

} // namespace transport
