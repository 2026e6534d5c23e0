#include "client/Waits.hpp"

#include "client/Functions.hpp"
#include "common/Seams.hpp"

void waitInterruptibly(std::chrono::seconds duration)
{
    const Cancellable wait;
    current<Clock>().sleepFor(duration);
}

void awaitInitComplete()
{
    using namespace std::chrono_literals;
    while (!isInitComplete())
        waitInterruptibly(1s);
}
