#pragma once

#include "client/events/SelWrapper.hpp"
#include "client/traps/EventData.hpp"
#include "ipmi/States.hpp"

#include <string>

namespace client::events {

/// What an event says of its device.
struct Meaning {
    std::string status;        ///< the event's text without the sensor's name; its tail gives the trap's severity
    const char* severity = ""; ///< the log's severity word; without one the trap has no severity
    int CEventData::*counter = nullptr;
};

/// How an event says a gravity.
struct GravityWords {
    const char* tail;
    const char* severity;
    int CEventData::*counter;
};
const GravityWords& wordsOf(ipmi::Gravity gravity);

/// What the one list says of the state that began or ended.
ipmi::Gravity gravityOf(const EVENT_DATA_STRUCT& record);

/// The meaning with the gravity of the one list, also where a family's table is given whole; what the firmware says
/// itself of a processor stands.
Meaning agreed(const EVENT_DATA_STRUCT& record, Meaning meaning);

/// Place of the event in its family's table: event data 1 as DecodeSELQuery leaves it, modulo 16, or the record's own
/// offset where the policy reads that.
std::size_t offsetOf(const EVENT_DATA_STRUCT& record);

/// Event data 1 was read as a decimal number: where its byte holds another offset, what to say behind a state's name.
/// Empty where the state is sure.
std::string doubtOf(const EVENT_DATA_STRUCT& record);

/// In the words of the states of its sensor type and event type (IPMI 2.0, tables 42-2 and 42-3). Where they do not say
/// what the state is, the text tells the bytes, and there is no severity.
Meaning meaningOfState(const EVENT_DATA_STRUCT& record);

/// Sensors with thresholds; their events of other types are those of states.
Meaning meaningOfThreshold(const EVENT_DATA_STRUCT& record);
/// Redundancy of power supplies knows two severity words only.
Meaning meaningOfPowerRedundancy(const EVENT_DATA_STRUCT& record);
/// The firmware's own records say in event data 3 how grave an internal error is.
Meaning meaningOfProcessor(const EVENT_DATA_STRUCT& record);

/// The text of these is the translator's: only the severity and the counter count.
Meaning meaningOfCoolingRedundancy(const EVENT_DATA_STRUCT& record);
Meaning meaningOfPowerSupply(const EVENT_DATA_STRUCT& record);
Meaning meaningOfMemory(const EVENT_DATA_STRUCT& record);

/// True for a record that the system's firmware made (IPMI 2.0, table 5-4).
bool isFromFirmware(const EVENT_DATA_STRUCT& record);

} // namespace client::events
