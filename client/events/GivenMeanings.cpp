#include "client/events/ClassifierTables.hpp"

#include "ipmi/SensorReading.hpp"

#include <span>

// Families whose severity words are given, offset by offset.

namespace client::events {

namespace {

constexpr auto fatal = &CEventData::m_iFatalErrors;
constexpr auto critical = &CEventData::m_iCriticalErrors;
constexpr auto warning = &CEventData::m_iWarningErrors;

/// One offset: what its assertion says, and what its deassertion.
struct Given {
    const char* status = "";
    const char* severity = "";
    int CEventData::*counter = nullptr;
};

struct GivenRow {
    Given asserted;
    Given deasserted = {"Status is OK", "OK"};
};
using GivenRows = std::span<const GivenRow>;

constexpr GivenRow thresholdRows[] = {
    {{}},
    {{"Status is Upper Non-Critical"}},
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

constexpr GivenRow coolingRedundancyRows[] = {
    {{"", "OK"}, {"", "Degraded", warning}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{}, {}},
    {{"", "Degraded", warning}},
    {{"", "Error", critical}},
    {{}, {}},
};

constexpr GivenRow powerSupplyRows[] = {
    {{"", "OK"}},
    {{"", "Error", critical}},
    {{"", "Degraded", warning}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
    {{"", "Error", critical}},
};

/// Memory (IPMI 2.0, table 42-3, type 0Ch).
constexpr GivenRow memoryRows[] = {
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

constexpr char fine[] = ". Status is OK";
constexpr char nonCriticalTail[] = ". Status is Non-Critical";
constexpr char criticalTail[] = ". Status is Critical";
constexpr char nonRecoverableTail[] = ". Status is Non-Recoverable";

/// A state of a processor (IPMI 2.0, table 42-3, type 07h). Its end has no severity word.
struct ProcessorRow {
    const char* state;
    const char* tail;
    const char* severity;
    int CEventData::*counter;
    const char* end;
    const char* endTail = fine;
};

constexpr ProcessorRow processorRows[] = {
    {"IERR (Internal Error)", criticalTail, "Error", critical, "no internal error any more"},
    {"Thermal Trip", criticalTail, "Error", critical, "the processor is cool again"},
    {"FRB1/BIST Failure", nonRecoverableTail, "Fatal", fatal, "the processor has passed its self-test"},
    {"FRB2/Hang in POST Failure", nonRecoverableTail, "Fatal", fatal, "the processor no longer hangs at the start"},
    {"FRB3: the processor did not start", nonRecoverableTail, "Fatal", fatal, "the processor has started"},
    {"Configuration Error", nonCriticalTail, "Information", warning, "the processor's configuration is right again"},
    {"SM BIOS 'Uncorrectable CPU-Complex Error'", nonCriticalTail, "Information", warning,
     "the error of the processor complex is over"},
    {"the processor's presence has been detected", fine, "Information", nullptr,
     "the processor's presence has been lost", nonCriticalTail},
    {"the processor has been disabled", criticalTail, "Error", critical, "the processor is enabled again"},
    {"the terminator's presence has been detected", fine, "Information", nullptr,
     "the terminator's presence has been lost"},
    {"the processor has been slowed down", nonCriticalTail, "Information", warning,
     "the processor runs at full speed again"},
};

/// Nothing at all for an offset beyond the table.
Meaning meaningIn(GivenRows rows, const EVENT_DATA_STRUCT& record)
{
    const std::size_t offset = offsetOf(record);
    if (offset >= rows.size())
        return {};
    const Given& given = record.ucEventTrigger >> 7 == 0 ? rows[offset].asserted : rows[offset].deasserted;
    return {given.status, given.severity, given.counter};
}

/// How grave the firmware's own record says that an internal error is; null for anything else than 0 to 2.
const Given* gravityByFirmware(unsigned char eventData3)
{
    static constexpr Given gravities[] = {{"", "Error", critical}, {"", "Fatal", fatal}, {"", "Degraded", warning}};
    return eventData3 < std::size(gravities) ? &gravities[eventData3] : nullptr;
}

Meaning adjustedByFirmware(const EVENT_DATA_STRUCT& record, Meaning meaning)
{
    if (*meaning.severity == '\0')
        return meaning;
    const Given* const given = record.ucEventData2 == 0 ? gravityByFirmware(record.ucEventData3) : nullptr;
    if (record.ucEventData2 == 0 && offsetOf(record) != 0)
        return meaning;
    meaning.severity = given ? given->severity : "";
    meaning.counter = given ? given->counter : nullptr;
    return meaning;
}

/// Types of events that are those of any sensor, or an OEM's own.
bool isOfStates(const EVENT_DATA_STRUCT& record)
{
    const int type = traps::eventTypeOf(record);
    return (type >= ipmi::eventtype::firstGeneric && type <= ipmi::eventtype::lastGeneric) ||
           type >= ipmi::eventtype::firstOem;
}

} // namespace

bool isFromFirmware(const EVENT_DATA_STRUCT& record)
{
    constexpr int first = 0x31;
    constexpr int last = 0x3F;
    return record.usGeneratorID >= first && record.usGeneratorID <= last;
}

Meaning meaningOfThreshold(const EVENT_DATA_STRUCT& record)
{
    return isOfStates(record) ? meaningOfState(record) : meaningIn(thresholdRows, record);
}

Meaning meaningOfPowerRedundancy(const EVENT_DATA_STRUCT& record)
{
    Meaning meaning = meaningOfState(record);
    if (meaning.counter) {
        meaning.severity = "Degraded";
        meaning.counter = warning;
    }
    return meaning;
}

Meaning meaningOfProcessor(const EVENT_DATA_STRUCT& record)
{
    if (isOfStates(record))
        return meaningOfState(record);
    const std::size_t offset = offsetOf(record);
    if (offset >= std::size(processorRows))
        return {};
    const ProcessorRow& row = processorRows[offset];
    if (record.ucEventTrigger >> 7 != 0)
        return {"reports " + (row.end + doubtOf(record)) + row.endTail};
    Meaning meaning{"reports " + (row.state + doubtOf(record)) + row.tail};
    if (record.ucEventTrigger != 0) {
        meaning.severity = row.severity;
        meaning.counter = row.counter;
    }
    return isFromFirmware(record) ? adjustedByFirmware(record, std::move(meaning)) : meaning;
}

Meaning meaningOfCoolingRedundancy(const EVENT_DATA_STRUCT& record)
{
    return meaningIn(coolingRedundancyRows, record);
}

Meaning meaningOfPowerSupply(const EVENT_DATA_STRUCT& record)
{
    return meaningIn(powerSupplyRows, record);
}

Meaning meaningOfMemory(const EVENT_DATA_STRUCT& record)
{
    return meaningIn(memoryRows, record);
}

} // namespace client::events
