#include "client/events/ClassifierTables.hpp"

#include "client/events/SelWatcher.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SelView.hpp"
#include "ipmi/SensorReading.hpp"

#include <algorithm>
#include <span>

// What the states of sensors mean, in words of our own. Some words choose the trap ("OFF", "drive removed", "reports it
// has been asserted." and others, see TrapFunctions.cpp), so no text about a recovery holds one that stands for a
// failure. How grave a state is agrees with the texts of the event log (share/translations/english.toml). Trap and log
// differ only where a family's table is given whole (GivenMeanings.cpp): thresholds of temperatures, voltages and fans
// have the words of their decimal offset, and the end of a processor's state has no severity at all.

namespace client::events {

namespace {

using traps::eventTypeOf;

/// How grave a state is; an untold one leaves lists and health as they are.
enum class Gravity { untold, fine, nonCritical, critical, nonRecoverable };
using enum Gravity;

struct GravityWords {
    const char* tail;
    const char* severity;
    int CEventData::*counter;
};

constexpr GravityWords gravityWords[] = {
    {"", "", nullptr},
    {". Status is OK", "OK", nullptr},
    {". Status is Non-Critical", "Degraded", &CEventData::m_iWarningErrors},
    {". Status is Critical", "Error", &CEventData::m_iCriticalErrors},
    {". Status is Non-Recoverable", "Fatal", &CEventData::m_iFatalErrors},
};

struct State {
    const char* phrase; ///< what the sensor reports
    Gravity gravity;
};

struct StateRow {
    State asserted;
    State deasserted;
};
using StateRows = std::span<const StateRow>;

// Generic event types (table 42-2).

constexpr StateRow usageRows[] = {
    {{"it is idle", untold}, {"it is no longer idle", untold}},
    {{"it is active", untold}, {"it is no longer active", untold}},
    {{"it is busy", untold}, {"it is no longer busy", untold}},
};

/// What the state is, only the board's maker knows.
constexpr StateRow digitalRows[] = {
    {{"its state has been deasserted", untold}, {"its state has been asserted", untold}},
    {{"its state has been asserted", untold}, {"its state has been deasserted", untold}},
};

constexpr State failurePredicted = {"it is about to fail", nonCritical};
constexpr State noFailurePredicted = {"no failure is expected", fine};
constexpr StateRow predictionRows[] = {
    {noFailurePredicted, failurePredicted},
    {failurePredicted, noFailurePredicted},
};

constexpr State beyondLimit = {"its limit has been exceeded", nonCritical};
constexpr State withinLimit = {"it is within its limit", fine};
constexpr StateRow limitRows[] = {
    {withinLimit, beyondLimit},
    {beyondLimit, withinLimit},
};

constexpr State lagging = {"performance is lagging", nonCritical};
constexpr State performing = {"performance has been met", fine};
constexpr StateRow performanceRows[] = {
    {performing, lagging},
    {lagging, performing},
};

constexpr StateRow severityRows[] = {
    {{"it is in order", fine}, {"it is no longer known to be in order", untold}},
    {{"it has become non-critical", nonCritical}, {"it is no longer non-critical", fine}},
    {{"it has become critical", critical}, {"it is no longer critical", fine}},
    {{"it has become non-recoverable", nonRecoverable}, {"it is no longer non-recoverable", fine}},
    {{"it has come back to non-critical", nonCritical}, {"it is no longer non-critical", fine}},
    {{"it has come back to critical", critical}, {"it is no longer critical", fine}},
    {{"it is non-recoverable", nonRecoverable}, {"it is no longer non-recoverable", fine}},
    {{"it is being watched", untold}, {"it is no longer being watched", untold}},
    {{"a note without consequence", untold}, {"the end of a note without consequence", untold}},
};

constexpr State removed = {"the device has been removed or is absent", untold};
constexpr State inserted = {"the device has been inserted or is present", untold};
constexpr StateRow presenceRows[] = {
    {removed, inserted},
    {inserted, removed},
};

constexpr State disabled = {"the device has been disabled", untold};
constexpr State enabled = {"the device has been enabled", untold};
constexpr StateRow enablingRows[] = {
    {disabled, enabled},
    {enabled, disabled},
};

constexpr StateRow availabilityRows[] = {
    {{"it is running", fine}, {"it is no longer running", untold}},
    {{"it is in test", untold}, {"it is no longer in test", untold}},
    {{"it is without power", nonCritical}, {"it has power again", fine}},
    {{"it is on line", fine}, {"it is no longer on line", untold}},
    {{"it is off line", nonCritical}, {"it is no longer off line", fine}},
    {{"it is off duty", untold}, {"it is no longer off duty", untold}},
    {{"it works with restrictions", nonCritical}, {"it works without restrictions again", fine}},
    {{"it saves power", untold}, {"it no longer saves power", untold}},
    {{"it was not installed properly", critical}, {"it is installed properly now", fine}},
};

constexpr StateRow redundancyRows[] = {
    {{"Full Redundancy", fine}, {"redundancy is no longer full", nonCritical}},
    {{"Redundancy Lost", critical}, {"redundancy is no longer lost", fine}},
    {{"Redundancy Degraded", nonCritical}, {"redundancy is no longer degraded", fine}},
    {{"Redundancy Lost, with Sufficient Resources", critical}, {"redundancy is no longer lost", fine}},
    {{"Redundancy Lost, now with Sufficient Resources", critical}, {"redundancy is no longer lost", fine}},
    {{"Redundancy Lost, with Insufficient Resources", critical}, {"redundancy is no longer lost", fine}},
    {{"Redundancy Degraded from Full Redundancy", nonCritical}, {"redundancy is no longer degraded", fine}},
    {{"Redundancy Degraded from Redundancy Lost", nonCritical}, {"redundancy is no longer degraded", fine}},
};

constexpr StateRow powerStateRows[] = {
    {{"it is in power state D0", untold}, {"it has left power state D0", untold}},
    {{"it is in power state D1", untold}, {"it has left power state D1", untold}},
    {{"it is in power state D2", untold}, {"it has left power state D2", untold}},
    {{"it is in power state D3", untold}, {"it has left power state D3", untold}},
};

// Sensor types (table 42-3).

/// A text about the end of an intrusion that named the closed chassis in the words of the trap rules would choose the
/// trap of an intrusion.
constexpr State chassisOpen = {"there has been a chassis intrusion", critical};
constexpr State chassisClosed = {"the chassis has been closed again", fine};
constexpr StateRow intrusionRows[] = {
    {chassisOpen, chassisClosed},
    {{"there has been a chassis intrusion: drive bay", critical}, {"the drive bay has been closed again", fine}},
    {{"there has been a chassis intrusion: I/O card area", critical},
     {"the I/O card area has been closed again", fine}},
    {{"there has been a chassis intrusion: processor area", critical},
     {"the processor area has been closed again", fine}},
    {{"LAN Leash Lost: System Unplugged From LAN", nonCritical}, {"the system is plugged into the LAN again", fine}},
    {{"the system has been docked without permission", nonCritical}, {"the docking is permitted now", fine}},
    {{"there has been a chassis intrusion: fan area", critical}, {"the fan area has been closed again", fine}},
};

constexpr StateRow intrusionSignalRows[] = {
    {chassisClosed, chassisOpen},
    {chassisOpen, chassisClosed},
};

constexpr State driveAbsent = {"the device has been removed or is absent", nonCritical};
constexpr State drivePresent = {"the device has been inserted or is present", fine};
constexpr StateRow slotPresenceRows[] = {
    {driveAbsent, drivePresent},
    {drivePresent, driveAbsent},
};

constexpr State driveThere = {"drive presence", fine};
constexpr State driveGone = {"drive removed", nonCritical};
constexpr StateRow slotSignalRows[] = {
    {driveGone, driveThere},
    {driveThere, driveGone},
};

constexpr StateRow driveSlotRows[] = {
    {driveThere, driveGone},
    {{"the drive is faulty", critical}, {"the drive is no longer faulty", fine}},
    {{"the drive is about to fail", nonCritical}, {"the drive is no longer about to fail", fine}},
    {{"the drive is a hot spare", fine}, {"the drive is no longer a hot spare", fine}},
    {{"a check of the array is under way", fine}, {"the check of the array has ended", fine}},
    {{"the drive's array is critical", critical}, {"the drive's array is no longer critical", fine}},
    {{"the drive's array has failed", nonRecoverable}, {"the drive's array works again", fine}},
    {{"the drive is being rebuilt", nonCritical}, {"the rebuild has ended", fine}},
    {{"the rebuild was broken off", critical}, {"the broken rebuild is settled", fine}},
};

constexpr StateRow firmwareRows[] = {
    {{"an error in the power-on self-test", critical}, {"the self-test is free of that error", fine}},
    {{"the system firmware hangs", critical}, {"the system firmware goes on", fine}},
    {{"the system firmware makes progress", fine}, {"a step of the system firmware has ended", fine}},
};

constexpr StateRow loggingRows[] = {
    {{"corrected memory errors are no longer logged", nonCritical}, {"corrected memory errors are logged again", fine}},
    {{"events of one type are no longer logged", nonCritical}, {"events of that type are logged again", fine}},
    {{"the event log has been cleared", fine}, {"the event log is no longer empty", fine}},
    {{"no event is logged any more", nonCritical}, {"events are logged again", fine}},
    {{"the event log is full", nonCritical}, {"the event log has room again", fine}},
    {{"the event log is almost full", nonCritical}, {"the event log has room again", fine}},
    {{"corrected machine check errors are no longer logged", nonCritical},
     {"corrected machine check errors are logged again", fine}},
};

constexpr StateRow systemEventRows[] = {
    {{"the system has been reconfigured", fine}, {"the reconfiguration is over", fine}},
    {{"an OEM system boot event has occurred", fine}, {"the OEM event at boot is over", fine}},
    {{"an undetermined system hardware failure", critical}, {"the hardware is well again", fine}},
    {{"an entry was added to the auxiliary log", fine}, {"the auxiliary log's entry is complete", fine}},
    {{"the platform event filter acts", fine}, {"the platform event filter has acted", fine}},
    {{"a clock is being synchronised", fine}, {"a clock has been synchronised", fine}},
};

constexpr StateRow interruptRows[] = {
    {{"a diagnostic interrupt from the front panel", critical}, {"the front panel's interrupt is over", fine}},
    {{"a bus time-out", critical}, {"the bus answers again", fine}},
    {{"an I/O channel check", critical}, {"the I/O channel is well again", fine}},
    {{"an interrupt by software", critical}, {"the software's interrupt is over", fine}},
    {{"a PCI parity error", critical}, {"the PCI bus is well again", fine}},
    {{"a PCI system error", critical}, {"the PCI bus is well again", fine}},
    {{"a fail-safe time-out of the bus", critical}, {"the bus answers again", fine}},
    {{"a correctable bus error", nonCritical}, {"the bus is well again", fine}},
    {{"an uncorrectable bus error", critical}, {"the bus is well again", fine}},
    {{"a fatal interrupt", nonRecoverable}, {"the fatal interrupt is over", fine}},
    {{"a fatal bus error", nonRecoverable}, {"the bus is well again", fine}},
    {{"the bus is degraded", nonCritical}, {"the bus is no longer degraded", fine}},
};

constexpr State interruptSignal = {"a critical interrupt", critical};
constexpr State noInterruptSignal = {"no critical interrupt", fine};
constexpr StateRow interruptSignalRows[] = {
    {noInterruptSignal, interruptSignal},
    {interruptSignal, noInterruptSignal},
};

constexpr StateRow chipSetRows[] = {
    {{"the soft power control has failed", critical}, {"the soft power control works again", fine}},
    {{"the chip set was too hot and stopped", nonRecoverable}, {"the chip set is cool again", fine}},
};

constexpr State processorSignal = {"the processor's error signal has been asserted", critical};
constexpr State noProcessorSignal = {"the processor's error signal has been deasserted", fine};
constexpr StateRow processorSignalRows[] = {
    {noProcessorSignal, processorSignal},
    {processorSignal, noProcessorSignal},
};

/// The words in capitals choose the trap.
constexpr StateRow phpSlotRows[] = {
    {{"the slot has a fault", critical}, {"the slot has no fault any more", fine}},
    {{"the slot is marked for identification", fine}, {"the slot is no longer marked", fine}},
    {{"a device is in the slot", fine}, {"no device is in the slot any more", fine}},
    {{"the slot is ready for a device", fine}, {"the slot is no longer ready for a device", fine}},
    {{"the device is ready for removal", fine}, {"the device is no longer ready for removal", fine}},
    {{"the slot's power is OFF", fine}, {"the slot's power is ON", fine}},
    {{"removal of the device is requested", fine}, {"removal of the device is no longer requested", fine}},
    {{"the slot's interlock is open", nonCritical}, {"the slot's interlock is closed", fine}},
    {{"the slot is disabled", nonCritical}, {"the slot is enabled again", fine}},
    {{"the slot holds a spare", fine}, {"the slot no longer holds a spare", fine}},
};

constexpr State surge = {"it has been asserted", critical};
constexpr State noSurge = {"it has been deasserted", fine};
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
    return record.ucEventData1 % 16;
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
    const State& state = record.ucEventTrigger >> 7 == 0 ? rows[offset].asserted : rows[offset].deasserted;
    const GravityWords& words = gravityWords[static_cast<std::size_t>(state.gravity)];
    return {std::string("reports ") + state.phrase + doubtOf(record) + words.tail, words.severity, words.counter};
}

} // namespace client::events
