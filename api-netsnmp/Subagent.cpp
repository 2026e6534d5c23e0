#include "api-netsnmp/Subagent.hpp"

#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/Signals.hpp"
#include "api-netsnmp/TrapSender.hpp"
#include "client/door/Functions.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/CacheState.hpp"
#include "common/Bell.hpp"

#include <cstdlib>
#include <unistd.h>

namespace {
constexpr char applicationName[] = "hwAgent";

constexpr void (*registrations[])() = {
    init_systemManagementSoftwareGroup,
    init_temperatureProbeTable,
    init_physicalMemoryArrayTable,
    init_physicalMemoryDeviceTable,
    init_processorDeviceTable,
    init_chassisInformationGroup,
    init_coolingDeviceTable,
    init_coolingUnitTable,
    init_discreteCoolingDeviceTable,
    init_powerSupplyTable,
    init_powerUnitTable,
    init_voltageProbeTable,
    init_discreteVoltageProbeTable,
    init_driveSlotPresenceSensorTable,
    init_currentProbeTable,
    init_discreteMemoryTable,
    init_discreteProcessorTable,
    init_miscellaneousSensorTable,
};

/// The subagent needs neither MIB texts nor a state of its own: reading the one costs megabytes, and the other would be
/// written where the master agent keeps its own.
void leaveOutUnusedParts()
{
    setenv("MIBS", "", 1);
    setenv("MIBDIRS", "", 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE, 1);
}

/// Silenced before the queue is taken: a trap that comes meanwhile rings it again. Signals are served behind each turn
/// of the loop, which the bell only ends.
void serveBell(int, void*)
{
    common::loopBell().clear();
    mib::sendQueuedTraps();
}
} // namespace

int init_subagent(int role)
{
    if (role)
        netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    leaveOutUnusedParts();
    start_cache_list = 0;
    if (init_agent("hwSubgent") != 0)
        return 0;
    agent::serveSignals();
    initSMClient();
    for (const auto registerObject : registrations)
        registerObject();
    mib::startTrapSender();
    init_snmp(applicationName);
    return 0;
}

int agentx_loop()
{
    start_cache_list = 1;
    if (common::loopBell().descriptor() >= 0)
        register_readfd(common::loopBell().descriptor(), serveBell, nullptr);
    while (agent::isRunning()) {
        agent_check_and_process(1);
        agent::serveSignals();
        mib::noteArrivedTraps();
    }
    const bool alone = agent::endThreads(agent::stopPatience());
    mib::sendLastTraps();
    client::events::keepMark();
    snmp_shutdown(applicationName);
    if (!alone)
        _exit(0); // a thread that waits for the controller still uses the client
    shutdownSMClient();
    return 0;
}
