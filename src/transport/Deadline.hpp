#pragma once

#include "common/Policy.hpp"
#include "common/Seams.hpp"

#include <chrono>
#include <optional>

namespace transport {

/// Until when the exchange under way on this thread has to be over: every wait on the road to the controller asks it.
/// One inside another never ends later than that. Without Policy::limitsExchanges there is no end.
class Deadline {
public:
    explicit Deadline(std::chrono::nanoseconds budget = common::policy().exchangeBudget);
    ~Deadline();
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    /// Whether the time is up; false where no deadline is set.
    static bool passed();
    /// What is left, not below 0; a very long time where no deadline is set.
    static std::chrono::nanoseconds left();

private:
    std::optional<Clock::SteadyPoint> before;
};

} // namespace transport
