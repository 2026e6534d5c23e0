#pragma once

#include "client/traps/EventData.hpp"

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
