#pragma once

#include "client/events/SelWrapper.hpp"

/// Has the clone of the group make an event for the trap queue, and drains the queue at once, so that the trap does
/// not wait for the thread's next turn. 0 for a group without a clone, else 1.
int handleByClone(CEventWrapper& wrapper, int eventGroup);

/// The clone of one group; it holds nothing.
template<int Group>
class SNMP_EventClone {
public:
    static int HandleEvent(CEventWrapper& wrapper) { return handleByClone(wrapper, Group); }
};

using SNMP_BiosEventClone = SNMP_EventClone<2>;
using SNMP_ChassisEventClone = SNMP_EventClone<3>;
using SNMP_CoolingSensorEventClone = SNMP_EventClone<4>;
using SNMP_CoolingSpareEventClone = SNMP_EventClone<5>;
using SNMP_MemoryEventClone = SNMP_EventClone<8>;
using SNMP_PhpSlotEventClone = SNMP_EventClone<9>;
using SNMP_PowerSupplyEventClone = SNMP_EventClone<10>;
using SNMP_PowerSpareEventClone = SNMP_EventClone<11>;
using SNMP_ProcessorEventClone = SNMP_EventClone<12>;
using SNMP_TemperatureSensorEventClone = SNMP_EventClone<14>;
using SNMP_VoltageSensorEventClone = SNMP_EventClone<15>;
using SNMP_DriveSlotEventClone = SNMP_EventClone<19>;
using SNMP_PGSurgeLoopEventClone = SNMP_EventClone<20>;
