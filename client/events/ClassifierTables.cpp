#include "client/events/ClassifierTables.hpp"

namespace client::events {

namespace {

constexpr auto fatal = &CEventData::m_iFatalErrors;
constexpr auto critical = &CEventData::m_iCriticalErrors;
constexpr auto warning = &CEventData::m_iWarningErrors;

constexpr Meaning nothing = {};

constexpr OffsetRow thresholdRows[] = {
    {nothing},
    {{"Status is Upper Non-Critical", ""}},
    {{"Status is Lower Non-Critical", "Fatal", fatal}},
    {{"Status is Lower Non-Critical", "Fatal", fatal}},
    {{"Status is Lower Critical", "Fatal", fatal}},
    {{"Status is Upper Non-Recoverable", "Fatal", fatal}},
    {{"Status is Lower Non-Recoverable", "Fatal", fatal}},
    {{"Status is Upper Non-Critical", "Degraded", warning}},
    {{"Status is Upper Non-Critical", "Fatal", critical}},
    {{"Status is Upper Non-Critical", "Error", critical}},
    {{"Status is Upper Critical", "Fatal", fatal}},
    {{"Status is Upper Critical", "Fatal", fatal}},
};

/// The text of these, of power supplies and of memory is the translator's: only the words count.
constexpr OffsetRow coolingRedundancyRows[] = {
    {{"", "OK"}, {"", "Degraded", warning}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {nothing, nothing},
    {{"", "Degraded", warning}},
    {{"", "Error", critical}},
    {nothing, nothing},
};

constexpr OffsetRow powerSupplyRows[] = {
    {{"", "OK"}},
    {{"", "Error", critical}},
    {{"", "Degraded", warning}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
};

/// Redundancy (IPMI 2.0, table 42-2, type 0Bh). Leaving a state of less redundancy does not say that it is full.
constexpr OffsetRow powerRedundancyRows[] = {
    {{"Full Redundancy. Status is OK", "OK"}, {"Redundancy Degraded. Status is Non-Critical", "Degraded", warning}},
    {{"Redundancy Lost. Status is Critical", "Degraded", warning}},
    {{"Redundancy Degraded. Status is Non-Critical", "Degraded", warning}},
    {{"Redundancy Lost, with Sufficient Resources. Status is Critical", "Degraded", warning}},
    {{"Redundancy Lost, now with Sufficient Resources. Status is Critical", "Degraded", warning}},
    {{"Redundancy Lost, with Insufficient Resources. Status is Critical", "Degraded", warning}},
    {{"Redundancy Degraded from Full Redundancy. Status is Non-Critical", "Degraded", warning}},
    {{"Redundancy Degraded from Redundancy Lost. Status is Non-Critical", "Degraded", warning}},
};

/// Memory (IPMI 2.0, table 42-3, type 0Ch).
constexpr OffsetRow memoryRows[] = {
    {{"", "Degraded", warning}}, // correctable ECC
    {{"", "Fatal", fatal}},      // uncorrectable ECC
    {{"", "Error", critical}},   // parity
    {{"", "Error", critical}},   // scrub failed
    {{"", "Error", critical}},   // device disabled
    {{"", "Degraded", warning}}, // logging limit
    {{"", "Information"}},       // presence
    {{"", "Error", critical}},   // configuration error
    {{"", "Information"}},       // spare
};

constexpr Meaning backWithoutWord = {"Status is OK", ""};

/// Processor (IPMI 2.0, table 42-3, type 07h).
constexpr OffsetRow processorRows[] = {
    {{"IERR (Internal Error). Status is Critical", "Error", critical}, backWithoutWord},
    {{"Thermal Trip. Status is Critical", "Error", critical}, backWithoutWord},
    {{"FRB1/BIST Failure. Status is Non-Recoverable", "Fatal", fatal}, backWithoutWord},
    {{"FRB2/Hang in POST Failure. Status is Non-Recoverable", "Fatal", fatal}, backWithoutWord},
    {{"FRB3: the processor did not start. Status is Non-Recoverable", "Fatal", fatal}, backWithoutWord},
    {{"Configuration Error. Status is Non-Critical", "Information", warning}, backWithoutWord},
    {{"SM BIOS 'Uncorrectable CPU-Complex Error'. Status is Non-Critical", "Information", warning}, backWithoutWord},
    {{"the processor's presence has been detected. Status is OK", "Information"}, backWithoutWord},
    {{"the processor has been disabled. Status is Critical", "Error", critical}, backWithoutWord},
    {{"the terminator's presence has been detected. Status is OK", "Information"}, backWithoutWord},
    {{"the processor has been throttled. Status is Non-Critical", "Information", warning}, backWithoutWord},
};

/// System firmware (type 0Fh).
constexpr OffsetRow firmwareRows[] = {
    {{"error in the power-on self-test. Status is Critical", "Error", critical}},
    {{"the system firmware hangs. Status is Non-Recoverable", "Fatal", fatal}},
    {{"the system firmware makes progress. Status is OK", "Information"}},
};

/// System event (type 12h).
constexpr OffsetRow systemEventRows[] = {
    {{"the system has been reconfigured. Status is OK", "Information"}},
    {{"an OEM system boot event has occurred. Status is OK", "Information"}},
    {{"undetermined system hardware failure. Status is Critical", "Error", critical}},
    {{"an entry was added to the auxiliary log. Status is OK", "Information"}},
    {{"the platform event filter acts. Status is OK", "Information"}},
    {{"a clock has been synchronised. Status is OK", "Information"}},
};

/// Critical interrupt (type 13h).
constexpr OffsetRow interruptRows[] = {
    {{"front panel interrupt. Status is Non-Critical", "Information", warning}},
    {{"bus timeout. Status is Critical", "Error", critical}},
    {{"I/O channel check. Status is Critical", "Error", critical}},
    {{"software interrupt. Status is Non-Critical", "Information", warning}},
    {{"PCI parity error. Status is Critical", "Error", critical}},
    {{"PCI system error. Status is Non-Recoverable", "Fatal", fatal}},
    {{"fail-safe timeout of the bus. Status is Critical", "Error", critical}},
    {{"correctable bus error. Status is Non-Critical", "Degraded", warning}},
    {{"uncorrectable bus error. Status is Non-Recoverable", "Fatal", fatal}},
    {{"fatal interrupt. Status is Non-Recoverable", "Fatal", fatal}},
    {{"fatal bus error. Status is Non-Recoverable", "Fatal", fatal}},
    {{"the bus is degraded. Status is Non-Critical", "Degraded", warning}},
};

/// Microcontroller (type 16h) has no states of its own; these are the generic ones (table 42-2, type 07h).
constexpr OffsetRow controllerRows[] = {
    {statusOk},
    {{"Status is Non-Critical", "Degraded", warning}},
    {{"Status is Critical", "Error", critical}},
    {{"Status is Non-Recoverable", "Fatal", fatal}},
    {{"Status is Non-Critical", "Degraded", warning}},
    {{"Status is Critical", "Error", critical}},
    {{"Status is Non-Recoverable", "Fatal", fatal}},
    {{"Status is OK", "Information"}},
    {{"Status is OK", "Information"}},
};

/// Chip set (type 19h).
constexpr OffsetRow chipSetRows[] = {
    {{"soft power control failure. Status is Critical", "Error", critical}},
    {{"thermal trip of the chip set. Status is Non-Recoverable", "Fatal", fatal}},
};

struct FirmwareTable {
    int sensorType;
    OffsetTable rows;
};

constexpr FirmwareTable firmwareTables[] = {
    {0x0F, firmwareRows}, {0x12, systemEventRows}, {0x13, interruptRows}, {0x16, controllerRows}, {0x19, chipSetRows},
};

/// Watchdogs (types 11h and 23h).
constexpr OffsetRow watchdogRows[] = {
    {{"the watchdog has expired. Status is OK", "Information"}},
    {{"the watchdog has reset the system. Status is OK", "Information"}},
    {{"the watchdog has powered the system down. Status is OK", "Information"}},
    {{"the watchdog has power cycled the system. Status is OK", "Information"}},
    {nothing},
    {nothing},
    {nothing},
    {nothing},
    {{"the watchdog has raised an interrupt. Status is OK", "Information"}},
};

/// Platform security violation (type 06h).
constexpr OffsetRow securityRows[] = {
    {{"violation of secure mode. Status is OK", "Information"}},
    {{"wrong user password before boot. Status is OK", "Information"}},
    {{"wrong setup password before boot. Status is OK", "Information"}},
    {{"wrong network boot password. Status is OK", "Information"}},
    {{"wrong password before boot. Status is OK", "Information"}},
    {{"wrong password over the network. Status is OK", "Information"}},
};

/// Physical security (type 05h).
constexpr OffsetRow intrusionRows[] = {
    {{"there has been a chassis intrusion. Status is Critical", "Error", critical}},
    {{"there has been a chassis intrusion: drive bay. Status is Critical", "Error", critical}},
    {{"there has been a chassis intrusion: I/O card area. Status is Critical", "Error", critical}},
    {{"there has been a chassis intrusion: processor area. Status is Critical", "Error", critical}},
    {{"LAN Leash Lost: System Unplugged From LAN", "Error", critical}},
    {{"unauthorized dock. Status is Critical", "Error", critical}},
    {{"there has been a chassis intrusion: fan area. Status is Critical", "Error", critical}},
};

constexpr Meaning driveAbsent = {"the slot reports the device has been removed or is absent. Status is Critical",
                                 "Error", critical};
constexpr Meaning drivePresent = {"the slot reports the device has been inserted or is present. Status is OK", "OK"};

/// Device presence (table 42-2, type 08h).
constexpr OffsetRow presenceRows[] = {
    {driveAbsent, drivePresent},
    {drivePresent, driveAbsent},
};

/// Drive slot (table 42-3, type 0Dh).
constexpr OffsetRow driveSlotRows[] = {
    {{"drive presence. Status is OK", "OK"}, {"drive removed. Status is Critical", "Error", critical}},
    {{"drive fault. Status is Critical", "Error", critical}},
    {{"the drive is about to fail. Status is Critical", "Error", critical}},
    {{"the drive is a hot spare. Status is OK", "OK"}},
    {{"consistency check in progress. Status is OK", "OK"}},
    {{"the drive is in a critical array. Status is Critical", "Error", critical}},
    {{"the drive is in a failed array. Status is Critical", "Error", critical}},
    {{"rebuild in progress. Status is OK", "OK"}},
    {{"the rebuild was aborted. Status is Critical", "Error", critical}},
};

/// Slot or connector (type 21h). The words in capitals choose the trap.
constexpr OffsetRow phpSlotRows[] = {
    {{"slot fault. Status is Critical", "Error", critical}},
    {{"slot identified. Status is OK", "OK"}},
    {{"slot in use. Status is OK", "OK"}},
    {{"slot ready for a device. Status is OK", "OK"}},
    {{"slot ready for removal. Status is OK", "OK"}},
    {{"slot power is OFF. Status is OK", "OK"}, {"slot power is ON. Status is OK", "OK"}},
    {{"slot removal request. Status is OK", "OK"}},
    {{"slot interlock. Status is OK", "OK"}},
    {{"slot disabled. Status is OK", "OK"}},
    {{"slot holds a spare device. Status is OK", "OK"}},
};

constexpr Meaning surge = {"the surge loop reports it has been asserted. Status is Critical", "Error", critical};
constexpr Meaning noSurge = {"the surge loop reports it has been deasserted. Status is OK", "OK"};

/// State (table 42-2, type 03h).
constexpr OffsetRow surgeLoopRows[] = {
    {noSurge, surge},
    {surge, noSurge},
};

constexpr int presenceType = 0x08;

} // namespace

OffsetTable thresholdOffsets(const EVENT_DATA_STRUCT&)
{
    return thresholdRows;
}

OffsetTable coolingRedundancyOffsets(const EVENT_DATA_STRUCT&)
{
    return coolingRedundancyRows;
}

OffsetTable powerSupplyOffsets(const EVENT_DATA_STRUCT&)
{
    return powerSupplyRows;
}

OffsetTable powerRedundancyOffsets(const EVENT_DATA_STRUCT&)
{
    return powerRedundancyRows;
}

OffsetTable memoryOffsets(const EVENT_DATA_STRUCT&)
{
    return memoryRows;
}

OffsetTable processorOffsets(const EVENT_DATA_STRUCT&)
{
    return processorRows;
}

OffsetTable biosOffsets(const EVENT_DATA_STRUCT& record)
{
    for (const FirmwareTable& table : firmwareTables)
        if (table.sensorType == record.ucSensorType)
            return table.rows;
    return {};
}

OffsetTable watchdogOffsets(const EVENT_DATA_STRUCT&)
{
    return watchdogRows;
}

OffsetTable securityViolationOffsets(const EVENT_DATA_STRUCT&)
{
    return securityRows;
}

OffsetTable intrusionOffsets(const EVENT_DATA_STRUCT&)
{
    return intrusionRows;
}

OffsetTable driveSlotOffsets(const EVENT_DATA_STRUCT& record)
{
    if (traps::eventTypeOf(record) == presenceType)
        return presenceRows;
    return driveSlotRows;
}

OffsetTable phpSlotOffsets(const EVENT_DATA_STRUCT&)
{
    return phpSlotRows;
}

OffsetTable surgeLoopOffsets(const EVENT_DATA_STRUCT&)
{
    return surgeLoopRows;
}

} // namespace client::events
