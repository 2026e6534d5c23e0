#include "api-netsnmp/Signals.hpp"

#include "client/door/Functions.hpp"
#include "common/Bell.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"
#include "common/Stopwatch.hpp"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <pthread.h>
#include <string>
#include <unistd.h>

namespace {
struct StopSignal {
    int number;
    std::atomic<bool> caught = false;
};
StopSignal stopSignals[] = {{SIGTERM}, {SIGINT}, {SIGHUP}};
constexpr std::size_t asctimeBytes = 26;

std::atomic<bool> pipeBroken = false;
std::atomic<bool> doorbellRung = false;
std::atomic<bool> eventThreadIsWoken = false;
std::atomic<int> keep_running = 0;
std::atomic<bool> anyStopCaught = false;
std::atomic<bool> stopEndsStart = false;
bool stopsAreQuick = false;
common::Bell eventBell;

// A stop that hangs in the controller or in a master agent that does not answer must not keep the process: this much
// later it is left as it stands.
constexpr itimerspec stopPatience{{}, {.tv_sec = 4, .tv_nsec = 500'000'000}};
timer_t stopTimer{};
std::atomic<bool> stopTimerMade = false;
std::atomic<bool> stopTimerRuns = false;
const int stopTimerSignal = SIGRTMIN + 2;

void leaveAtOnce(int)
{
    _exit(0);
}

void makeStopTimer()
{
    std::signal(stopTimerSignal, leaveAtOnce);
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = stopTimerSignal;
    stopTimerMade = timer_create(CLOCK_MONOTONIC, &event, &stopTimer) == 0;
}

/// Safe in a signal handler. Further stop signals do not put the end off.
void startStopTimer()
{
    if (stopTimerMade && !stopTimerRuns.exchange(true))
        timer_settime(stopTimer, 0, &stopPatience, nullptr);
}

void cancelStopTimer()
{
    constexpr itimerspec never{};
    if (stopTimerRuns.exchange(false))
        timer_settime(stopTimer, 0, &never, nullptr);
}

void serveStop(int sig)
{
    std::fprintf(stderr, "Caught signal %d\n", sig);
    common::report(common::Gravity::notice, "stops, by signal " + std::to_string(sig));
    if (agent::printLocalTime("Signal received at: "))
        keep_running = 0;
    else
        cancelStopTimer();
}

void serveDoorbell()
{
    std::fprintf(stderr, "catchNotify called, getpid=%d\n", getpid());
    if (agent::printLocalTime("CatchNotify Signal received at: "))
        processEvent();
}

void waitCancellably(common::Bell& bell, std::chrono::milliseconds duration)
{
    int previous = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &previous);
    bell.wait(duration);
    pthread_setcancelstate(previous, nullptr);
}
} // namespace

namespace agent {

bool printLocalTime(const char* prefix)
{
    const std::time_t now = currentSeconds();
    std::tm local{};
    char text[asctimeBytes];
    if (!localtime_r(&now, &local) || !asctime_r(&local, text))
        return false;
    std::fprintf(stderr, "%s%s", prefix, text);
    return true;
}

} // namespace agent

void stop_server(int sig)
{
    for (StopSignal& stop : stopSignals)
        if (stop.number == sig)
            stop.caught = true;
    anyStopCaught = true;
    if (keep_running)
        startStopTimer();
    else if (stopEndsStart)
        leaveAtOnce(sig);
    common::loopBell().ring();
}

void reconnect_agentx(int)
{
    std::signal(SIGPIPE, SIG_IGN);
    pipeBroken = true;
    common::loopBell().ring();
}

void catchNotificationEvent(int, siginfo_t*, void*)
{
    doorbellRung = true;
    eventBell.ring();
}

namespace agent {

void installSignalHandlers()
{
    struct sigaction doorbell {};
    doorbell.sa_sigaction = catchNotificationEvent;
    doorbell.sa_flags = SA_SIGINFO | SA_RESTART;
    sigaction(SIGRTMIN + 1, &doorbell, nullptr);
    for (const StopSignal& stop : stopSignals)
        std::signal(stop.number, stop_server);
    std::signal(SIGPIPE, reconnect_agentx);
}

void openBells()
{
    common::loopBell().open();
    eventBell.open();
    makeStopTimer();
}

void serveSignals()
{
    for (StopSignal& stop : stopSignals)
        if (stop.caught.exchange(false))
            serveStop(stop.number);
    if (pipeBroken.exchange(false))
        printLocalTime("SIGPIPE signal received at: ");
}

void beginStart()
{
    stopsAreQuick = common::policy().stopsDuringStart;
    stopEndsStart = stopsAreQuick;
    if (stopEndsStart && anyStopCaught)
        leaveAtOnce(SIGTERM);
}

std::chrono::milliseconds stopPatience()
{
    using namespace std::chrono_literals;
    return stopsAreQuick ? 500ms : 3000ms;
}

bool stopWasCaught()
{
    return anyStopCaught;
}

void startRunning()
{
    serveSignals();
    keep_running = 1;
    stopEndsStart = false;
}

bool isRunning()
{
    return keep_running;
}

void pauseServingDoorbell(std::chrono::milliseconds duration)
{
    const common::Stopwatch watch;
    for (auto left = duration - watch.elapsed(); left.count() > 0 && !eventThreadIsWoken;
         left = duration - watch.elapsed()) {
        waitCancellably(eventBell, std::chrono::ceil<std::chrono::milliseconds>(left));
        eventBell.clear();
        if (doorbellRung.exchange(false))
            serveDoorbell();
    }
    eventThreadIsWoken = false;
}

void wakeEventThread()
{
    eventThreadIsWoken = true;
    eventBell.ring();
}

} // namespace agent
