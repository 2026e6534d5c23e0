#pragma once

#include <chrono>
#include <pthread.h>

namespace common {

/// Lets the thread be cancelled in here, whatever its rule elsewhere: nothing is under way that has to be finished.
class Cancellable {
public:
    Cancellable() { pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &before); }
    ~Cancellable() { pthread_setcancelstate(before, nullptr); }
    Cancellable(const Cancellable&) = delete;
    Cancellable& operator=(const Cancellable&) = delete;

private:
    int before = PTHREAD_CANCEL_ENABLE;
};

/// Sleeps by the current Clock. A thread that is cancelled ends in it: a stop of the agent does not wait for it.
void waitInterruptibly(std::chrono::nanoseconds duration);

/// Ends the thread here if it has been cancelled.
void cancelHere();

} // namespace common
