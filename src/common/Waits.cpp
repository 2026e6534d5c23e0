#include "common/Waits.hpp"

#include "common/Seams.hpp"

namespace common {

void waitInterruptibly(std::chrono::nanoseconds duration)
{
    const Cancellable wait;
    current<Clock>().sleepFor(duration);
}

void cancelHere()
{
    const Cancellable now;
    pthread_testcancel();
}

} // namespace common
