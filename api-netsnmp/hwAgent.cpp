#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/NetSnmp.hpp"
#include "api-netsnmp/Process.hpp"
#include "api-netsnmp/Signals.hpp"
#include "api-netsnmp/Subagent.hpp"
#include "common/Policy.hpp"

int main(int argc, char**)
{
    agent::openStandardDescriptors();
    common::loadPolicy();
    agent::refuseArguments(argc);
    agent::checkResources();
    agent::refuseSecondAgent();
    agent::raiseStackLimit();
    agent::installSignalHandlers();
    daemonize();
    agent::beginStart();
    agent::openBells();
    snmp_enable_stderrlog();
    agent::openLogFile();
    init_subagent(1);
    agent::startThreads();
    agent::startRunning();
    agentx_loop();
    return 0;
}
