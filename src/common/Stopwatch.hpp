#pragma once

#include "common/Seams.hpp"

namespace common {

/// Time since it was made, by the clock that nobody sets.
class Stopwatch {
public:
    std::chrono::nanoseconds elapsed() const { return current<Clock>().steady() - start; }
    /// Whole milliseconds, as log lines print them.
    int milliseconds() const
    {
        return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed()).count());
    }

private:
    Clock::SteadyPoint start = current<Clock>().steady();
};

} // namespace common
