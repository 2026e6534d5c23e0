#include "common/Waits.hpp"

#include "common/Seams.hpp"

namespace common {

void waitInterruptibly(std::chrono::seconds duration)
{
    const Cancellable wait;
    current<Clock>().sleepFor(duration);
}

} // namespace common
