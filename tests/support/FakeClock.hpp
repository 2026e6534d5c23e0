#pragma once

#include "common/Seams.hpp"

#include <functional>
#include <vector>

/// A clock that stands still but for sleeps, which take no time and are kept in a list. Install it with
/// `ScopedSeam<Clock> use(clock);`. Not for more than one thread at a time.
class FakeClock : public Clock {
public:
    TimePoint now() override
    {
        advance(perReading);
        return time;
    }

    SteadyPoint steady() override
    {
        advance(perReading);
        return steadyTime;
    }

    void sleepFor(std::chrono::nanoseconds duration) override
    {
        sleeps.push_back(duration);
        advance(duration);
        if (onSleep)
            onSleep();
    }

    void advance(std::chrono::nanoseconds duration)
    {
        time += std::chrono::duration_cast<TimePoint::duration>(duration);
        steadyTime += duration;
    }

    /// Every sleep so far, in order.
    std::vector<std::chrono::nanoseconds> sleeps;
    /// What happens in each of them.
    std::function<void()> onSleep;
    /// How far each reading of the clock moves it on, for loops that wait by the clock alone.
    std::chrono::nanoseconds perReading{0};
    /// The time of day; a test may set it as an administrator would.
    TimePoint time{std::chrono::seconds{1'700'000'000}};
    SteadyPoint steadyTime{std::chrono::hours{1}};
};
