#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/NetSnmp.hpp"
#include "api-netsnmp/Process.hpp"
#include "api-netsnmp/Signals.hpp"
#include "api-netsnmp/Subagent.hpp"

int main()
{
    openStandardDescriptors();
    raiseStackLimit();
    installSignalHandlers();
    daemonize();
    openBells();
    snmp_enable_stderrlog();
    openLogFile();
    init_subagent(1);
    startThreads();
    startRunning();
    agentx_loop();
    return 0;
}
