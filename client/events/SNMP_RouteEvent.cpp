#include "client/events/SNMP_RouteEvent.hpp"

#include "client/door/Functions.hpp"
#include "client/events/Classifiers.hpp"
#include "client/events/SNMP_EventClones.hpp"
#include "client/words/Trace.hpp"
#include "common/Waits.hpp"
#include "ipmi/SelView.hpp"

#include <cxxabi.h>

using namespace client::words;

namespace {

constexpr int anyType = -1;
/// Redundancy (IPMI 2.0, table 42-2).
constexpr int redundancyType = 0x0B;

using Classifier = int (*)(EVENT_DATA_STRUCT* record);

struct Route {
    int sensorType; ///< IPMI 2.0, table 42-3
    int eventType;
    Classifier classifier; ///< none: the record is dropped
    const char* trace;
};

/// The first that fits counts; a sensor type without a row is for the last one.
constexpr Route routes[] = {
    {0x01, anyType, Temperature_EventOccurred, "Temperature event occured.\n"},
    {0x02, anyType, Voltage_EventOccurred, "Voltage event occured.\n"},
    {0x04, redundancyType, CoolingRedundancy_EventOccurred, "Fan event occured.\n"},
    {0x04, anyType, Fan_EventOccurred, "Fan event occured.\n"},
    {0x05, anyType, Intrusion_EventOccurred, "Chassis Intrusion event occured.\n"},
    {0x06, anyType, SecurityViolation_EventOccurred, "Security Violation event occured.\n"},
    {0x07, anyType, Processor_EventOccurred, "Processor event occured.\n"},
    {0x08, anyType, PowerSupply_EventOccurred, "Power Supply event occured.\n"},
    {0x09, redundancyType, PowerSupplyRedundancy_EventOccurred, "Power Unit event occured.\n"},
    {0x09, anyType, nullptr, "Power Unit event occured.\n"},
    {0x0A, anyType, CoolingRedundancy_EventOccurred, "Cooling event occured.\n"},
    {0x0C, anyType, Memory_EventOccurred, "Memory event occured.\n"},
    {0x0D, anyType, DriveSlot_EventOccurred, "Drive slot bay event occured.\n"},
    {0x0F, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x10, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x12, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x13, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x16, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x19, anyType, Bios_EventOccurred, "BIOS event occured.\n"},
    {0x11, anyType, Watchdog_EventOccurred, "Watchdog event occured.\n"},
    {0x23, anyType, Watchdog_EventOccurred, "Watchdog event occured.\n"},
    {0x21, anyType, PhpSlot_EventOccurred, "Slot event occured.\n"},
    {0xDC, anyType, PGSurgeLoop_EventOccurred, "PGSurgeLoop event occured.\n"},
};
constexpr Route otherwise = {anyType, anyType, Generic_EventOccurred, "Generic event occured.\n"};

const Route& findRoute(const EVENT_DATA_STRUCT& record)
{
    for (const Route& route : routes)
        if (route.sensorType == record.ucSensorType &&
            (route.eventType == anyType || route.eventType == client::traps::eventTypeOf(record)))
            return route;
    return otherwise;
}

} // namespace

namespace client::events {

void routeEvent(const EVENT_DATA_STRUCT& record)
{
    if (record.ucRecordType != ipmi::systemEventType)
        trace("\n Inside the routeEvent Function: String comparioson failed!!\n");
    const Route& route = findRoute(record);
    trace("%s", route.trace);
    if (!route.classifier)
        return;
    EVENT_DATA_STRUCT copy = record;
    try {
        route.classifier(&copy);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        trace("\n This call is failed\n");
    }
}

} // namespace client::events

int SNMP_EventInterface::HandleEvent(CEventWrapper& wrapper, int eventGroup)
{
    client::door::awaitInitComplete();
    return client::events::handleByClone(wrapper, eventGroup);
}
