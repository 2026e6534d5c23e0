#include "client/events/ClassifierTables.hpp"

#include "client/events/SelWatcher.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SelView.hpp"
#include "ipmi/SensorReading.hpp"

#include <algorithm>
#include <span>

// What the states of sensors mean, in words of our own. Some words choose the trap ("OFF", "drive removed", "reports it
// has been asserted." and others, see TrapFunctions.cpp), so no text about a recovery holds one that stands for a
// failure. How grave a state is the one list says (ipmi/States.hpp), with which the texts of the event log agree. Trap
// and log differ only where a family's table is given whole (GivenMeanings.cpp): thresholds of temperatures, voltages
// and fans have the words of their decimal offset, and the end of a processor's state has no severity at all.

namespace client::events {

namespace {

using traps::eventTypeOf;

/// An untold gravity leaves lists and health as they are.
constexpr GravityWords gravityWords[] = {
    {"", "", nullptr},
    {". Status is OK", "OK", nullptr},
    {". Status is Non-Critical", "Degraded", &CEventData::m_iWarningErrors},
    {". Status is Critical", "Error", &CEventData::m_iCriticalErrors},
    {". Status is Non-Recoverable", "Fatal", &CEventData::m_iFatalErrors},
};

/// What the sensor reports.
struct StateRow {
    const char* asserted;
    const char* deasserted;
};
using StateRows = std::span<const StateRow>;

// Generic event types (table 42-2).

constexpr StateRow usageRows[] = {
    {"it is idle", "it is no longer idle"},
    {"it is active", "it is no longer active"},
    {"it is busy", "it is no longer busy"},
};

/// What the state is, only the board's maker knows.
constexpr StateRow digitalRows[] = {
    {"its state has been deasserted", "its state has been asserted"},
    {"its state has been asserted", "its state has been deasserted"},
};

constexpr const char* failurePredicted = "it is about to fail";
constexpr const char* noFailurePredicted = "no failure is expected";
constexpr StateRow predictionRows[] = {
    {noFailurePredicted, failurePredicted},
    {failurePredicted, noFailurePredicted},
};

constexpr const char* beyondLimit = "its limit has been exceeded";
constexpr const char* withinLimit = "it is within its limit";
constexpr StateRow limitRows[] = {
    {withinLimit, beyondLimit},
    {beyondLimit, withinLimit},
};

constexpr const char* lagging = "performance is lagging";
constexpr const char* performing = "performance has been met";
constexpr StateRow performanceRows[] = {
    {performing, lagging},
    {lagging, performing},
};

constexpr StateRow severityRows[] = {
    {"it is in order", "it is no longer known to be in order"},
    {"it has become non-critical", "it is no longer non-critical"},
    {"it has become critical", "it is no longer critical"},
    {"it has become non-recoverable", "it is no longer non-recoverable"},
    {"it has come back to non-critical", "it is no longer non-critical"},
    {"it has come back to critical", "it is no longer critical"},
    {"it is non-recoverable", "it is no longer non-recoverable"},
    {"it is being watched", "it is no longer being watched"},
    {"a note without consequence", "the end of a note without consequence"},
};

constexpr const char* removed = "the device has been removed or is absent";
constexpr const char* inserted = "the device has been inserted or is present";
constexpr StateRow presenceRows[] = {
    {removed, inserted},
    {inserted, removed},
};

constexpr const char* disabled = "the device has been disabled";
constexpr const char* enabled = "the device has been enabled";
constexpr StateRow enablingRows[] = {
    {disabled, enabled},
    {enabled, disabled},
};

constexpr StateRow availabilityRows[] = {
    {"it is running", "it is no longer running"},
    {"it is in test", "it is no longer in test"},
    {"it is without power", "it has power again"},
    {"it is on line", "it is no longer on line"},
    {"it is off line", "it is no longer off line"},
    {"it is off duty", "it is no longer off duty"},
    {"it works with restrictions", "it works without restrictions again"},
    {"it saves power", "it no longer saves power"},
    {"it was not installed properly", "it is installed properly now"},
};

constexpr StateRow redundancyRows[] = {
    {"Full Redundancy", "redundancy is no longer full"},
    {"Redundancy Lost", "redundancy is no longer lost"},
    {"Redundancy Degraded", "redundancy is no longer degraded"},
    {"Redundancy Lost, with Sufficient Resources", "redundancy is no longer lost"},
    {"Redundancy Lost, now with Sufficient Resources", "redundancy is no longer lost"},
    {"Redundancy Lost, with Insufficient Resources", "redundancy is no longer lost"},
    {"Redundancy Degraded from Full Redundancy", "redundancy is no longer degraded"},
    {"Redundancy Degraded from Redundancy Lost", "redundancy is no longer degraded"},
};

constexpr StateRow powerStateRows[] = {
    {"it is in power state D0", "it has left power state D0"},
    {"it is in power state D1", "it has left power state D1"},
    {"it is in power state D2", "it has left power state D2"},
    {"it is in power state D3", "it has left power state D3"},
};

// Sensor types (table 42-3).

/// A text about the end of an intrusion that named the closed chassis in the words of the trap rules would choose the
/// trap of an intrusion.
constexpr const char* chassisOpen = "there has been a chassis intrusion";
constexpr const char* chassisClosed = "the chassis has been closed again";
constexpr StateRow intrusionRows[] = {
    {chassisOpen, chassisClosed},
    {"there has been a chassis intrusion: drive bay", "the drive bay has been closed again"},
    {"there has been a chassis intrusion: I/O card area", "the I/O card area has been closed again"},
    {"there has been a chassis intrusion: processor area", "the processor area has been closed again"},
    {"LAN Leash Lost: System Unplugged From LAN", "the system is plugged into the LAN again"},
    {"the system has been docked without permission", "the docking is permitted now"},
    {"there has been a chassis intrusion: fan area", "the fan area has been closed again"},
};

constexpr StateRow intrusionSignalRows[] = {
    {chassisClosed, chassisOpen},
    {chassisOpen, chassisClosed},
};

constexpr const char* driveAbsent = "the device has been removed or is absent";
constexpr const char* drivePresent = "the device has been inserted or is present";
constexpr StateRow slotPresenceRows[] = {
    {driveAbsent, drivePresent},
    {drivePresent, driveAbsent},
};

constexpr const char* driveThere = "drive presence";
constexpr const char* driveGone = "drive removed";
constexpr StateRow slotSignalRows[] = {
    {driveGone, driveThere},
    {driveThere, driveGone},
};

constexpr StateRow driveSlotRows[] = {
    {driveThere, driveGone},
    {"the drive is faulty", "the drive is no longer faulty"},
    {"the drive is about to fail", "the drive is no longer about to fail"},
    {"the drive is a hot spare", "the drive is no longer a hot spare"},
    {"a check of the array is under way", "the check of the array has ended"},
    {"the drive's array is critical", "the drive's array is no longer critical"},
    {"the drive's array has failed", "the drive's array works again"},
    {"the drive is being rebuilt", "the rebuild has ended"},
    {"the rebuild was broken off", "the broken rebuild is settled"},
};

constexpr StateRow firmwareRows[] = {
    {"an error in the power-on self-test", "the self-test is free of that error"},
    {"the system firmware hangs", "the system firmware goes on"},
    {"the system firmware makes progress", "a step of the system firmware has ended"},
};

constexpr StateRow loggingRows[] = {
    {"corrected memory errors are no longer logged", "corrected memory errors are logged again"},
    {"events of one type are no longer logged", "events of that type are logged again"},
    {"the event log has been cleared", "the event log is no longer empty"},
    {"no event is logged any more", "events are logged again"},
    {"the event log is full", "the event log has room again"},
    {"the event log is almost full", "the event log has room again"},
    {"corrected machine check errors are no longer logged", "corrected machine check errors are logged again"},
};

constexpr StateRow systemEventRows[] = {
    {"the system has been reconfigured", "the reconfiguration is over"},
    {"an OEM system boot event has occurred", "the OEM event at boot is over"},
    {"an undetermined system hardware failure", "the hardware is well again"},
    {"an entry was added to the auxiliary log", "the auxiliary log's entry is complete"},
    {"the platform event filter acts", "the platform event filter has acted"},
    {"a clock is being synchronised", "a clock has been synchronised"},
};

constexpr StateRow interruptRows[] = {
    {"a diagnostic interrupt from the front panel", "the front panel's interrupt is over"},
    {"a bus time-out", "the bus answers again"},
    {"an I/O channel check", "the I/O channel is well again"},
    {"an interrupt by software", "the software's interrupt is over"},
    {"a PCI parity error", "the PCI bus is well again"},
    {"a PCI system error", "the PCI bus is well again"},
    {"a fail-safe time-out of the bus", "the bus answers again"},
    {"a correctable bus error", "the bus is well again"},
    {"an uncorrectable bus error", "the bus is well again"},
    {"a fatal interrupt", "the fatal interrupt is over"},
    {"a fatal bus error", "the bus is well again"},
    {"the bus is degraded", "the bus is no longer degraded"},
};

constexpr const char* interruptSignal = "a critical interrupt";
constexpr const char* noInterruptSignal = "no critical interrupt";
constexpr StateRow interruptSignalRows[] = {
    {noInterruptSignal, interruptSignal},
    {interruptSignal, noInterruptSignal},
};

constexpr StateRow chipSetRows[] = {
    {"the soft power control has failed", "the soft power control works again"},
    {"the chip set was too hot and stopped", "the chip set is cool again"},
};

constexpr const char* processorSignal = "the processor's error signal has been asserted";
constexpr const char* noProcessorSignal = "the processor's error signal has been deasserted";
constexpr StateRow processorSignalRows[] = {
    {noProcessorSignal, processorSignal},
    {processorSignal, noProcessorSignal},
};

/// The words in capitals choose the trap.
constexpr StateRow phpSlotRows[] = {
    {"the slot has a fault", "the slot has no fault any more"},
    {"the slot is marked for identification", "the slot is no longer marked"},
    {"a device is in the slot", "no device is in the slot any more"},
    {"the slot is ready for a device", "the slot is no longer ready for a device"},
    {"the device is ready for removal", "the device is no longer ready for removal"},
    {"the slot's power is OFF", "the slot's power is ON"},
    {"removal of the device is requested", "removal of the device is no longer requested"},
    {"the slot's interlock is open", "the slot's interlock is closed"},
    {"the slot is disabled", "the slot is enabled again"},
    {"the slot holds a spare", "the slot no longer holds a spare"},
};

constexpr const char* surge = "it has been asserted";
constexpr const char* noSurge = "it has been deasserted";
constexpr StateRow surgeRows[] = {{surge, noSurge}};
constexpr StateRow surgeSignalRows[] = {
    {noSurge, surge},
    {surge, noSurge},
};

constexpr int anySensor = -1;
constexpr int specific = ipmi::eventtype::sensorSpecific;
constexpr int digital = ipmi::eventtype::digitalDiscrete;

struct StateTable {
    int sensorType;
    int eventType;
    StateRows rows;
};

/// The first that fits counts.
constexpr StateTable stateTables[] = {
    {0x05, specific, intrusionRows},   {0x05, digital, intrusionSignalRows}, {0x07, digital, processorSignalRows},
    {0x0D, specific, driveSlotRows},   {0x0D, digital, slotSignalRows},      {0x0D, 0x08, slotPresenceRows},
    {0x0F, specific, firmwareRows},    {0x10, specific, loggingRows},        {0x12, specific, systemEventRows},
    {0x13, specific, interruptRows},   {0x13, digital, interruptSignalRows}, {0x19, specific, chipSetRows},
    {0x21, specific, phpSlotRows},     {0xDC, specific, surgeRows},          {0xDC, digital, surgeSignalRows},
    {anySensor, 0x02, usageRows},      {anySensor, digital, digitalRows},    {anySensor, 0x04, predictionRows},
    {anySensor, 0x05, limitRows},      {anySensor, 0x06, performanceRows},   {anySensor, 0x07, severityRows},
    {anySensor, 0x08, presenceRows},   {anySensor, 0x09, enablingRows},      {anySensor, 0x0A, availabilityRows},
    {anySensor, 0x0B, redundancyRows}, {anySensor, 0x0C, powerStateRows},
};

StateRows rowsFor(const EVENT_DATA_STRUCT& record)
{
    for (const StateTable& table : stateTables)
        if ((table.sensorType == record.ucSensorType || table.sensorType == anySensor) &&
            table.eventType == eventTypeOf(record))
            return table.rows;
    return {};
}

std::string eventDataText(const ipmi::SelView& record)
{
    std::string text = "event data";
    for (const int number : {1, 2, 3})
        text += " " + ipmi::hexByte(record.eventData(number)) + "h";
    return text;
}

/// For what the tables have no words for: an OEM's own event, say.
Meaning meaningOfBytes(const EVENT_DATA_STRUCT& record)
{
    const ipmi::Bytes bytes = bytesOf(record);
    const bool isOver = record.ucEventTrigger >> 7 != 0;
    Meaning meaning;
    meaning.status = std::string("reports ") + (isOver ? "the end of an event" : "an event") + " of type " +
                     ipmi::hexByte(static_cast<std::uint8_t>(eventTypeOf(record))) + "h";
    if (!bytes.empty())
        meaning.status += " (" + eventDataText(ipmi::SelView(bytes)) + ")";
    return meaning;
}

} // namespace

std::size_t offsetOf(const EVENT_DATA_STRUCT& record)
{
    if (common::policy().readsTrueOffsets)
        if (const ipmi::Bytes bytes = bytesOf(record); !bytes.empty())
            return ipmi::SelView(bytes).offset();
    return record.ucEventData1 % 16;
}

const GravityWords& wordsOf(ipmi::Gravity gravity)
{
    return gravityWords[static_cast<std::size_t>(gravity)];
}

ipmi::Gravity gravityOf(const EVENT_DATA_STRUCT& record)
{
    const auto states = ipmi::statesOf(static_cast<std::uint8_t>(eventTypeOf(record)), record.ucSensorType);
    const std::size_t offset = offsetOf(record);
    if (offset >= states.size())
        return ipmi::Gravity::untold;
    return record.ucEventTrigger >> 7 == 0 ? states[offset].gravity : states[offset].ofEnd;
}

std::string doubtOf(const EVENT_DATA_STRUCT& record)
{
    const ipmi::Bytes bytes = bytesOf(record);
    const ipmi::SelView view(bytes);
    return bytes.empty() || view.offset() == offsetOf(record) ? "" : ", or another state (" + eventDataText(view) + ")";
}

Meaning meaningOfState(const EVENT_DATA_STRUCT& record)
{
    const StateRows rows = rowsFor(record);
    const std::size_t offset = offsetOf(record);
    if (offset >= rows.size())
        return meaningOfBytes(record);
    const char* const phrase = record.ucEventTrigger >> 7 == 0 ? rows[offset].asserted : rows[offset].deasserted;
    const GravityWords& words = wordsOf(gravityOf(record));
    return {std::string("reports ") + phrase + doubtOf(record) + words.tail, words.severity, words.counter};
}

} // namespace client::events
