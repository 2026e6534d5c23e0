#pragma once

#include "transport/BmcMessage.hpp"

#include <chrono>

namespace transport {

/// How long a request whose controller has no time is asked again (Policy::retriesBusyController): with growing pauses,
/// within the exchange's budget. A request that used its time up in vain is asked once for a minute, so that a sensor
/// that is always busy does not keep the others from being read.
class Patience {
public:
    /// `wanted` outlives the object.
    explicit Patience(const BMC_REQUEST& wanted);

    /// The time for the exchange: the whole budget, or less for a satellite that lately let it run out.
    std::chrono::nanoseconds budget() const;
    /// After an answer with `completionCode`: whether to ask again, the pause having been made.
    bool asksAgain(std::uint8_t completionCode);
    /// Remembers how it ended: with an answer that is of use, or not.
    void note(bool answered, std::uint8_t completionCode) const;

private:
    bool isPassing(std::uint8_t completionCode) const;

    const BMC_REQUEST& request;
    bool lost;
    std::chrono::nanoseconds pause{std::chrono::milliseconds(10)};
    std::chrono::nanoseconds spent{0};
};

} // namespace transport
