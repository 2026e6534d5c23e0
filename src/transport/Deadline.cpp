#include "transport/Deadline.hpp"

#include <algorithm>

namespace transport {

namespace {

thread_local std::optional<Clock::SteadyPoint> end;

} // namespace

Deadline::Deadline(std::chrono::nanoseconds budget) : before(end)
{
    if (!common::policy().limitsExchanges)
        return;
    const Clock::SteadyPoint ours = current<Clock>().steady() + budget;
    end = before ? std::min(*before, ours) : ours;
}

Deadline::~Deadline()
{
    end = before;
}

bool Deadline::passed()
{
    return left() <= std::chrono::nanoseconds::zero();
}

std::chrono::nanoseconds Deadline::left()
{
    if (!end)
        return std::chrono::hours(24);
    return std::max(std::chrono::nanoseconds(*end - current<Clock>().steady()), std::chrono::nanoseconds::zero());
}

} // namespace transport
