// hw_trap_storm COUNT [paced]: the agent's loop, served as ever, while another thread turns COUNT pairs of events into
// traps as fast as a manager can take them. Each pair is a temperature record on its way through classifier and clone,
// and an event that carries its number. Paced, the traps wait in their own queue, and the agent's threads run beside.
// The controller is a script. Runs until it is told to stop; a sanitizer's finding shows in the exit status.

#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/Signals.hpp"
#include "api-netsnmp/Subagent.hpp"
#include "client/door/Functions.hpp"
#include "client/door/smClient.hpp"
#include "client/events/SNMP_RouteEvent.hpp"
#include "client/words/Text.hpp"
#include "common/Bell.hpp"
#include "common/Policy.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace {
using namespace std::chrono_literals;

/// Pauses last a moment, so that a manager's socket can follow.
struct HastyClock : Clock {
    TimePoint now() override { return std::chrono::system_clock::now(); }
    SteadyPoint steady() override { return std::chrono::steady_clock::now(); }
    void sleepFor(std::chrono::nanoseconds) override { std::this_thread::sleep_for(2ms); }
};

/// The script, for several threads.
struct SharedBackend : ScriptedBackend {
    using ScriptedBackend::get;
    void get(const std::string& query, ResultMap& results) override
    {
        const std::scoped_lock lock(mutex);
        ScriptedBackend::get(query, results);
    }
    std::mutex mutex;
};

constexpr int temperatureSensors = 40;

void raiseTemperature(int turn)
{
    EVENT_DATA_STRUCT record;
    record.ucRecordType = 2;
    record.ucSensorType = 1;
    record.ucSensorNumber = static_cast<unsigned char>(turn % temperatureSensors + 1);
    record.ucEventTrigger = 1;
    record.ucEventData1 = 4;
    client::events::routeEvent(record);
}

void raiseNumbered(int turn)
{
    eventData event;
    event.nEventGroup = 2;
    copyText(event.stEventDesc, "undetermined system hardware failure " + std::to_string(turn));
    addEvent(event);
    processEvent();
}

void storm(int count)
{
    for (int turn = 0; turn < count; ++turn) {
        raiseTemperature(turn);
        raiseNumbered(turn);
    }
    // The loop hears of the end, so that what it deletes when it stops is seen to be nobody's any longer.
    common::loopBell().ring();
}

} // namespace

int main(int argc, char** argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 1000;
    const common::ScopedPolicy policy({.pacesTrapsApart = argc > 2, .trapsPerSecond = 500});
    traceWanted = false;
    SharedBackend sdk;
    for (int number = 1; number <= temperatureSensors; ++number)
        sdk.addSensor({.number = number, .type = 1, .name = "Sensor " + std::to_string(number)});
    HastyClock& clock = *std::make_unique<HastyClock>().release(); // read by threads to the last
    const ScopedSeam<QueryBackend> useSdk(sdk);
    const ScopedSeam<Clock> useClock(clock);
    agent::installSignalHandlers();
    agent::openBells();
    init_subagent(1);
    gSubagent.load()->mSystemManagement->m_nTrapsEnabled = 1;
    const std::jthread thread(storm, count);
    if (argc > 2)
        agent::startThreads();
    agent::startRunning();
    return agentx_loop();
}
