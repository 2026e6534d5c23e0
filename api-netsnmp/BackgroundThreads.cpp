#include "api-netsnmp/BackgroundThreads.hpp"

#include "api-netsnmp/Process.hpp"
#include "api-netsnmp/Signals.hpp"
#include "api-netsnmp/StatusService.hpp"
#include "client/door/Filling.hpp"
#include "client/door/Functions.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/CacheRefresher.hpp"
#include "client/reader/Reader.hpp"
#include "common/Policy.hpp"

#include <cstdio>
#include <cxxabi.h>
#include <memory>
#include <pthread.h>
#include <semaphore>

namespace {
using namespace std::chrono_literals;

std::FILE* logfile = nullptr;
/// Not destroyed at exit: its thread may not have ended.
client::reader::Reader& reader = *std::make_unique<client::reader::Reader>().release();

std::counting_semaphore<> ends{0};

/// Lives as long as a thread's body, also when cancellation unwinds it.
class Attendance {
public:
    /// `name`: what ps and gdb show, at most 15 characters.
    explicit Attendance(const char* name)
    {
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
        pthread_setname_np(pthread_self(), name);
    }
    ~Attendance() { ends.release(); }
    Attendance(const Attendance&) = delete;
    Attendance& operator=(const Attendance&) = delete;
};

/// A turn that fails, for want of memory say, must cost this turn and not the process.
template<class Turn>
void survive(const char* thread, Turn turn)
{
    try {
        turn();
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        std::fprintf(stderr, "%s: a turn ended by an exception\n", thread);
    }
}

/// Body of the thread that answers who asks how the agent is. Never returns.
void* serveStatus(void*)
{
    const Attendance attendance("status");
    agent::StatusService service;
    for (;;)
        survive("status", [&service] { service.turn(); });
}

bool always()
{
    return true;
}

bool answersStatus()
{
    return common::policy().answersStatus;
}

struct Thread {
    void* (*body)(void*);
    bool (*isWanted)();
    pthread_t id{};
    bool started = false;
};
Thread threads[] = {{CheckTrap, always}, {check_sensors_cache, always}, {serveStatus, answersStatus}};

/// Each look is one at every row, so not at each turn.
void followReadings()
{
    constexpr auto pauseBetweenLooks = 5s;
    static Clock::SteadyPoint nextLook;
    const auto now = current<Clock>().steady();
    if (!common::policy().fillsBehindRegistration || now < nextLook)
        return;
    nextLook = now + pauseBetweenLooks;
    client::door::followReadings();
}

/// With a thread that alone talks with the controller, the log is polled there.
void pollEvents()
{
    if (!common::policy().answersFromPublished)
        CheckForNewSELEntry();
    processEvent();
    followReadings();
    client::events::keepMark();
}

void refresh()
{
    if (logfile)
        std::fflush(logfile);
    if (common::policy().answersFromPublished)
        reader.turn();
    else
        client::query::check_sensors_cache_turn();
}

void start(Thread& thread)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_attr_setstacksize(&attributes, agent::stackBytes);
    thread.started = pthread_create(&thread.id, &attributes, thread.body, nullptr) == 0;
    pthread_attr_destroy(&attributes);
}
} // namespace

namespace agent {

void openLogFile()
{
    logfile = std::fopen("/dev/null", "we");
}

} // namespace agent

void* CheckTrap(void*)
{
    const Attendance attendance("CheckTrap");
    for (;;) {
        survive("CheckTrap", pollEvents);
        survive("CheckTrap", [] { agent::pauseServingDoorbell(client::door::pauseBeforeTraps()); });
    }
}

void* check_sensors_cache(void*)
{
    const Attendance attendance("sensors_cache");
    for (;;)
        survive("check_sensors_cache", refresh);
}

namespace agent {

void startThreads()
{
    sigset_t mainThreadOnly;
    sigset_t before;
    sigemptyset(&mainThreadOnly);
    for (const int sig : {SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGRTMIN + 1})
        sigaddset(&mainThreadOnly, sig);
    pthread_sigmask(SIG_BLOCK, &mainThreadOnly, &before);
    for (Thread& thread : threads)
        if (thread.isWanted())
            start(thread);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool endThreads(std::chrono::milliseconds patience)
{
    for (const Thread& thread : threads)
        if (thread.started)
            pthread_cancel(thread.id);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    bool allEnded = true;
    for (const Thread& thread : threads)
        allEnded = (!thread.started || ends.try_acquire_until(deadline)) && allEnded;
    return allEnded;
}

} // namespace agent
