#pragma once

#include "transport/BmcMessage.hpp"

#include <chrono>

namespace transport {

/// How long a request whose controller has no time is asked again (Policy::retriesBusyController): with growing pauses,
/// within the exchange's budget. A request that used its time up in vain is asked once each time until it is answered,
/// so that a sensor that is always busy does not keep the others from being read.
class Patience {
public:
    /// `wanted` outlives the object.
    explicit Patience(const BMC_REQUEST& wanted);

    /// After an answer with `completionCode`: whether to ask again, the pause having been made.
    bool asksAgain(std::uint8_t completionCode);
    /// Remembers how it ended: with an answer that is of use, or not.
    void note(bool answered, std::uint8_t completionCode) const;

private:
    const BMC_REQUEST& request;
    bool lost;
    std::chrono::nanoseconds pause{std::chrono::milliseconds(10)};
    std::chrono::nanoseconds spent{0};
};

/// Whether an answer to `request` says that there is no time for it now, or that nobody was met on the bus.
bool isPassing(const BMC_REQUEST& request, std::uint8_t completionCode);

} // namespace transport
