#pragma once

#include "client/traps/EventData.hpp"
#include "ipmi/Bytes.hpp"

/// One classifier for each family of sensors: which device a record of the event log speaks of, whether it begins or
/// ends a condition, how grave that is, and in which words it is told. Each hands what it finds to the SNMP side and
/// gives its answer: 0 when there is no event to make, or no record, else 1. An answer of 0 to an event is asked again
/// four times, with hours in between. All run on the event thread.
int Temperature_EventOccurred(EVENT_DATA_STRUCT* record);
int Voltage_EventOccurred(EVENT_DATA_STRUCT* record);
int Fan_EventOccurred(EVENT_DATA_STRUCT* record);
int CoolingRedundancy_EventOccurred(EVENT_DATA_STRUCT* record);
int PowerSupply_EventOccurred(EVENT_DATA_STRUCT* record);
int PowerSupplyRedundancy_EventOccurred(EVENT_DATA_STRUCT* record);
int Memory_EventOccurred(EVENT_DATA_STRUCT* record);
int Processor_EventOccurred(EVENT_DATA_STRUCT* record);
int Bios_EventOccurred(EVENT_DATA_STRUCT* record);
int Watchdog_EventOccurred(EVENT_DATA_STRUCT* record);
int SecurityViolation_EventOccurred(EVENT_DATA_STRUCT* record);
int Intrusion_EventOccurred(EVENT_DATA_STRUCT* record);
int DriveSlot_EventOccurred(EVENT_DATA_STRUCT* record);
int PhpSlot_EventOccurred(EVENT_DATA_STRUCT* record);
int PGSurgeLoop_EventOccurred(EVENT_DATA_STRUCT* record);
/// Makes no event.
int Generic_EventOccurred(EVENT_DATA_STRUCT* record);

namespace client::events {

/// Whether the sensor data records that are known have that of the sensor of this event, a record of the event log
/// (IPMI 2.0, 32.1): same number and type, and the event's maker owns it.
bool hasRecordOfSensor(ipmi::ByteView event);

} // namespace client::events
