#include "client/events/ClassifierTables.hpp"

#include "ipmi/SensorReading.hpp"

// Families whose tables are given, in agreement with the log and with the rows of the sensors.

namespace client::events {

namespace {

using enum ipmi::Gravity;

/// Offsets of thresholds (IPMI 2.0, table 42-2): three pairs below, three above, in each "going low" first.
constexpr ipmi::Gravity thresholdGravities[] = {nonCritical, nonCritical,    critical,
                                                critical,    nonRecoverable, nonRecoverable};
constexpr std::size_t firstUpper = std::size(thresholdGravities), thresholdOffsets = 2 * firstUpper;

constexpr std::string_view fullStop = ". ", statusLead = "Status is ";

Meaning meaningOfBound(const EVENT_DATA_STRUCT& record, Meaning otherwise)
{
    const std::size_t offset = offsetOf(record);
    if (offset >= thresholdOffsets)
        return otherwise;
    const bool isUpper = offset >= firstUpper, goesHigh = offset % 2 != 0, isOver = record.ucEventTrigger >> 7 != 0;
    const bool isWorse = (isUpper == goesHigh) != isOver;
    const GravityWords& words = wordsOf(isWorse ? thresholdGravities[offset % firstUpper] : fine);
    const char* const side = !isWorse ? "" : isUpper ? "Upper " : "Lower ";
    const char* const word = words.tail + fullStop.size() + statusLead.size();
    return {std::string(statusLead) + side + word, words.severity, words.counter};
}

} // namespace

Meaning agreed(const EVENT_DATA_STRUCT& record, Meaning meaning)
{
    if (traps::eventTypeOf(record) == ipmi::eventtype::threshold)
        return meaningOfBound(record, std::move(meaning));
    const ipmi::Gravity gravity = gravityOf(record);
    if (gravity == untold || (record.ucSensorType == ipmi::sensortype::processor && isFromFirmware(record)))
        return meaning;
    const GravityWords& words = wordsOf(gravity);
    if (const std::size_t tail = meaning.status.rfind(std::string(fullStop) + std::string(statusLead));
        tail != std::string::npos)
        meaning.status.erase(tail);
    if (!meaning.status.empty())
        meaning.status += words.tail;
    return {std::move(meaning.status), words.severity, words.counter};
}

} // namespace client::events
