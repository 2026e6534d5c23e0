#pragma once

#include "client/events/SelWrapper.hpp"

namespace client::events {

/// Has the clone of the group make an event for the trap queue, and drains the queue at once, so that the trap does
/// not wait for the thread's next turn. 0 for a group without a clone, else 1.
int handleByClone(CEventWrapper& wrapper, int eventGroup);

/// The clone of one group; it holds nothing.
template<int Group>
class SNMP_EventClone {
public:
    static int HandleEvent(CEventWrapper& wrapper) { return handleByClone(wrapper, Group); }
};

} // namespace client::events

using SNMP_BiosEventClone = client::events::SNMP_EventClone<2>;
using SNMP_ChassisEventClone = client::events::SNMP_EventClone<3>;
using SNMP_CoolingSensorEventClone = client::events::SNMP_EventClone<4>;
using SNMP_CoolingSpareEventClone = client::events::SNMP_EventClone<5>;
using SNMP_MemoryEventClone = client::events::SNMP_EventClone<8>;
using SNMP_PhpSlotEventClone = client::events::SNMP_EventClone<9>;
using SNMP_PowerSupplyEventClone = client::events::SNMP_EventClone<10>;
using SNMP_PowerSpareEventClone = client::events::SNMP_EventClone<11>;
using SNMP_ProcessorEventClone = client::events::SNMP_EventClone<12>;
using SNMP_TemperatureSensorEventClone = client::events::SNMP_EventClone<14>;
using SNMP_VoltageSensorEventClone = client::events::SNMP_EventClone<15>;
using SNMP_DriveSlotEventClone = client::events::SNMP_EventClone<19>;
using SNMP_PGSurgeLoopEventClone = client::events::SNMP_EventClone<20>;
